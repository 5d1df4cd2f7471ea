#include "indexed.hpp"

#include "bits.hpp"
#include "measures.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <numeric>
#include <ostream>
#include <utility>
#include <vector>

namespace orva::test {

namespace {

using Index = std::uint32_t;

// Corners that belong together.
class Groups {
public:
    explicit Groups(std::size_t count) : parent_(count) { std::iota(parent_.begin(), parent_.end(), std::size_t{0}); }

    std::size_t of(std::size_t i) {
        while (parent_[i] != i) i = parent_[i] = parent_[parent_[i]];
        return i;
    }
    void join(std::size_t a, std::size_t b) { parent_[of(a)] = of(b); }

private:
    std::vector<std::size_t> parent_;
};

bool isGood(const tidy::Solid& solid, const std::array<Index, 3>& face) {
    const auto size = solid.vertices.size();
    return face[0] < size && face[1] < size && face[2] < size && face[0] != face[1] && face[1] != face[2] &&
           face[2] != face[0];
}

struct Spoke {
    Index hub;
    Index rim;
    std::size_t corner;
};

std::uint64_t countDividedVertices(const tidy::Solid& solid) {
    std::vector<Spoke> spokes;
    for (std::size_t i = 0; i < solid.faces.size(); ++i) {
        const std::array<Index, 3>& face = solid.faces[i];
        if (!isGood(solid, face)) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            spokes.push_back({face[k], face[(k + 1) % 3], 3 * i + k});
            spokes.push_back({face[k], face[(k + 2) % 3], 3 * i + k});
        }
    }
    std::sort(spokes.begin(), spokes.end(),
              [](const Spoke& a, const Spoke& b) { return std::pair(a.hub, a.rim) < std::pair(b.hub, b.rim); });
    Groups groups(3 * solid.faces.size());
    for (std::size_t i = 1; i < spokes.size(); ++i) {
        if (spokes[i].hub == spokes[i - 1].hub && spokes[i].rim == spokes[i - 1].rim) {
            groups.join(spokes[i].corner, spokes[i - 1].corner);
        }
    }
    std::uint64_t divided = 0;
    for (std::size_t first = 0, last = 0; first < spokes.size(); first = last) {
        bool together = true;
        for (; last < spokes.size() && spokes[last].hub == spokes[first].hub; ++last) {
            together = together && groups.of(spokes[last].corner) == groups.of(spokes[first].corner);
        }
        if (!together) ++divided;
    }
    return divided;
}

Mesh soupOf(const tidy::Solid& solid) {
    Mesh soup;
    for (std::size_t i = 0; i < solid.faces.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            const tidy::Corner& corner = solid.corners[i][k];
            soup.vertices.push_back({solid.vertices[solid.faces[i][k]], corner.normal, corner.aux});
        }
    }
    return soup;
}

} // namespace

Counted count(const tidy::Solid& solid) {
    Counted counted;
    std::vector<std::pair<Index, Index>> edges;
    std::vector<bool> isUsed(solid.vertices.size());
    for (const std::array<Index, 3>& face : solid.faces) {
        if (!isGood(solid, face)) ++counted.badFaces;
        for (std::size_t k = 0; k < 3; ++k) {
            edges.emplace_back(face[k], face[(k + 1) % 3]);
            if (face[k] < isUsed.size()) isUsed[face[k]] = true;
        }
    }
    std::sort(edges.begin(), edges.end());
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (i > 0 && edges[i] == edges[i - 1]) ++counted.repeatedEdges;
        if (!std::binary_search(edges.begin(), edges.end(), std::pair(edges[i].second, edges[i].first))) {
            ++counted.openEdges;
        }
    }
    counted.dividedVertices = countDividedVertices(solid);
    counted.unusedVertices = static_cast<std::uint64_t>(std::count(isUsed.begin(), isUsed.end(), false));
    return counted;
}

testing::AssertionResult isClosed(const tidy::Solid& solid) {
    const Counted counted = count(solid);
    if (counted.badFaces + counted.openEdges + counted.repeatedEdges + counted.dividedVertices == 0) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "of " << solid.faces.size() << " faces " << counted.badFaces << " are bad; "
                                       << counted.openEdges << " edges are open, " << counted.repeatedEdges
                                       << " there again; " << counted.dividedVertices << " vertices are divided";
}

testing::AssertionResult isWhole(const tidy::Solid& solid) {
    if (solid.corners.size() != solid.faces.size() || solid.origins.size() != solid.faces.size()) {
        return testing::AssertionFailure() << solid.faces.size() << " faces, " << solid.corners.size() << " corners, "
                                           << solid.origins.size() << " origins";
    }
    const Counted counted = count(solid);
    if (counted.badFaces + counted.unusedVertices == 0) return testing::AssertionSuccess();
    return testing::AssertionFailure() << counted.badFaces << " bad faces, " << counted.unusedVertices
                                       << " vertices in no face, of " << solid.faces.size();
}

double volume(const tidy::Solid& solid) {
    return volume(soupOf(solid));
}

double area(const tidy::Solid& solid) {
    double twice = 0;
    for (const std::array<Index, 3>& face : solid.faces) {
        const Vec3& a = solid.vertices[face[0]];
        const Vec3& b = solid.vertices[face[1]];
        const Vec3& c = solid.vertices[face[2]];
        const Vec3 u{b.x - a.x, b.y - a.y, b.z - a.z};
        const Vec3 v{c.x - a.x, c.y - a.y, c.z - a.z};
        const Vec3 n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
        twice += std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
    }
    return twice / 2;
}

testing::AssertionResult sameBits(const tidy::Solid& a, const tidy::Solid& b) {
    if (a.vertices.size() != b.vertices.size() || a.faces.size() != b.faces.size()) {
        return testing::AssertionFailure() << a.vertices.size() << " vertices and " << a.faces.size()
                                           << " faces against " << b.vertices.size() << " and " << b.faces.size();
    }
    for (std::size_t i = 0; i < a.faces.size(); ++i) {
        if (a.faces[i] != b.faces[i]) return testing::AssertionFailure() << "face " << i << " has other vertices";
        if (!(a.origins[i] == b.origins[i])) return testing::AssertionFailure() << "face " << i << " is of another";
    }
    return sameBits(soupOf(a), soupOf(b));
}

tidy::Solid indexed(const Mesh& mesh) {
    tidy::Solid solid;
    std::map<std::array<double, 3>, Index> numbers;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        std::array<Index, 3> face{};
        std::array<tidy::Corner, 3> corners{};
        for (std::size_t k = 0; k < 3; ++k) {
            const Vertex& vertex = mesh.vertices[i + k];
            const auto next = static_cast<Index>(solid.vertices.size());
            const auto [at, added] = numbers.try_emplace({vertex.pos.x, vertex.pos.y, vertex.pos.z}, next);
            if (added) solid.vertices.push_back(vertex.pos);
            face[k] = at->second;
            corners[k] = {vertex.normal, vertex.aux};
        }
        solid.faces.push_back(face);
        solid.corners.push_back(corners);
        solid.origins.push_back({0, static_cast<Index>(i / 3)});
    }
    return solid;
}

} // namespace orva::test

namespace orva::tidy {

std::ostream& operator<<(std::ostream& stream, const Report& report) {
    return stream << (report.closed ? "closed" : "open") << ", " << report.openEdges << " open edges, gap "
                  << report.largestGap << ", loops " << report.loopsRemoved << " of " << report.loopArea << ", moved "
                  << report.movedByWeld << " + " << report.movedByZip << " + " << report.movedByDrop << ", forced "
                  << report.forcedEars << ", left " << report.facesLeft << " of " << report.soupTriangles << ", pieces "
                  << report.pieces << ", scale " << report.scale;
}

} // namespace orva::tidy

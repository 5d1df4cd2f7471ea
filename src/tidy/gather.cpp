#include "tidy/gather.hpp"

#include "tidy/carried.hpp"
#include "tidy/hash.hpp"
#include "tidy/open_edges.hpp"
#include "tidy/point_table.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>

namespace orva::tidy {

namespace {

// Fourth powers of coordinates are taken, and must not overflow.
constexpr double FAR = 1e75;

bool isUsable(const types::Vertex* triangle) {
    return std::all_of(triangle, triangle + 3, [](const types::Vertex& vertex) {
        return std::fabs(vertex.pos.x) <= FAR && std::fabs(vertex.pos.y) <= FAR && std::fabs(vertex.pos.z) <= FAR;
    });
}

// Numbers for origins, from 0 in the order of first use.
class OriginTable {
public:
    std::uint32_t numberOf(const Origin& origin) {
        const std::uint64_t key = std::uint64_t{origin.mesh} << 32 | origin.face;
        const std::size_t place = placeOf(key);
        if (table[place] != NONE) return table[place];
        keys.push_back(key);
        table[place] = static_cast<std::uint32_t>(keys.size() - 1);
        const std::uint32_t number = table[place];
        if (2 * keys.size() > table.size()) grow();
        return number;
    }

    /// A number that no origin has.
    std::uint32_t another() {
        keys.push_back(NOBODY);
        return static_cast<std::uint32_t>(keys.size() - 1);
    }

    std::size_t size() const { return keys.size(); }

private:
    static constexpr std::uint64_t NOBODY = 0xFFFFFFFFFFFFFFFF;

    std::size_t placeOf(std::uint64_t key) const {
        std::size_t place = static_cast<std::size_t>(mixed(0, key)) & (table.size() - 1);
        while (table[place] != NONE && keys[table[place]] != key) place = (place + 1) & (table.size() - 1);
        return place;
    }

    void grow() {
        table.assign(2 * std::bit_ceil(2 * keys.size()), NONE);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i] != NOBODY) table[placeOf(keys[i])] = static_cast<std::uint32_t>(i);
        }
    }

    std::vector<std::uint64_t> keys;
    std::vector<std::uint32_t> table = std::vector<std::uint32_t>(64, NONE); ///< a power of two, at most half full
};

// Counts, then fills: `face[i]` is the face of triangle i, NONE for one that is left out.
void fill(Surface& surface, const std::vector<std::uint32_t>& face, std::size_t count) {
    surface.faces.assign(count, {});
    std::size_t pieces = 0;
    for (const std::uint32_t f : face) {
        if (f == NONE) continue;
        ++surface.faces[f].count;
        ++pieces;
    }
    std::uint32_t first = 0;
    for (Face& f : surface.faces) {
        f.first = first;
        first += f.count;
        f.count = 0;
    }
    surface.order.resize(pieces);
    for (std::size_t i = 0; i < face.size(); ++i) {
        if (face[i] == NONE) continue;
        Face& f = surface.faces[face[i]];
        surface.order[f.first + f.count++] = static_cast<std::uint32_t>(i);
    }
}

Vec3 normalOf(const types::Vertex* triangle) {
    return cross(triangle[1].pos - triangle[0].pos, triangle[2].pos - triangle[0].pos);
}

// NONE for the triangles that are left, 0 for the others.
std::vector<std::uint32_t> noFaces(const types::Mesh<double>& soup, const std::vector<std::uint32_t>& left) {
    std::vector<std::uint32_t> face(soup.vertices.size() / 3, 0);
    for (const std::uint32_t triangle : left) face[triangle] = NONE;
    return face;
}

// Every triangle a face of its own, matched with its neighbours where they share whole edges.
Surface trianglesOf(const types::Mesh<double>& soup, const std::vector<std::uint32_t>& use) {
    const std::size_t count = soup.vertices.size() / 3;
    Surface triangles;
    triangles.faces.resize(count);
    triangles.edges.resize(3 * count);
    PointTable table;
    table.clear(count);
    for (std::size_t i = 0; i < count; ++i) {
        const types::Vertex* triangle = &soup.vertices[3 * i];
        const auto face = static_cast<std::uint32_t>(i);
        if (use[i] == NONE) continue;
        triangles.faces[i].normal = normalOf(triangle);
        triangles.faces[i].area = squaredLength(triangles.faces[i].normal);
        std::uint32_t number[3];
        for (std::size_t k = 0; k < 3; ++k) number[k] = table.numberOf(triangle[k].pos);
        for (std::size_t k = 0; k < 3; ++k) {
            if (number[k] != number[(k + 1) % 3])
                triangles.edges[3 * i + k] = {number[k], number[(k + 1) % 3], face, NONE, NONE};
        }
    }
    triangles.points = std::move(table.points());
    Matcher().matchOpposite(triangles);
    return triangles;
}

} // namespace

Usable findUsable(const types::Mesh<double>& soup) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    Usable usable;
    Vec3 low{inf, inf, inf};
    Vec3 high{-inf, -inf, -inf};
    for (std::size_t i = 0; i < soup.vertices.size() / 3; ++i) {
        const types::Vertex* triangle = &soup.vertices[3 * i];
        if (!isUsable(triangle)) {
            usable.left.push_back(static_cast<std::uint32_t>(i));
            continue;
        }
        for (std::size_t k = 0; k < 3; ++k) {
            const Vec3& p = triangle[k].pos;
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
    }
    usable.size = std::max({high.x - low.x, high.y - low.y, high.z - low.z, 0.0});
    return usable;
}

void gatherByOrigin(Surface& surface, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                    const std::vector<std::uint32_t>& left) {
    OriginTable table;
    std::vector<std::uint32_t> face = noFaces(soup, left);
    for (std::size_t i = 0; i < face.size(); ++i) {
        if (face[i] == NONE) continue;
        face[i] = origins[i] == UNKNOWN_ORIGIN ? table.another() : table.numberOf(origins[i]);
    }
    fill(surface, face, table.size());
}

void gatherByPlane(Surface& surface, const types::Mesh<double>& soup, double distance,
                   const std::vector<std::uint32_t>& left) {
    const std::vector<std::uint32_t> use = noFaces(soup, left);
    const Surface triangles = trianglesOf(soup, use);
    const std::size_t count = triangles.faces.size();
    struct Sized {
        double area;
        std::uint32_t triangle;
    };
    std::vector<Sized> bySize;
    bySize.reserve(count);
    for (std::size_t i = 0; i < count; ++i) bySize.push_back({triangles.faces[i].area, static_cast<std::uint32_t>(i)});
    std::sort(bySize.begin(), bySize.end(), [](const Sized& a, const Sized& b) {
        return a.area != b.area ? a.area > b.area : a.triangle < b.triangle;
    });

    std::vector<std::uint32_t> face(count, NONE);
    std::vector<std::uint32_t> flood;
    for (const Sized& sized : bySize) {
        const std::uint32_t seed = sized.triangle;
        if (face[seed] != NONE || use[seed] == NONE) continue;
        const types::Vertex* plane = &soup.vertices[3 * std::size_t{seed}];
        const Vec3& normal = triangles.faces[seed].normal;
        const double reach = distance * squareRoot(sized.area);
        const auto belongs = [&](std::uint32_t other) {
            const types::Vertex* piece = &soup.vertices[3 * std::size_t{other}];
            return dot(triangles.faces[other].normal, normal) >= 0.0 &&
                   std::all_of(piece, piece + 3,
                               [&](const types::Vertex& vertex) {
                                   return std::fabs(dot(normal, vertex.pos - plane->pos)) <= reach;
                               }) &&
                   carryTheSame(plane, piece);
        };
        face[seed] = seed;
        flood.assign(1, seed);
        while (!flood.empty()) {
            const std::size_t at = flood.back();
            flood.pop_back();
            std::array<std::uint32_t, 3> others{NONE, NONE, NONE};
            for (std::size_t k = 0; k < 3; ++k) {
                const Edge& edge = triangles.edges[3 * at + k];
                if (!isAlive(edge) || edge.twin == NONE) continue;
                others[k] = triangles.edges[edge.twin].face;
                prefetch(&soup.vertices[3 * std::size_t{others[k]}]);
            }
            for (const std::uint32_t other : others) {
                if (other == NONE || face[other] != NONE || !belongs(other)) continue;
                face[other] = seed;
                flood.push_back(other);
            }
        }
    }

    // Numbered in the order of their first pieces.
    std::vector<std::uint32_t> number(count, NONE);
    std::uint32_t faces = 0;
    for (std::uint32_t& f : face) {
        if (f == NONE) continue;
        if (number[f] == NONE) number[f] = faces++;
        f = number[f];
    }
    fill(surface, face, faces);
}

} // namespace orva::tidy

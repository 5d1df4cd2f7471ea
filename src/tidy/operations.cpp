// Operations with tidied results: mark the faces, choose a unit, combine, tidy.
//
// The tolerance of the operations is an absolute 1e-6, so the same part is cut well in one unit and badly in another.
// Scaled by a power of two, no bit of a coordinate is lost. Scans want a large unit, in which 1e-6 is small beside
// their triangles; a mesh whose corners were once rounded to single precision wants one in which that rounding is below
// the tolerance. So the units below are tried in turn until a result closes.
#include "orva/tidy.hpp"

#include "orva/bspcsg.hpp"
#include "tidy/pieces.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <stdexcept>
#include <utility>

namespace orva::tidy {

namespace {

using Mesh = types::Mesh<double>;
using Meshes = std::vector<Mesh>;

// Powers of two near which the longest side of the inputs is put.
constexpr std::array<int, 4> UNITS{10, 4, 13, 7};

// A running result is tidied on the way where that makes it so many times shorter: its cuts would cost every later
// step. Where it does not, as with walls, tidying only divides anew what was fine.
constexpr std::size_t SHORTER = 2;

// So many times as many cutters are subtracted at once where tidying after fewer did not help.
constexpr std::size_t MORE_CUTTERS = 4;

// ---- Marks ----

// A mesh whose corners carry the number of their mesh and of their face: equal values at a triangle's corners come
// through every cut as they are.
Mesh marked(const Mesh& mesh, std::size_t place, double scale) {
    Mesh result;
    result.vertices.reserve(mesh.vertices.size());
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const types::Vec3& p = mesh.vertices[i].pos;
        result.vertices.push_back(
            {{scale * p.x, scale * p.y, scale * p.z}, {}, {static_cast<double>(place), static_cast<double>(i / 3)}});
    }
    return result;
}

std::uint32_t numberIn(double value) {
    return value >= 0.0 && value < 4294967295.0 ? static_cast<std::uint32_t>(value) : UNKNOWN_ORIGIN.mesh;
}

std::vector<Origin> originsOf(const Mesh& soup) {
    std::vector<Origin> origins;
    origins.reserve(soup.vertices.size() / 3);
    for (std::size_t i = 0; i + 2 < soup.vertices.size(); i += 3) {
        const std::array<double, 2>& mark = soup.vertices[i].aux;
        const Origin origin{numberIn(mark[0]), numberIn(mark[1])};
        origins.push_back(origin.mesh == UNKNOWN_ORIGIN.mesh ? UNKNOWN_ORIGIN : origin);
    }
    return origins;
}

// ---- A running result ----

// What moves on the way adds to what moves in the end.
void addTo(Report& report, const Report& onTheWay) {
    report.loopsRemoved += onTheWay.loopsRemoved;
    report.loopArea += onTheWay.loopArea;
    report.movedByWeld += onTheWay.movedByWeld;
    report.movedByZip += onTheWay.movedByZip;
    report.movedByDrop += onTheWay.movedByDrop;
    report.forcedEars += onTheWay.forcedEars;
}

struct Tidied {
    Mesh soup;
    Report report;
};

// The soup tidied, and marked again: in the same unit, and with its origins.
Tidied tidiedSoup(const Mesh& soup, const Inputs& inputs, const Options& options) {
    Solid solid;
    const Report report = tidyPieces(solid, soup, originsOf(soup), &inputs, options);
    Mesh tidied;
    tidied.vertices.reserve(3 * solid.faces.size());
    for (std::size_t i = 0; i < solid.faces.size(); ++i) {
        const Origin& origin = solid.origins[i];
        for (const std::uint32_t vertex : solid.faces[i]) {
            const types::Vec3& p = solid.vertices[vertex];
            tidied.vertices.push_back({{inputs.scale * p.x, inputs.scale * p.y, inputs.scale * p.z},
                                       {},
                                       {static_cast<double>(origin.mesh), static_cast<double>(origin.face)}});
        }
    }
    return {std::move(tidied), report};
}

bool isShorter(const Mesh& tidied, const Mesh& soup) {
    return SHORTER * tidied.vertices.size() <= soup.vertices.size();
}

// ((first . second) . third) . ..., tidied whenever the soup has grown so much that it may help.
Mesh combineInTurn(const Meshes& meshes, const Inputs& inputs, const Options& options, Report& onTheWay,
                   void (*operation)(Mesh& output, const Mesh& a, const Mesh& b)) {
    Mesh running = meshes.front();
    std::size_t expected = running.vertices.size();
    for (std::size_t i = 1; i < meshes.size(); ++i) {
        Mesh result;
        operation(result, running, meshes[i]);
        running = std::move(result);
        expected += meshes[i].vertices.size();
        if (i + 1 == meshes.size() || running.vertices.size() < SHORTER * expected) continue;
        Tidied tidied = tidiedSoup(running, inputs, options);
        if (isShorter(tidied.soup, running)) {
            running = std::move(tidied.soup);
            addTo(onTheWay, tidied.report);
        }
        expected = running.vertices.size();
    }
    return running;
}

// ((first - second) - third) - ..., a few cutters at a time where tidying in between helps, else more and more of them:
// within one call the operation keeps whole polygons from cutter to cutter.
Mesh subtractInTurn(const Meshes& meshes, const Inputs& inputs, const Options& options, Report& onTheWay) {
    Mesh running = meshes.front();
    std::size_t first = 1;
    std::size_t count = 1;
    while (first < meshes.size()) {
        const std::size_t last = first + std::min(count, meshes.size() - first);
        const Meshes cutters(meshes.begin() + static_cast<std::ptrdiff_t>(first),
                             meshes.begin() + static_cast<std::ptrdiff_t>(last));
        Mesh result;
        bspcsg::subtractMultiMesh(result, running, cutters);
        if (last == meshes.size()) return result;
        Tidied tidied = tidiedSoup(result, inputs, options);
        if (isShorter(tidied.soup, result)) {
            running = std::move(tidied.soup);
            addTo(onTheWay, tidied.report);
            first = last;
        } else {
            count *= MORE_CUTTERS; // the same again, with those behind
        }
    }
    return running;
}

// ---- Units ----

// The exponent of the power of two next above the longest side. False where the meshes have no finite size.
bool sizeOf(const std::vector<const Mesh*>& meshes, int& exponent) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    std::array<double, 3> low{inf, inf, inf};
    std::array<double, 3> high{-inf, -inf, -inf};
    for (const Mesh* mesh : meshes) {
        for (const types::Vertex& vertex : mesh->vertices) {
            const std::array<double, 3> at{vertex.pos.x, vertex.pos.y, vertex.pos.z};
            for (std::size_t k = 0; k < 3; ++k) {
                low[k] = std::min(low[k], at[k]);
                high[k] = std::max(high[k], at[k]);
            }
        }
    }
    const double size = std::max({high[0] - low[0], high[1] - low[1], high[2] - low[2]});
    if (!(size > 0.0) || !std::isfinite(size)) return false;
    std::frexp(size, &exponent);
    return exponent > -900 && exponent < 900; // or scaling would lose bits
}

bool isBetter(const Report& a, const Report& b) {
    return a.openEdges != b.openEdges ? a.openEdges < b.openEdges : a.largestGap < b.largestGap;
}

using Combine = std::function<Mesh(const Meshes& marked, const Inputs& inputs, Report& onTheWay)>;

Report operate(Solid& output, const std::vector<const Mesh*>& meshes, std::size_t firstFlipped, const Options& options,
               const Combine& combine) {
    for (const Mesh* mesh : meshes) {
        if (mesh->vertices.size() > 0x7FFFFFFF) throw std::length_error("vector too long");
    }
    std::vector<double> scales{1.0};
    int exponent = 0;
    if (options.scale && sizeOf(meshes, exponent)) {
        scales.clear();
        for (const int unit : UNITS) scales.push_back(std::ldexp(1.0, unit - exponent));
    }
    Solid best;
    Report report;
    for (const double scale : scales) {
        const Inputs inputs{meshes, firstFlipped, scale};
        Meshes all;
        for (std::size_t i = 0; i < meshes.size(); ++i) all.push_back(marked(*meshes[i], i, scale));
        Report onTheWay;
        const Mesh soup = combine(all, inputs, onTheWay);
        Solid solid;
        Report tried = tidyPieces(solid, soup, originsOf(soup), &inputs, options);
        addTo(tried, onTheWay);
        if (scale != scales.front() && !isBetter(tried, report)) continue;
        best = std::move(solid);
        report = tried;
        if (report.closed) break;
    }
    output = std::move(best);
    return report;
}

std::vector<const Mesh*> pointersTo(const Meshes& meshes) {
    std::vector<const Mesh*> pointers;
    for (const Mesh& mesh : meshes) pointers.push_back(&mesh);
    return pointers;
}

Report fold(Solid& output, const Meshes& meshes, const Options& options,
            void (*operation)(Mesh& output, const Mesh& a, const Mesh& b)) {
    return operate(output, pointersTo(meshes), meshes.size(), options,
                   [&](const Meshes& all, const Inputs& inputs, Report& onTheWay) {
                       return all.empty() ? Mesh{} : combineInTurn(all, inputs, options, onTheWay, operation);
                   });
}

Meshes soupsOf(const std::vector<Solid>& solids) {
    Meshes soups;
    for (const Solid& solid : solids) soups.push_back(toSoup(solid));
    return soups;
}

} // namespace

Mesh toSoup(const Solid& solid) {
    if (solid.faces.size() > 0x7FFFFFFF / 3) throw std::length_error("vector too long");
    Mesh soup;
    soup.vertices.reserve(3 * solid.faces.size());
    for (std::size_t i = 0; i < solid.faces.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            const Corner corner = i < solid.corners.size() ? solid.corners[i][k] : Corner{};
            soup.vertices.push_back({solid.vertices[solid.faces[i][k]], corner.normal, corner.aux});
        }
    }
    return soup;
}

Report unionSolid(Solid& output, const Meshes& meshes, const Options& options) {
    return fold(output, meshes, options, bspcsg::unionMesh);
}

Report intersectSolid(Solid& output, const Meshes& meshes, const Options& options) {
    return fold(output, meshes, options, bspcsg::intersectMesh);
}

Report subtractSolid(Solid& output, const Mesh& base, const Meshes& cutters, Cutting cutting, const Options& options) {
    std::vector<const Mesh*> meshes = pointersTo(cutters);
    meshes.insert(meshes.begin(), &base);
    return operate(output, meshes, 1, options, [&](const Meshes& all, const Inputs& inputs, Report& onTheWay) {
        if (cutting == Cutting::InTurn || cutters.empty()) return subtractInTurn(all, inputs, options, onTheWay);
        const Meshes others(all.begin() + 1, all.end());
        const bool parallel = cutting == Cutting::AsOneUnionParallel;
        Mesh result;
        (parallel ? bspcsg::subtractMultiUnionMeshParallel : bspcsg::subtractMultiUnionMesh)(result, all.front(),
                                                                                             others);
        return result;
    });
}

Report unionSolid(Solid& output, const std::vector<Solid>& meshes, const Options& options) {
    return unionSolid(output, soupsOf(meshes), options);
}

Report intersectSolid(Solid& output, const std::vector<Solid>& meshes, const Options& options) {
    return intersectSolid(output, soupsOf(meshes), options);
}

Report subtractSolid(Solid& output, const Solid& base, const std::vector<Solid>& cutters, Cutting cutting,
                     const Options& options) {
    return subtractSolid(output, toSoup(base), soupsOf(cutters), cutting, options);
}

} // namespace orva::tidy

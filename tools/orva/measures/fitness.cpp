#include "measures/fitness.hpp"

#include "measures/by_vertex.hpp"
#include "measures/closedness.hpp"
#include "measures/forest.hpp"
#include "measures/volume.hpp"
#include "mesh/facet_normal.hpp"
#include "mesh/shared_vertices.hpp"
#include "mesh/vectors.hpp"
#include "words.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace orva::program {

namespace {

using types::Vec3;

// One triangle's side: the lower of its two vertices, the other one, and whether it runs from that to the lower.
struct Side {
    std::size_t vertex = 0;
    std::size_t other = 0;
    std::size_t triangle = 0;
    bool backward = false;

    bool operator<(const Side& side) const {
        return std::tie(other, triangle, backward) < std::tie(side.other, side.triangle, side.backward);
    }
};

// A triangle's corners from the lowest vertex to the highest.
struct Corners {
    std::size_t vertex = 0;
    std::size_t second = 0;
    std::size_t third = 0;
    std::size_t triangle = 0;

    bool operator<(const Corners& corners) const {
        return std::tie(second, third, triangle) < std::tie(corners.second, corners.third, corners.triangle);
    }
    bool operator==(const Corners& corners) const {
        return vertex == corners.vertex && second == corners.second && third == corners.third;
    }
};

// ---- parts ----

void grow(Box& box, const Vec3& p) {
    box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
    box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y), std::max(box.high.z, p.z)};
}

bool contains(const Box& outer, const Box& inner) {
    return outer.low.x <= inner.low.x && outer.low.y <= inner.low.y && outer.low.z <= inner.low.z &&
           outer.high.x >= inner.high.x && outer.high.y >= inner.high.y && outer.high.z >= inner.high.z;
}

Vec3 middleOf(const Box& box) {
    return 0.5 * box.low + 0.5 * box.high;
}

// note: a part of negative volume is a hollow where another part is around it. Whether the other one's box is around it
// is enough to ask: nobody is told that a hollow is wrong.
std::size_t countInsideOut(const SharedVertices& mesh, Forest& parts, const Vec3& centre) {
    struct Part {
        double sixfoldVolume = 0.0;
        Box box;
    };
    const std::size_t triangles = mesh.corners.size() / 3;
    std::vector<Part> found(triangles); // at the part's first triangle
    for (std::size_t i = 0; i < triangles; ++i) {
        std::array<Vec3, 3> corners;
        for (std::size_t k = 0; k < 3; ++k) corners[k] = mesh.positions[mesh.corners[3 * i + k]];
        const std::size_t first = parts.first(i);
        Part& part = found[first];
        if (first == i) part.box = {corners[0], corners[0]};
        for (const Vec3& corner : corners) grow(part.box, corner);
        part.sixfoldVolume += dot(corners[0] - centre, cross(corners[1] - centre, corners[2] - centre));
    }

    std::vector<Box> solids;
    for (const Part& part : found) {
        if (part.sixfoldVolume > 0.0) solids.push_back(part.box);
    }
    const BoxTree tree = makeBoxTree(solids);
    std::size_t count = 0;
    for (const Part& part : found) {
        if (!(part.sixfoldVolume < 0.0)) continue;
        bool isHollow = false;
        visit(
            tree, [&](const Box& box) { return !isHollow && contains(box, part.box); },
            [&](std::size_t i) { isHollow = isHollow || contains(solids[i], part.box); });
        count += isHollow ? 0 : 1;
    }
    return count;
}

// ---- what is counted ----

void measureTriangles(const SharedVertices& mesh, Fitness& fitness) {
    fitness.triangles = mesh.corners.size() / 3;
    if (fitness.triangles == 0) return;
    fitness.box = {mesh.positions.front(), mesh.positions.front()};
    for (const Vec3& position : mesh.positions) grow(fitness.box, position);

    for (std::size_t i = 0; i < mesh.corners.size(); i += 3) {
        const Vec3& a = mesh.positions[mesh.corners[i]];
        const Vec3& b = mesh.positions[mesh.corners[i + 1]];
        const Vec3& c = mesh.positions[mesh.corners[i + 2]];
        const Vec3 normal = cross(b - a, c - a);
        const double doubled = std::sqrt(dot(normal, normal));
        fitness.area += 0.5 * doubled;
        if (doubled == 0.0) {
            ++fitness.degenerate;
            continue;
        }
        const double longest = std::sqrt(std::max({dot(b - a, b - a), dot(c - b, c - b), dot(a - c, a - c)}));
        if (doubled / longest < TOLERANCE) ++fitness.thin;
    }
}

// Which triangles have the corners of an earlier one.
std::vector<bool> findDuplicates(const SharedVertices& mesh, Fitness& fitness) {
    std::vector<Corners> triangles;
    triangles.reserve(fitness.triangles);
    for (std::size_t i = 0; i < mesh.corners.size(); i += 3) {
        std::array<std::size_t, 3> corners{mesh.corners[i], mesh.corners[i + 1], mesh.corners[i + 2]};
        std::sort(corners.begin(), corners.end());
        triangles.push_back({corners[0], corners[1], corners[2], i / 3});
    }
    triangles = sortedByVertex(triangles, mesh.positions.size());
    std::vector<bool> duplicates(fitness.triangles);
    for (std::size_t i = 1; i < triangles.size(); ++i) {
        if (!(triangles[i] == triangles[i - 1])) continue;
        duplicates[triangles[i].triangle] = true;
        ++fitness.duplicates;
    }
    return duplicates;
}

std::vector<Side> sidesOf(const SharedVertices& mesh) {
    std::vector<Side> sides;
    sides.reserve(mesh.corners.size());
    for (std::size_t i = 0; i < mesh.corners.size(); i += 3) {
        const std::array<std::size_t, 3> corners{mesh.corners[i], mesh.corners[i + 1], mesh.corners[i + 2]};
        if (corners[0] == corners[1] || corners[1] == corners[2] || corners[2] == corners[0]) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t from = corners[k];
            const std::size_t to = corners[(k + 1) % 3];
            sides.push_back({std::min(from, to), std::max(from, to), i / 3, from > to});
        }
    }
    return sortedByVertex(sides, mesh.positions.size());
}

// Gives whether all edges are matched: run along as often in one direction as in the other.
bool countEdges(const SharedVertices& mesh, Forest& parts, Fitness& fitness) {
    const std::vector<Side> sides = sidesOf(mesh);
    bool matched = true;
    std::vector<std::size_t> atCorner; // for the vertices at open edges one triangle there
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    for (std::size_t i = 0; i < sides.size();) {
        const Side& first = sides[i];
        std::size_t count = 0;
        std::size_t backward = 0;
        for (; i < sides.size() && sides[i].vertex == first.vertex && sides[i].other == first.other; ++i) {
            ++count;
            backward += sides[i].backward ? 1 : 0;
            parts.join(first.triangle, sides[i].triangle);
        }
        matched = matched && 2 * backward == count;
        if (count > 2) ++fitness.nonManifoldEdges;
        if (count == 2 && backward != 1) ++fitness.flippedEdges;
        if (count != 1) continue;
        ++fitness.boundaryEdges;
        if (atCorner.empty()) atCorner.assign(mesh.positions.size(), none);
        atCorner[first.vertex] = atCorner[first.other] = first.triangle;
    }

    // note: booleans leave corners in the middle of a neighbour's edge. There the pieces of a part have corners in
    // common, but no whole edges.
    if (!atCorner.empty()) {
        for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
            if (atCorner[mesh.corners[i]] != none) parts.join(i / 3, atCorner[mesh.corners[i]]);
        }
    }
    return matched;
}

// ---- in words ----

double largestSide(const Box& box) {
    return std::max({box.high.x - box.low.x, box.high.y - box.low.y, box.high.z - box.low.z});
}

double farthest(const Box& box) {
    return std::max({std::abs(box.low.x), std::abs(box.low.y), std::abs(box.low.z), std::abs(box.high.x),
                     std::abs(box.high.y), std::abs(box.high.z)});
}

// Measured: from two scans of this size a difference loses some tenths of a percent of its volume, at a tenth of it 5
// %, and at 4 % of it a fifth.
constexpr double smallest = 1e-3;

// Above, doubles lie a tenth of the tolerance apart and more; a distance from a plane is the sum of a few such errors.
constexpr double largest = 1e9;

bool closesInPieces(const Fitness& fitness) {
    return fitness.boundaryEdges > 0 && fitness.openEdges == 0;
}

// Of the nearest power of ten that brings the size near 1.
int exponentTo1(double size) {
    return -static_cast<int>(std::floor(std::log10(size)));
}

// note: another unit makes no mesh any finer that is small beside its distance from the origin.
void complainOfSize(const Fitness& fitness, bool anySize, std::vector<std::string>& found) {
    const double size = largestSide(fitness.box);
    const double reach = farthest(fitness.box);
    if (reach >= largest && !(anySize && size >= largest)) {
        const double step = std::nextafter(reach, HUGE_VAL) - reach;
        std::string text = formatted("coordinates go up to %.2g, where doubles are %.1g apart: too coarse for the "
                                     "tolerance of %g; ",
                                     reach, step, TOLERANCE);
        if (size < largest) {
            text += "move the mesh to the origin (orva convert --move)";
        } else {
            text += formatted("scale it by 1e%d or so (orva convert --scale)", 3 + exponentTo1(size));
        }
        found.push_back(text);
    }
    if (size < smallest && size > 0.0 && !anySize) {
        found.push_back(formatted("it is %.2g across, and what is closer than the tolerance of %g counts as one place; "
                                  "scale it by 1e%d or so (orva convert --scale)",
                                  size, TOLERANCE, exponentTo1(size)));
    }
}

} // namespace

Fitness measureFitness(const Model& model) {
    Fitness fitness;
    const SharedVertices shared = shareVertices(model.mesh);
    measureTriangles(shared, fitness);
    fitness.volume = signedVolume(model.mesh);
    const std::vector<bool> duplicates = findDuplicates(shared, fitness);
    fitness.crossings = findCrossings(shared, duplicates, CLOSING_TOLERANCE);
    fitness.ownIndices = !model.indices.empty();
    const SharedVertices own = fitness.ownIndices ? verticesOf(model) : SharedVertices();
    const SharedVertices& indexed = fitness.ownIndices ? own : shared;
    fitness.byIndex = measureManifold(indexed.corners, indexed.positions.size());

    Forest parts(fitness.triangles);
    const bool matched = countEdges(shared, parts, fitness);
    for (std::size_t i = 0; i < fitness.triangles; ++i) fitness.parts += parts.first(i) == i ? 1 : 0;
    if (matched) {
        fitness.insideOutParts = countInsideOut(shared, parts, middleOf(fitness.box));
    } else {
        const Closedness closedness = measureClosedness(shared, CLOSING_TOLERANCE);
        fitness.openEdges = closedness.openEdges;
        fitness.largestGap = closedness.largestGap;
    }
    return fitness;
}

std::vector<std::string> complaints(const Fitness& fitness, bool anySize) {
    std::vector<std::string> found;
    if (fitness.triangles == 0) {
        found.emplace_back("it has no triangles, and a boolean with an empty mesh gives nothing; check that the right "
                           "thing was exported");
        return found;
    }

    // note: where only cuts have left open edges, pieces match pieces, and how many triangles a whole edge has means
    // nothing.
    if (fitness.openEdges > 0 && fitness.boundaryEdges > 0) {
        found.push_back(counted(std::min(fitness.openEdges, fitness.boundaryEdges), "edge has", "edges have") +
                        formatted(" a triangle on one side only: the surface is open, gaps up to %.2g; close its holes",
                                  fitness.largestGap));
    }
    if (fitness.openEdges > 0 && fitness.flippedEdges > 0) {
        found.push_back(counted(fitness.flippedEdges, "edge lies", "edges lie") +
                        " between triangles that face opposite ways; turn the triangles that face inward");
    }
    if (fitness.nonManifoldEdges > 0 && !closesInPieces(fitness)) {
        found.push_back(counted(fitness.nonManifoldEdges, "edge has", "edges have") +
                        " more than two triangles; take away the walls inside, or part what touches there");
    }
    if (fitness.duplicates > 0) {
        found.push_back(counted(fitness.duplicates, "triangle has", "triangles have") +
                        " the corners of another one; keep one of each");
    }
    // note: such a triangle has no plane. Where it is the first to be sorted in, it divides nothing, and all that
    // should lie in front of it or behind it is taken for lying in it. A box that begins with one loses half of a
    // union.
    if (fitness.degenerate > 0) {
        found.push_back(counted(fitness.degenerate, "triangle has", "triangles have") +
                        " no area, and parts of the result can vanish there; take them away");
    }

    const Crossings& crossings = fitness.crossings;
    if (crossings.pairs > 0) {
        found.push_back((crossings.complete ? "" : "more than ") +
                        counted(crossings.pairs, "pair of triangles crosses", "pairs of triangles cross") +
                        formatted(", one of them near %.6g %.6g %.6g: the surface passes through itself; unite the "
                                  "parts that overlap (orva union), or repair it where it was made",
                                  crossings.place.x, crossings.place.y, crossings.place.z));
    }

    const double thickness = 2.0 * std::abs(fitness.volume) / fitness.area; // of a plate with this volume and area
    const bool closed = fitness.openEdges == 0;
    // In a unit that suits the size, the mesh is about a thousand across.
    const double tolerance = anySize ? std::min(TOLERANCE, 1e-3 * TOLERANCE * largestSide(fitness.box)) : TOLERANCE;
    if (closed && !(thickness >= tolerance)) {
        found.emplace_back("it encloses no volume; give it a thickness");
    } else if (closed && fitness.volume < 0.0) {
        found.push_back(formatted("its volume is negative, %.4g: it is inside out; turn all of its triangles around",
                                  fitness.volume));
    } else if (fitness.insideOutParts > 0) {
        found.push_back(counted(fitness.insideOutParts, "part is", "parts are") + " inside out; turn " +
                        (fitness.insideOutParts == 1 ? "its" : "their") + " triangles around");
    }
    complainOfSize(fitness, anySize, found);
    return found;
}

std::vector<std::string> remarks(const Fitness& fitness) {
    std::vector<std::string> found;
    if (closesInPieces(fitness)) {
        found.push_back(counted(fitness.boundaryEdges, "edge matches its neighbours", "edges match their neighbours") +
                        formatted(" only piece by piece, within %g, as results of booleans do", CLOSING_TOLERANCE));
    }
    if (fitness.crossings.shallow > 0) {
        found.push_back(counted(fitness.crossings.shallow, "pair of triangles crosses", "pairs of triangles cross") +
                        formatted(" by less than %g, as in results of booleans", CLOSING_TOLERANCE));
    }
    if (fitness.thin > 0) {
        found.push_back(counted(fitness.thin, "triangle is", "triangles are") +
                        formatted(" narrower than the tolerance of %g", TOLERANCE));
    }
    return found;
}

} // namespace orva::program

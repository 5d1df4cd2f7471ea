#include "tidy/loops.hpp"

#include "tidy/adjacency.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace orva::tidy {

namespace {

using Loop = std::vector<std::uint32_t>; // edges, each beginning where the one before ends

// Simple loops, as they are met on the way from open edge to open edge. There is a way on from each point: as many open
// edges lead into it as out of it.
std::vector<Loop> findLoops(const Surface& surface) {
    Adjacency open;
    collect(open, surface, surface.points.size(),
            [](const Edge& edge) { return edge.twin == NONE ? edge.from : NONE; });
    std::vector<std::uint32_t> nextWay(open.first.begin(), open.first.end() - 1); // by point: those before are used
    std::vector<std::uint32_t> byNumber = open.edges;
    std::sort(byNumber.begin(), byNumber.end());
    std::vector<Loop> loops;
    std::vector<std::uint32_t> path;
    std::vector<std::uint32_t> placeOnPath(surface.points.size(), NONE);
    for (std::size_t i = 0; i < open.edges.size(); ++i) {
        // note: in the order of the edges' numbers, not of their points, so that the first loops are those met first.
        const std::uint32_t start = byNumber[i];
        std::uint32_t at = surface.edges[start].from;
        if (nextWay[at] == open.first[at + 1] || open.edges[nextWay[at]] != start) continue;
        while (nextWay[at] < open.first[at + 1]) { // the way ends where it began
            placeOnPath[at] = static_cast<std::uint32_t>(path.size());
            path.push_back(open.edges[nextWay[at]++]);
            at = surface.edges[path.back()].to;
            if (placeOnPath[at] == NONE) continue;
            const std::size_t first = placeOnPath[at]; // the path has come back to itself
            loops.emplace_back(path.begin() + static_cast<std::ptrdiff_t>(first), path.end());
            for (std::size_t k = first; k < path.size(); ++k) placeOnPath[surface.edges[path[k]].from] = NONE;
            path.resize(first);
            if (path.empty()) break;
        }
        for (const std::uint32_t edge : path) placeOnPath[surface.edges[edge].from] = NONE;
        path.clear();
    }
    return loops;
}

// Of the edges out of one point so many are looked at: a hub of thousands of faces would be looked at again for each
// loop through it, and what has most to do with a loop is at its other points, too.
constexpr std::size_t LOOKED_AT = 64;

// The faces around, those first with which the loop has most to do.
std::vector<std::uint32_t> facesAround(const Surface& surface, const Adjacency& around, const Loop& loop) {
    std::vector<std::uint32_t> all;
    for (const std::uint32_t edge : loop) {
        const std::uint32_t point = surface.edges[edge].from;
        const std::size_t first = around.first[point];
        const std::size_t last = std::min<std::size_t>(around.first[point + 1], first + LOOKED_AT);
        for (std::size_t i = first; i < last; ++i) all.push_back(surface.edges[around.edges[i]].face);
        if (around.first[point + 1] > last) all.push_back(surface.edges[edge].face);
    }
    std::sort(all.begin(), all.end());
    struct Candidate {
        std::ptrdiff_t edges;
        std::uint32_t face;
    };
    std::vector<Candidate> candidates;
    for (auto first = all.begin(); first != all.end();) {
        const auto last = std::upper_bound(first, all.end(), *first);
        candidates.push_back({last - first, *first});
        first = last;
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.edges > b.edges; });
    std::vector<std::uint32_t> faces;
    for (const Candidate& candidate : candidates) faces.push_back(candidate.face);
    return faces;
}

bool lieInPlane(const std::vector<Vec3>& points, const Vec3& normal, const Vec3& origin, double distance) {
    const double reach = distance * squareRoot(squaredLength(normal));
    return std::all_of(points.begin(), points.end(),
                       [&](const Vec3& point) { return std::fabs(dot(normal, point - origin)) <= reach; });
}

} // namespace

Loops closeLoopsOfFaces(Surface& surface, double distance, const MayBePiece& mayBePiece) {
    Loops closed;
    const std::vector<Loop> loops = findLoops(surface);
    if (loops.empty()) return closed;

    std::vector<bool> isOpen(surface.points.size());
    for (const Loop& loop : loops) {
        for (const std::uint32_t edge : loop) isOpen[surface.edges[edge].from] = true;
    }
    Adjacency around;
    collect(around, surface, surface.points.size(),
            [&isOpen](const Edge& edge) { return isOpen[edge.from] ? edge.from : NONE; });

    std::vector<Vec3> points;
    for (const Loop& loop : loops) {
        points.clear();
        for (const std::uint32_t edge : loop) points.push_back(surface.points[surface.edges[edge].from]);
        Vec3 sum;
        double length = 0.0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Vec3& next = points[(i + 1) % points.size()];
            sum = sum + cross(points[i] - points[0], next - points[0]);
            length += squareRoot(squaredLength(next - points[i]));
        }
        const double twiceArea = squareRoot(squaredLength(sum));
        for (const std::uint32_t face : facesAround(surface, around, loop)) {
            if (!lieInPlane(points, surface.faces[face].normal, surface.faces[face].origin, distance) ||
                !mayBePiece(face, points, twiceArea / length)) {
                continue;
            }
            for (const std::uint32_t edge : loop) {
                const auto added = static_cast<std::uint32_t>(surface.edges.size());
                surface.edges.push_back({surface.edges[edge].to, surface.edges[edge].from, face, NONE, NONE});
                match(surface, edge, added);
            }
            ++closed.count;
            closed.area += 0.5 * twiceArea;
            break;
        }
    }
    return closed;
}

} // namespace orva::tidy

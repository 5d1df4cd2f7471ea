#include "measures/closedness.hpp"

#include "measures/box_tree.hpp"
#include "measures/forest.hpp"
#include "mesh/shared_vertices.hpp"
#include "mesh/vectors.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace orva::program {

namespace {

using types::Vec3;

// How often a mesh runs along an edge from its first vertex to its second, less how often it runs back: 0 for a match.
struct Edge {
    std::size_t from = 0;
    std::size_t to = 0;
    std::int64_t surplus = 0;
};

// ---- distances ----

double distance(const Vec3& a, const Vec3& b) {
    const Vec3 d = a - b;
    return std::sqrt(dot(d, d));
}

// 0 to 1: the place on the segment that is nearest to p.
double nearestPlace(const Vec3& from, const Vec3& to, const Vec3& p) {
    const Vec3 d = to - from;
    const double squared = dot(d, d);
    return squared > 0.0 ? std::clamp(dot(p - from, d) / squared, 0.0, 1.0) : 0.0;
}

double distanceToSegment(const Vec3& from, const Vec3& to, const Vec3& p) {
    return distance(p, from + nearestPlace(from, to, p) * (to - from));
}

double distanceToBox(const Box& box, const Vec3& p) {
    return distance(p, {std::clamp(p.x, box.low.x, box.high.x), std::clamp(p.y, box.low.y, box.high.y),
                        std::clamp(p.z, box.low.z, box.high.z)});
}

// Whether the segment passes through the box, made larger by the tolerance all around: axis by axis, the part of the
// segment that does.
bool comesNear(const Box& box, const Vec3& from, const Vec3& to, double tolerance) {
    double begin = 0.0;
    double end = 1.0;
    for (double Vec3::*const axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        const double low = box.low.*axis - tolerance - from.*axis;
        const double high = box.high.*axis + tolerance - from.*axis;
        const double length = to.*axis - from.*axis;
        if (length == 0.0) {
            if (low > 0.0 || high < 0.0) return false;
        } else {
            begin = std::max(begin, std::min(low / length, high / length));
            end = std::min(end, std::max(low / length, high / length));
        }
    }
    return begin <= end;
}

// ---- edges ----

// Sorted, each once, none of them matched, none from a vertex to itself.
void cancelMatches(std::vector<Edge>& edges) {
    for (Edge& edge : edges) {
        if (edge.from > edge.to) edge = {edge.to, edge.from, -edge.surplus};
    }
    std::sort(edges.begin(), edges.end(),
              [](const Edge& a, const Edge& b) { return std::tie(a.from, a.to) < std::tie(b.from, b.to); });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < edges.size();) {
        Edge sum{edges[i].from, edges[i].to, 0};
        for (; i < edges.size() && edges[i].from == sum.from && edges[i].to == sum.to; ++i) {
            sum.surplus += edges[i].surplus;
        }
        if (sum.surplus != 0 && sum.from != sum.to) edges[kept++] = sum;
    }
    edges.resize(kept);
}

std::vector<Edge> edgesOf(const SharedVertices& mesh) {
    std::vector<Edge> edges;
    edges.reserve(mesh.corners.size());
    for (std::size_t i = 0; i < mesh.corners.size(); i += 3) {
        for (std::size_t k = 0; k < 3; ++k) edges.push_back({mesh.corners[i + k], mesh.corners[i + (k + 1) % 3], 1});
    }
    cancelMatches(edges);
    return edges;
}

std::vector<std::size_t> endsOf(const std::vector<Edge>& edges) {
    std::vector<std::size_t> ends;
    ends.reserve(2 * edges.size());
    for (const Edge& edge : edges) {
        ends.push_back(edge.from);
        ends.push_back(edge.to);
    }
    std::sort(ends.begin(), ends.end());
    ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
    return ends;
}

// Of one of the ends among all of them.
std::size_t placeOf(std::size_t end, const std::vector<std::size_t>& ends) {
    return static_cast<std::size_t>(std::lower_bound(ends.begin(), ends.end(), end) - ends.begin());
}

BoxTree treeOfPoints(const std::vector<Vec3>& positions, const std::vector<std::size_t>& points) {
    std::vector<Box> boxes;
    boxes.reserve(points.size());
    for (const std::size_t point : points) boxes.push_back({positions[point], positions[point]});
    return makeBoxTree(boxes);
}

// The ends of edges that are near each other, directly or through others, become one: that of the lowest index.
void weldEnds(std::vector<Edge>& edges, const std::vector<Vec3>& positions, double tolerance) {
    const std::vector<std::size_t> ends = endsOf(edges);
    const BoxTree tree = treeOfPoints(positions, ends);

    Forest welded(ends.size());
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const Vec3& here = positions[ends[i]];
        visit(
            tree, [&](const Box& box) { return distanceToBox(box, here) <= tolerance; },
            [&](std::size_t j) {
                if (j >= i || distance(here, positions[ends[j]]) > tolerance) return;
                welded.join(i, j);
            });
    }

    const auto weldedTo = [&](std::size_t end) { return ends[welded.first(placeOf(end, ends))]; };
    for (Edge& edge : edges) edge = {weldedTo(edge.from), weldedTo(edge.to), edge.surplus};
    cancelMatches(edges);
}

// Only ends of unmatched edges split them: another vertex would split both edges of a match.
void splitEdges(std::vector<Edge>& edges, const std::vector<Vec3>& positions, double tolerance) {
    const std::vector<std::size_t> ends = endsOf(edges);
    const BoxTree tree = treeOfPoints(positions, ends);

    std::vector<Edge> pieces;
    std::vector<std::pair<double, std::size_t>> stops; // on the way along an edge
    for (const Edge& edge : edges) {
        const Vec3& from = positions[edge.from];
        const Vec3& to = positions[edge.to];
        stops.clear();
        visit(
            tree, [&](const Box& box) { return comesNear(box, from, to, tolerance); },
            [&](std::size_t i) {
                const std::size_t stop = ends[i];
                if (stop == edge.from || stop == edge.to) return;
                if (distanceToSegment(from, to, positions[stop]) > tolerance) return;
                stops.emplace_back(nearestPlace(from, to, positions[stop]), stop);
            });
        std::sort(stops.begin(), stops.end());

        std::size_t at = edge.from;
        for (const auto& [place, stop] : stops) {
            pieces.push_back({at, stop, edge.surplus});
            at = stop;
        }
        pieces.push_back({at, edge.to, edge.surplus});
    }
    edges = std::move(pieces);
    cancelMatches(edges);
}

double largestGap(const std::vector<Edge>& edges, const std::vector<Vec3>& positions) {
    std::vector<Box> boxes;
    boxes.reserve(edges.size());
    for (const Edge& edge : edges) {
        const Vec3& a = positions[edge.from];
        const Vec3& b = positions[edge.to];
        boxes.push_back({{std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)},
                         {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)}});
    }
    const BoxTree tree = makeBoxTree(boxes);

    double largest = 0.0;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const Vec3 middle = 0.5 * (positions[edges[i].from] + positions[edges[i].to]);
        double nearest = std::numeric_limits<double>::infinity(); // not for long: open edges come in closed chains
        visit(
            tree, [&](const Box& box) { return distanceToBox(box, middle) < nearest; },
            [&](std::size_t j) {
                if (j == i) return;
                const double here = distanceToSegment(positions[edges[j].from], positions[edges[j].to], middle);
                nearest = std::min(nearest, here);
            });
        largest = std::max(largest, nearest);
    }
    return largest;
}

std::vector<Edge> unmatchedEdges(const SharedVertices& mesh, double tolerance) {
    std::vector<Edge> edges = edgesOf(mesh);

    // note: nearly all edges match but for rounding, and are out of the way after the first round. Welding with the
    // whole tolerance at once would make chains out of vertices that lie dense, and find gaps of its own making at
    // their ends.
    constexpr double rounding = 1e-4; // of the tolerance
    for (const double reach : {rounding * tolerance, tolerance}) {
        weldEnds(edges, mesh.positions, reach);
        splitEdges(edges, mesh.positions, reach);
    }
    return edges;
}

} // namespace

Closedness measureClosedness(const types::Mesh<double>& mesh, double tolerance) {
    return measureClosedness(shareVertices(mesh), tolerance);
}

Closedness measureClosedness(const SharedVertices& mesh, double tolerance) {
    const std::vector<Edge> edges = unmatchedEdges(mesh, tolerance);
    Closedness result;
    for (const Edge& edge : edges) result.openEdges += static_cast<std::size_t>(std::abs(edge.surplus));
    result.largestGap = largestGap(edges, mesh.positions);
    return result;
}

std::vector<Rim> findRims(const types::Mesh<double>& mesh, double tolerance) {
    const SharedVertices shared = shareVertices(mesh);
    const std::vector<Edge> edges = unmatchedEdges(shared, tolerance);
    const std::vector<std::size_t> ends = endsOf(edges);
    Forest groups(ends.size());
    for (const Edge& edge : edges) groups.join(placeOf(edge.from, ends), placeOf(edge.to, ends));

    std::vector<Rim> atFirst(ends.size());
    for (const Edge& edge : edges) {
        const bool forward = edge.surplus > 0;
        atFirst[groups.first(placeOf(edge.from, ends))].push_back(
            {shared.positions[forward ? edge.from : edge.to], shared.positions[forward ? edge.to : edge.from]});
    }
    std::vector<Rim> rims;
    for (Rim& rim : atFirst) {
        if (!rim.empty()) rims.push_back(std::move(rim));
    }
    return rims;
}

} // namespace orva::program

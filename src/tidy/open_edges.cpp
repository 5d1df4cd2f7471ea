#include "tidy/open_edges.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orva::tidy {

namespace {

// More edges than that between two points are matched in their order, whatever the angles.
constexpr std::size_t MANY = 64;

// Grows from 0 to 4 as the angle of (x, y) does from 0 to a full turn; NaN stays NaN.
double pseudoAngle(double x, double y) {
    if (y >= 0.0) return x >= 0.0 ? y / (x + y) : 1.0 - x / (y - x);
    return x < 0.0 ? 2.0 - y / (-x - y) : 3.0 + x / (x - y);
}

// From the face of `edge` through the solid behind it to the face of `opposite`.
double angleThroughSolid(const Surface& surface, const Edge& edge, const Edge& opposite) {
    const Vec3 along = surface.points[edge.to] - surface.points[edge.from];
    const Vec3& normal = surface.faces[edge.face].normal;
    const Vec3 inward = cross(normal, along); // into the face
    const Vec3 other = cross(along, surface.faces[opposite.face].normal);
    return pseudoAngle(dot(other, inward), -dot(other, normal) * squareRoot(squaredLength(along)));
}

} // namespace

void OpenEdges::collect(const Surface& surface) {
    firstIn.assign(surface.points.size(), NONE);
    firstOut.assign(surface.points.size(), NONE);
    nextIn.resize(surface.edges.size());
    nextOut.resize(surface.edges.size());
    for (std::size_t i = surface.edges.size(); i-- > 0;) { // so that lists begin with the lowest number
        const Edge& edge = surface.edges[i];
        if (!isAlive(edge) || edge.twin != NONE) continue;
        addInto(surface, static_cast<std::uint32_t>(i));
        addOutOf(surface, static_cast<std::uint32_t>(i));
    }
}

void OpenEdges::takeInto(const Surface& surface, std::uint32_t point, std::vector<std::uint32_t>& list) {
    list.clear();
    for (std::uint32_t edge = std::exchange(firstIn[point], NONE); edge != NONE; edge = nextIn[edge]) {
        if (isAlive(surface.edges[edge]) && surface.edges[edge].twin == NONE) list.push_back(edge);
    }
}

void OpenEdges::takeOutOf(const Surface& surface, std::uint32_t point, std::vector<std::uint32_t>& list) {
    list.clear();
    for (std::uint32_t edge = std::exchange(firstOut[point], NONE); edge != NONE; edge = nextOut[edge]) {
        if (isAlive(surface.edges[edge]) && surface.edges[edge].twin == NONE) list.push_back(edge);
    }
}

std::uint32_t OpenEdges::onlyInto(std::uint32_t point) const {
    const std::uint32_t edge = firstIn[point];
    return edge == NONE || nextIn[edge] == NONE ? edge : SEVERAL;
}

std::uint32_t OpenEdges::onlyOutOf(std::uint32_t point) const {
    const std::uint32_t edge = firstOut[point];
    return edge == NONE || nextOut[edge] == NONE ? edge : SEVERAL;
}

void OpenEdges::addInto(const Surface& surface, std::uint32_t edge) {
    if (nextIn.size() < surface.edges.size()) nextIn.resize(surface.edges.size());
    nextIn[edge] = std::exchange(firstIn[surface.edges[edge].to], edge);
}

void OpenEdges::addOutOf(const Surface& surface, std::uint32_t edge) {
    if (nextOut.size() < surface.edges.size()) nextOut.resize(surface.edges.size());
    nextOut[edge] = std::exchange(firstOut[surface.edges[edge].from], edge);
}

// Matches those that have a partner in their own face, and takes them off both lists.
void Matcher::matchSameFace(Surface& surface) {
    const auto byFace = [&surface](std::uint32_t a, std::uint32_t b) {
        return std::pair(surface.edges[a].face, a) < std::pair(surface.edges[b].face, b);
    };
    std::sort(forward.begin(), forward.end(), byFace);
    std::sort(backward.begin(), backward.end(), byFace);
    std::size_t b = 0;
    for (const std::uint32_t edge : forward) {
        const std::uint32_t face = surface.edges[edge].face;
        while (b < backward.size() && surface.edges[backward[b]].face < face) ++b;
        if (b == backward.size()) break;
        if (surface.edges[backward[b]].face == face) match(surface, edge, backward[b++]);
    }
    const auto isMatched = [&surface](std::uint32_t edge) { return surface.edges[edge].twin != NONE; };
    std::erase_if(forward, isMatched);
    std::erase_if(backward, isMatched);
}

void Matcher::matchByAngle(Surface& surface) {
    struct Pair {
        double angle;
        std::uint32_t forward;
        std::uint32_t backward;
    };
    std::vector<Pair> pairs;
    for (const std::uint32_t f : forward) {
        for (const std::uint32_t b : backward) {
            const double angle = angleThroughSolid(surface, surface.edges[f], surface.edges[b]);
            pairs.push_back({angle == angle ? angle : 4.0, f, b}); // NaN, of a face without area, comes last
        }
    }
    std::sort(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) {
        if (a.angle != b.angle) return a.angle < b.angle;
        return a.forward != b.forward ? a.forward < b.forward : a.backward < b.backward;
    });
    for (const Pair& pair : pairs) {
        if (surface.edges[pair.forward].twin == NONE && surface.edges[pair.backward].twin == NONE) {
            match(surface, pair.forward, pair.backward);
        }
    }
}

// Edges between the same two points.
void Matcher::matchGroup(Surface& surface, const Entry* first, const Entry* end) {
    if (end - first < 2) return;
    if (end - first == 2) {
        const std::uint32_t a = first->edge;
        const std::uint32_t b = first[1].edge;
        if (surface.edges[a].from == surface.edges[b].to) match(surface, a, b);
        return;
    }
    forward.clear();
    backward.clear();
    for (const Entry* entry = first; entry != end; ++entry) {
        const bool runsUp = surface.edges[entry->edge].to == entry->high;
        (runsUp ? forward : backward).push_back(entry->edge);
    }
    if (forward.empty() || backward.empty()) return;
    matchSameFace(surface);
    if (std::max(forward.size(), backward.size()) <= MANY) return matchByAngle(surface);
    for (std::size_t i = 0; i < std::min(forward.size(), backward.size()); ++i) {
        match(surface, forward[i], backward[i]);
    }
}

void Matcher::matchOpposite(Surface& surface) {
    // Counted, then filled: open edges by the lower of their points.
    last.assign(surface.points.size() + 1, 0);
    for (const Edge& edge : surface.edges) {
        if (isAlive(edge) && edge.twin == NONE) ++last[std::min(edge.from, edge.to) + 1];
    }
    for (std::size_t i = 1; i < last.size(); ++i) last[i] += last[i - 1];
    entries.resize(last.back());
    for (std::size_t i = 0; i < surface.edges.size(); ++i) {
        const Edge& edge = surface.edges[i];
        if (!isAlive(edge) || edge.twin != NONE) continue;
        const auto [low, high] = std::minmax(edge.from, edge.to);
        entries[last[low]++] = {high, static_cast<std::uint32_t>(i)};
    }

    const auto isBefore = [](const Entry& a, const Entry& b) {
        return a.high != b.high ? a.high < b.high : a.edge < b.edge;
    };
    Entry* const all = entries.data();
    for (std::size_t low = 0, begin = 0; low + 1 < last.size(); begin = last[low++]) {
        if (last[low] - begin < 2) continue;
        std::sort(all + begin, all + last[low], isBefore);
        for (std::size_t first = begin, end = begin; first < last[low]; first = end) {
            while (end < last[low] && all[end].high == all[first].high) ++end;
            matchGroup(surface, all + first, all + end);
        }
    }
}

} // namespace orva::tidy

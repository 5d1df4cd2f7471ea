#include "tidy/straighten.hpp"

#include <algorithm>

namespace orva::tidy {

const Vec3& Straightener::pointAt(const Surface& surface, std::size_t i) const {
    const bool isEnd = i == run.size();
    const Edge& edge = surface.edges[isEnd ? run.back() : run[i]];
    return surface.points[isEnd ? edge.to : edge.from];
}

void Straightener::markKept(const Surface& surface) {
    isKept.assign(run.size() + 1, false);
    isKept.front() = isKept.back() = true;
    spans.assign(1, {0, run.size()});
    while (!spans.empty()) {
        const auto [first, last] = spans.back();
        spans.pop_back();
        const Vec3& from = pointAt(surface, first);
        const Vec3& to = pointAt(surface, last);
        double most = -1.0;
        std::size_t farthest = first;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double distance = squaredDistance(pointAt(surface, i), from, to);
            if (!(distance > most)) continue;
            most = distance;
            farthest = i;
        }
        if (most <= limit) {
            worst = std::max(worst, most);
            continue;
        }
        isKept[farthest] = true;
        spans.emplace_back(first, farthest);
        spans.emplace_back(farthest, last);
    }
}

// The edges first to last - 1 of the run become one.
void Straightener::join(Surface& surface, std::size_t first, std::size_t last) {
    if (last - first == 1) return;
    std::vector<Edge>& edges = surface.edges;
    const std::uint32_t head = run[first];
    const std::uint32_t tail = run[last - 1];
    const std::uint32_t twin = edges[tail].twin;
    const std::uint32_t end = edges[tail].to;
    const std::uint32_t begin = edges[head].from;
    for (std::size_t i = first; i < last; ++i) {
        const std::uint32_t other = edges[run[i]].twin;
        if (other != NONE && other != twin) remove(surface, other);
        if (i != first) remove(surface, run[i]);
    }
    if (begin == end) { // too small a loop for two points
        remove(surface, head);
        if (twin != NONE) remove(surface, twin);
        return;
    }
    edges[head].to = end;
    if (twin == NONE) return;
    edges[twin].to = begin;
    match(surface, head, twin);
}

void Straightener::straightenRun(Surface& surface) {
    if (run.size() < 2) return;
    markKept(surface);
    for (std::size_t first = 0, i = 1; i <= run.size(); ++i) {
        if (!isKept[i]) continue;
        join(surface, first, i);
        first = i;
    }
}

// A run that ends where it begins, and has no point that has to stay: its lowest and the farthest from that one do.
void Straightener::straightenLoop(Surface& surface) {
    if (run.size() < 3) return;
    const auto lowest = std::min_element(run.begin(), run.end(), [&surface](std::uint32_t a, std::uint32_t b) {
        return surface.edges[a].from < surface.edges[b].from;
    });
    std::rotate(run.begin(), lowest, run.end());
    straightenRun(surface); // the span from a point to itself is divided at the farthest
}

void Straightener::follow(const std::vector<std::uint32_t>& next, std::size_t from) {
    run.clear();
    for (auto edge = static_cast<std::uint32_t>(from); edge != NONE && !isDone[edge]; edge = next[edge]) {
        isDone[edge] = true;
        run.push_back(edge);
    }
}

double Straightener::straighten(Surface& surface, const std::vector<std::uint32_t>& next, double radius) {
    limit = radius * radius;
    worst = 0.0;
    hasBefore.assign(next.size(), false);
    isDone.assign(next.size(), false);
    for (const std::uint32_t edge : next) {
        if (edge != NONE) hasBefore[edge] = true;
    }
    for (std::size_t i = 0; i < next.size(); ++i) {
        if (next[i] == NONE || hasBefore[i]) continue;
        follow(next, i);
        straightenRun(surface);
    }
    for (std::size_t i = 0; i < next.size(); ++i) {
        if (next[i] == NONE || isDone[i]) continue;
        follow(next, i);
        straightenLoop(surface);
    }
    return squareRoot(worst);
}

} // namespace orva::tidy

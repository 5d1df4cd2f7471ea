#include "tidy/straighten.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orva::tidy {

namespace {

class Straightener {
public:
    Straightener(Surface& ofSurface, double radius) : surface(ofSurface), limit(radius * radius) {}

    void straightenRun();
    void straightenLoop();

    std::vector<std::uint32_t> run; ///< edges, one behind the other
    double worst = 0.0;             ///< squared

private:
    const Vec3& pointAt(std::size_t i) const { // of the run, from 0 to its size
        return i < run.size() ? surface.points[surface.edges[run[i]].from]
                              : surface.points[surface.edges[run.back()].to];
    }
    void markKept();
    void join(std::size_t first, std::size_t last);

    Surface& surface;
    double limit; ///< squared
    std::vector<bool> isKept;
    std::vector<std::pair<std::size_t, std::size_t>> spans;
};

void Straightener::markKept() {
    isKept.assign(run.size() + 1, false);
    isKept.front() = isKept.back() = true;
    spans.assign(1, {0, run.size()});
    while (!spans.empty()) {
        const auto [first, last] = spans.back();
        spans.pop_back();
        const Vec3& from = pointAt(first);
        const Vec3& to = pointAt(last);
        double most = -1.0;
        std::size_t farthest = first;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double distance = squaredDistance(pointAt(i), from, to);
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
void Straightener::join(std::size_t first, std::size_t last) {
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
    surface.faces[edges[head].face].whole = false;
    edges[head].to = end;
    if (twin == NONE) return;
    surface.faces[edges[twin].face].whole = false;
    edges[twin].to = begin;
    match(surface, head, twin);
}

void Straightener::straightenRun() {
    if (run.size() < 2) return;
    markKept();
    for (std::size_t first = 0, i = 1; i <= run.size(); ++i) {
        if (!isKept[i]) continue;
        join(first, i);
        first = i;
    }
}

// A run that ends where it begins, and has no point that has to stay: its lowest and the farthest from that one do.
void Straightener::straightenLoop() {
    if (run.size() < 3) return;
    const auto lowest = std::min_element(run.begin(), run.end(), [this](std::uint32_t a, std::uint32_t b) {
        return surface.edges[a].from < surface.edges[b].from;
    });
    std::rotate(run.begin(), lowest, run.end());
    straightenRun(); // the span from a point to itself is divided at the farthest
}

} // namespace

double straighten(Surface& surface, const std::vector<std::uint32_t>& next, double radius) {
    Straightener straightener(surface, radius);
    std::vector<std::uint32_t>& run = straightener.run;
    std::vector<bool> hasBefore(next.size());
    for (const std::uint32_t edge : next) {
        if (edge != NONE) hasBefore[edge] = true;
    }
    std::vector<bool> isDone(next.size());
    const auto follow = [&](std::size_t from) {
        run.clear();
        for (auto edge = static_cast<std::uint32_t>(from); edge != NONE && !isDone[edge]; edge = next[edge]) {
            isDone[edge] = true;
            run.push_back(edge);
        }
    };
    for (std::size_t i = 0; i < next.size(); ++i) {
        if (next[i] == NONE || hasBefore[i]) continue;
        follow(i);
        straightener.straightenRun();
    }
    for (std::size_t i = 0; i < next.size(); ++i) {
        if (next[i] == NONE || isDone[i]) continue;
        follow(i);
        straightener.straightenLoop();
    }
    return squareRoot(straightener.worst);
}

} // namespace orva::tidy

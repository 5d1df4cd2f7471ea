#include "tidy/zip.hpp"

#include <algorithm>
#include <cstddef>

namespace orva::tidy {

namespace {

// A point with more pairs of edges than that is looked at by directions, and only neighbours among them are compared.
constexpr std::size_t MANY_PAIRS = 1024;
constexpr std::size_t NEIGHBOURS = 4;

struct Slope {
    double value;
    std::uint32_t edge;

    bool operator<(const Slope& other) const { return value != other.value ? value < other.value : edge < other.edge; }
};

// A number that is nearly the same for edges in nearly the same direction. No axis is special to the constants.
Slope slopeOf(std::uint32_t edge, const Vec3& away) {
    return {dot(away, {0.36, 0.48, 0.8}) / squareRoot(squaredLength(away)), edge};
}

} // namespace

bool Zipper::Fold::operator<(const Fold& other) const {
    if (distance != other.distance) return distance < other.distance;
    if (sameFace != other.sameFace) return sameFace;
    return in != other.in ? in < other.in : out < other.out;
}

double Zipper::zip(Surface& surface, double radius) {
    limit = radius * radius;
    worst = 0.0;
    open.collect(surface);
    isWaiting.assign(surface.points.size(), false);
    waiting.clear();
    for (const Edge& edge : surface.edges) {
        if (isAlive(edge) && edge.twin == NONE) visit(edge.from);
    }
    for (std::size_t i = 0; i < waiting.size(); ++i) { // it grows meanwhile
        isWaiting[waiting[i]] = false;
        zipAt(surface, waiting[i]);
    }
    return squareRoot(worst);
}

void Zipper::visit(std::uint32_t point) {
    if (isWaiting[point]) return;
    isWaiting[point] = true;
    waiting.push_back(point);
}

void Zipper::zipAt(Surface& surface, std::uint32_t point) {
    // Nearly always there is one edge on each side, and nothing to be done.
    const std::uint32_t onlyIn = open.onlyInto(point);
    const std::uint32_t onlyOut = open.onlyOutOf(point);
    if (onlyIn == NONE || onlyOut == NONE) return;
    if (onlyIn != SEVERAL && onlyOut != SEVERAL) {
        if (surface.edges[onlyIn].twin != NONE || surface.edges[onlyOut].twin != NONE) return;
        folds.clear();
        tryFold(surface, onlyIn, onlyOut);
        if (folds.empty()) return;
    }

    open.takeInto(surface, point, ins);
    open.takeOutOf(surface, point, outs);
    folds.clear();
    if (ins.size() * outs.size() <= MANY_PAIRS) {
        collectFolds(surface);
    } else {
        collectNeighbouringFolds(surface);
    }
    std::sort(folds.begin(), folds.end());
    // Both edges of a fold that was closed have left this point: they are matched, or end elsewhere.
    const auto endsHere = [&](std::uint32_t in) {
        return surface.edges[in].twin == NONE && surface.edges[in].to == point;
    };
    const auto beginsHere = [&](std::uint32_t out) {
        return surface.edges[out].twin == NONE && surface.edges[out].from == point;
    };
    for (const Fold& fold : folds) {
        if (endsHere(fold.in) && beginsHere(fold.out)) close(surface, fold);
    }
    for (std::size_t i = ins.size(); i-- > 0;) {
        if (endsHere(ins[i])) open.addInto(surface, ins[i]);
    }
    for (std::size_t i = outs.size(); i-- > 0;) {
        if (beginsHere(outs[i])) open.addOutOf(surface, outs[i]);
    }
}

void Zipper::tryFold(const Surface& surface, std::uint32_t in, std::uint32_t out) {
    const Edge& first = surface.edges[in];
    const Edge& second = surface.edges[out];
    const bool sameFace = first.face == second.face;
    if (first.from == second.to) return folds.push_back({0.0, sameFace, in, out});
    const Vec3& at = surface.points[first.to];
    const Vec3 a = surface.points[first.from] - at;
    const Vec3 b = surface.points[second.to] - at;
    if (!(dot(a, b) > 0.0)) return;
    const double distance = squaredLength(cross(a, b)) / std::max(squaredLength(a), squaredLength(b));
    if (distance <= limit) folds.push_back({distance, sameFace, in, out});
}

void Zipper::collectFolds(const Surface& surface) {
    for (const std::uint32_t in : ins) {
        for (const std::uint32_t out : outs) tryFold(surface, in, out);
    }
}

// note: a fold that is missed so stays open. It takes a thousand open edges in one point for that.
void Zipper::collectNeighbouringFolds(const Surface& surface) {
    const std::vector<Vec3>& points = surface.points;
    std::vector<Slope> slopes;
    for (const std::uint32_t out : outs) {
        const Edge& edge = surface.edges[out];
        slopes.push_back(slopeOf(out, points[edge.to] - points[edge.from]));
    }
    std::sort(slopes.begin(), slopes.end());
    for (const std::uint32_t in : ins) {
        const Edge& edge = surface.edges[in];
        const Slope slope = slopeOf(0, points[edge.from] - points[edge.to]);
        const auto near =
            static_cast<std::size_t>(std::lower_bound(slopes.begin(), slopes.end(), slope) - slopes.begin());
        const std::size_t end = std::min(near + NEIGHBOURS, slopes.size());
        for (std::size_t i = near - std::min(near, NEIGHBOURS); i < end; ++i) tryFold(surface, in, slopes[i].edge);
    }
}

void Zipper::close(Surface& surface, const Fold& fold) {
    const std::uint32_t at = surface.edges[fold.in].to;
    const std::uint32_t u = surface.edges[fold.in].from;
    const std::uint32_t w = surface.edges[fold.out].to;
    worst = std::max(worst, fold.distance);
    if (u == w) return match(surface, fold.in, fold.out);

    const double toU = squaredLength(surface.points[u] - surface.points[at]);
    const double toW = squaredLength(surface.points[w] - surface.points[at]);
    if (toW <= toU) {
        match(surface, divide(surface, fold.in, w), fold.out);
        open.addInto(surface, fold.in);
        return visit(w);
    }
    const std::uint32_t rest = divide(surface, fold.out, u); // u -> w; what stays of the edge is v -> u
    match(surface, fold.in, fold.out);
    open.addInto(surface, rest);
    open.addOutOf(surface, rest);
    visit(u);
}

} // namespace orva::tidy

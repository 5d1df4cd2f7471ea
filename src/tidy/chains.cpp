#include "tidy/chains.hpp"

#include "tidy/adjacency.hpp"
#include "tidy/regions.hpp"
#include "tidy/straighten.hpp"

#include <algorithm>
#include <cstddef>

namespace orva::tidy {

namespace {

// Each round shortens what the one before has joined; there is little left after the second.
constexpr int ROUNDS = 8;

class Simplifier {
public:
    Simplifier(Surface& ofSurface, const std::vector<std::uint32_t>& regions, const std::vector<bool>& isCut,
               double atRadius)
        : surface(ofSurface), region(regions), cut(isCut), radius(atRadius) {}

    double straightenChains();
    bool collapse();

    double bent = 0.0; ///< squared

private:
    std::uint32_t regionOf(std::uint32_t edge) const { return region[surface.edges[edge].face]; }
    bool collapseRegion(std::uint32_t of);
    bool collapseAt(std::uint32_t in, std::uint32_t out);
    void glue(std::uint32_t in, std::uint32_t out);

    Surface& surface;
    const std::vector<std::uint32_t>& region;
    const std::vector<bool>& cut;
    double radius;
    Straightener straightener;
    Adjacency around;                    ///< by the point that edges come from
    Adjacency border;                    ///< by region
    std::vector<std::uint32_t> firstOut; ///< by point: an edge that was once of some region, to be looked at again
};

double Simplifier::straightenChains() {
    collect(around, surface, surface.points.size(), [](const Edge& edge) { return edge.from; });
    std::vector<std::uint32_t> incoming(surface.points.size());
    for (const Edge& edge : surface.edges) {
        if (isAlive(edge)) ++incoming[edge.to];
    }
    std::vector<std::uint32_t> next(surface.edges.size(), NONE);
    for (std::size_t p = 0; p < surface.points.size(); ++p) {
        if (around.first[p + 1] - around.first[p] != 2 || incoming[p] != 2) continue;
        const std::uint32_t a = around.edges[around.first[p]];
        const std::uint32_t b = around.edges[around.first[p] + 1];
        const std::uint32_t intoA = surface.edges[b].twin; // on the same side as a
        const std::uint32_t intoB = surface.edges[a].twin;
        if (intoA == NONE || intoB == NONE) continue;
        if (regionOf(a) != regionOf(intoA) || regionOf(b) != regionOf(intoB)) continue;
        if (regionOf(a) < regionOf(b))
            next[intoA] = a;
        else
            next[intoB] = b;
    }
    return straightener.straighten(surface, next, radius);
}

// What lies behind the two edges becomes neighbours, and the edges are gone.
void Simplifier::glue(std::uint32_t in, std::uint32_t out) {
    const std::uint32_t a = surface.edges[in].twin;
    const std::uint32_t b = surface.edges[out].twin;
    remove(surface, in);
    remove(surface, out);
    if (a == out) return;
    if (regionOf(a) != regionOf(b)) return match(surface, a, b);
    remove(surface, a);
    remove(surface, b);
}

// Two edges of one region that meet in a point and fold back on one another.
bool Simplifier::collapseAt(std::uint32_t in, std::uint32_t out) {
    const Edge first = surface.edges[in];
    const Edge second = surface.edges[out];
    if (first.twin == NONE || second.twin == NONE) return false;
    if (first.from == second.to) {
        glue(in, out);
        return true;
    }
    const Vec3& at = surface.points[first.to];
    const Vec3 a = surface.points[first.from] - at;
    const Vec3 b = surface.points[second.to] - at;
    if (!(dot(a, b) > 0.0)) return false;
    const double distance = squaredLength(cross(a, b)) / std::max(squaredLength(a), squaredLength(b));
    if (!(distance <= radius * radius)) return false;
    const bool firstIsLonger = squaredLength(b) <= squaredLength(a);
    if (!cut[surface.edges[firstIsLonger ? first.twin : second.twin].face]) return false;
    bent = std::max(bent, distance);
    if (firstIsLonger) {
        glue(divide(surface, in, second.to), out);
    } else {
        divide(surface, out, first.from);
        glue(in, out);
    }
    return true;
}

bool Simplifier::collapseRegion(std::uint32_t of) {
    bool any = false;
    for (bool again = true; again;) {
        again = false;
        const std::size_t first = border.first[of];
        const std::size_t last = border.first[of + 1];
        for (std::size_t i = first; i < last; ++i) {
            const Edge& edge = surface.edges[border.edges[i]];
            if (isAlive(edge)) firstOut[edge.from] = border.edges[i];
        }
        for (std::size_t i = first; i < last; ++i) {
            const std::uint32_t in = border.edges[i];
            if (!isAlive(surface.edges[in])) continue;
            const std::uint32_t out = firstOut[surface.edges[in].to];
            if (out == NONE || out == in || !isAlive(surface.edges[out])) continue;
            if (surface.edges[out].from != surface.edges[in].to || regionOf(out) != of) continue;
            again = collapseAt(in, out) || again;
        }
        any = any || again;
    }
    return any;
}

bool Simplifier::collapse() {
    collect(border, surface, surface.faces.size(), [this](const Edge& edge) { return region[edge.face]; });
    firstOut.assign(surface.points.size(), NONE);
    bool any = false;
    for (std::size_t i = 0; i < surface.faces.size(); ++i) {
        const auto of = static_cast<std::uint32_t>(i);
        if (region[i] == of && cut[i]) any = collapseRegion(of) || any;
    }
    return any;
}

} // namespace

double simplifyChains(Surface& surface, const std::vector<std::uint32_t>& region, const std::vector<bool>& cut,
                      double radius) {
    Simplifier simplifier(surface, region, cut, radius);
    double dropped = 0.0;
    for (int round = 0; round < ROUNDS; ++round) {
        dropped = std::max(dropped, simplifier.straightenChains());
        if (!simplifier.collapse()) break;
    }
    return std::max(dropped, squareRoot(simplifier.bent));
}

} // namespace orva::tidy

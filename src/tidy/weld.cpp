#include "tidy/weld.hpp"

#include "tidy/hash.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace orva::tidy {

namespace {

// Cells are so many radii wide: few points have to look beyond their own, and no more leaders than their cube, since
// leaders are a radius apart.
constexpr double CELL = 16.0;

class Grid {
public:
    Grid(const std::vector<Vec3>& ofPoints, double weldRadius, std::size_t expected)
        : points(ofPoints), radius(weldRadius), cell(CELL * weldRadius), heads(std::bit_ceil(2 * expected + 8), NONE) {}

    /// The first leader within the radius. A point without one becomes a leader itself.
    std::uint32_t leaderOf(std::uint32_t number) {
        const Vec3& p = points[number];
        std::uint32_t best = NONE;
        for (const double x : {p.x - radius, p.x + radius}) {
            for (const double y : {p.y - radius, p.y + radius}) {
                for (const double z : {p.z - radius, p.z + radius}) {
                    best = std::min(best, search(placeOf({x, y, z}), p));
                    if (sameCell(p.z - radius, p.z + radius)) break;
                }
                if (sameCell(p.y - radius, p.y + radius)) break;
            }
            if (sameCell(p.x - radius, p.x + radius)) break;
        }
        if (best != NONE) return leaders[best].point;
        const std::size_t place = placeOf(p);
        leaders.push_back({number, heads[place]});
        heads[place] = static_cast<std::uint32_t>(leaders.size() - 1);
        return number;
    }

private:
    struct Leader {
        std::uint32_t point;
        std::uint32_t next; ///< in the same place
    };

    bool sameCell(double a, double b) const { return std::floor(a / cell) == std::floor(b / cell); }

    std::size_t placeOf(const Vec3& p) const {
        return hashOf({std::floor(p.x / cell), std::floor(p.y / cell), std::floor(p.z / cell)}) & (heads.size() - 1);
    }

    std::uint32_t search(std::size_t place, const Vec3& p) const {
        std::uint32_t best = NONE;
        for (std::uint32_t i = heads[place]; i != NONE; i = leaders[i].next) {
            if (squaredLength(points[leaders[i].point] - p) <= radius * radius) best = std::min(best, i);
        }
        return best;
    }

    const std::vector<Vec3>& points;
    double radius;
    double cell;
    std::vector<std::uint32_t> heads; ///< by place: a leader
    std::vector<Leader> leaders;      ///< in order
};

// Those at the ends of open edges, each once.
std::vector<std::uint32_t> openPoints(const Surface& surface) {
    std::vector<std::uint32_t> list;
    std::vector<bool> isListed(surface.points.size());
    for (const bool sound : {true, false}) {
        for (const Edge& edge : surface.edges) {
            if (!isAlive(edge) || edge.twin != NONE || surface.faces[edge.face].isSound != sound) continue;
            for (const std::uint32_t point : {edge.from, edge.to}) {
                if (isListed[point]) continue;
                isListed[point] = true;
                list.push_back(point);
            }
        }
    }
    return list;
}

} // namespace

double weldOpen(Surface& surface, double radius) {
    const std::vector<std::uint32_t> open = openPoints(surface);
    std::vector<std::uint32_t> leader(surface.points.size());
    for (std::size_t i = 0; i < leader.size(); ++i) leader[i] = static_cast<std::uint32_t>(i);

    Grid grid(surface.points, radius, open.size());
    double worst = 0.0;
    for (const std::uint32_t point : open) {
        leader[point] = grid.leaderOf(point);
        worst = std::max(worst, squaredLength(surface.points[leader[point]] - surface.points[point]));
    }
    if (worst == 0.0) return 0.0;

    for (std::size_t i = 0; i < surface.edges.size(); ++i) {
        Edge& edge = surface.edges[i];
        if (!isAlive(edge)) continue;
        edge.from = leader[edge.from];
        edge.to = leader[edge.to];
        if (edge.from == edge.to) remove(surface, static_cast<std::uint32_t>(i)); // and its twin, when its turn comes
    }
    return squareRoot(worst);
}

} // namespace orva::tidy

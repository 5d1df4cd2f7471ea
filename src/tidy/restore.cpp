#include "tidy/restore.hpp"

#include "tidy/adjacency.hpp"
#include "tidy/point_table.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orva::tidy {

namespace {

class Restorer {
public:
    Restorer(Surface& ofSurface, const types::Mesh<double>& ofSoup) : surface(ofSurface), soup(ofSoup) {}

    void restore(std::uint32_t face, const std::uint32_t* firstEdge, const std::uint32_t* lastEdge);

private:
    struct Side {
        std::uint64_t points; ///< the lower number first
        bool isBorder;
        bool isForward;
        std::uint32_t number; ///< of an edge of the surface, or of a corner of the soup
    };

    void addSide(std::uint32_t from, std::uint32_t to, bool isBorder, std::uint32_t number);
    bool matchSides();

    Surface& surface;
    const types::Mesh<double>& soup;
    PointTable table;
    std::vector<Side> sides;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> cornerOf; ///< of edges
};

void Restorer::addSide(std::uint32_t from, std::uint32_t to, bool isBorder, std::uint32_t number) {
    const auto [low, high] = std::minmax(from, to);
    sides.push_back({std::uint64_t{low} << 32 | high, isBorder, from < to, number});
}

// Whether each side of a piece is either an edge of the face or runs back along another piece, and each edge a side.
bool Restorer::matchSides() {
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
        return a.points != b.points ? a.points < b.points : a.isBorder > b.isBorder;
    });
    cornerOf.clear();
    for (std::size_t i = 0; i < sides.size(); i += 2) {
        if (i + 1 == sides.size() || sides[i].points != sides[i + 1].points) return false;
        if (i + 2 < sides.size() && sides[i].points == sides[i + 2].points) return false;
        if (sides[i + 1].isBorder || sides[i].isBorder != (sides[i].isForward == sides[i + 1].isForward)) return false;
        if (sides[i].isBorder) cornerOf.emplace_back(sides[i].number, sides[i + 1].number);
    }
    return true;
}

void Restorer::restore(std::uint32_t number, const std::uint32_t* firstEdge, const std::uint32_t* lastEdge) {
    Face& face = surface.faces[number];
    table.clear(static_cast<std::size_t>(lastEdge - firstEdge));
    sides.clear();
    for (const std::uint32_t* edge = firstEdge; edge != lastEdge; ++edge) {
        const std::uint32_t from = table.numberOf(surface.points[surface.edges[*edge].from]);
        addSide(from, table.numberOf(surface.points[surface.edges[*edge].to]), true, *edge);
    }
    const std::size_t points = table.points().size();
    for (std::size_t i = 0; i < face.count; ++i) {
        const std::uint32_t corner = 3 * surface.order[face.first + i];
        std::array<std::uint32_t, 3> at{};
        for (std::uint32_t k = 0; k < 3; ++k) at[k] = table.numberOf(soup.vertices[corner + k].pos);
        for (std::uint32_t k = 0; k < 3; ++k) addSide(at[k], at[(k + 1) % 3], false, corner + k);
    }
    if (table.points().size() != points || !matchSides()) return;
    face.whole = true;
    for (const auto& [edge, corner] : cornerOf) surface.edges[edge].corner = corner;
}

} // namespace

void restoreWholeFaces(Surface& surface, const types::Mesh<double>& soup) {
    std::vector<std::uint32_t> edges(surface.faces.size());
    for (const Edge& edge : surface.edges) {
        if (isAlive(edge)) ++edges[edge.face];
    }
    std::vector<bool> mayBeWhole(surface.faces.size());
    for (std::size_t i = 0; i < mayBeWhole.size(); ++i) {
        mayBeWhole[i] = !surface.faces[i].whole && edges[i] > 0 && surface.faces[i].border == edges[i];
    }
    if (std::none_of(mayBeWhole.begin(), mayBeWhole.end(), [](bool may) { return may; })) return;
    Adjacency borders;
    collect(borders, surface, surface.faces.size(),
            [&mayBeWhole](const Edge& edge) { return mayBeWhole[edge.face] ? edge.face : NONE; });
    Restorer restorer(surface, soup);
    for (std::size_t i = 0; i < mayBeWhole.size(); ++i) {
        if (!mayBeWhole[i]) continue;
        restorer.restore(static_cast<std::uint32_t>(i), borders.edges.data() + borders.first[i],
                         borders.edges.data() + borders.first[i + 1]);
    }
}

} // namespace orva::tidy

#include "tidy/fit.hpp"

#include <algorithm>
#include <cstddef>

namespace orva::tidy {

bool Fit::test(const Surface& surface, const types::Mesh<double>& soup, const Face& face,
               std::span<const std::uint32_t> edges) {
    return face.isSound && edges.size() == face.border && findPoints(surface, soup, face, edges) &&
           findBorder(surface, edges) && matchInside();
}

bool Fit::findPoints(const Surface& surface, const types::Mesh<double>& soup, const Face& face,
                     std::span<const std::uint32_t> edges) {
    table.clear(edges.size());
    pointOf.clear();
    for (const std::uint32_t e : edges) {
        const std::uint32_t from = surface.edges[e].from;
        if (table.numberOf(surface.points[from]) == pointOf.size()) pointOf.push_back(from);
    }
    point.clear();
    for (std::size_t i = 0; i < face.count; ++i) {
        const types::Vertex* piece = &soup.vertices[3 * std::size_t{surface.order[face.first + i]}];
        for (std::size_t k = 0; k < 3; ++k) {
            const std::uint32_t number = table.numberOf(piece[k].pos);
            if (number >= pointOf.size()) return false;
            point.push_back(pointOf[number]);
        }
    }
    return true;
}

bool Fit::findBorder(const Surface& surface, std::span<const std::uint32_t> edges) {
    const auto key = [](std::uint32_t from, std::uint32_t to) { return std::uint64_t{from} << 32 | to; };
    sides.clear();
    borders.clear();
    for (std::size_t i = 0; i < point.size(); ++i) {
        sides.push_back({key(point[i], endOf(i)), static_cast<std::uint32_t>(i)});
    }
    for (const std::uint32_t e : edges) borders.push_back({key(surface.edges[e].from, surface.edges[e].to), e});
    std::sort(sides.begin(), sides.end());
    std::sort(borders.begin(), borders.end());
    edge.assign(point.size(), NONE);
    std::size_t found = 0;
    for (const Side& side : sides) {
        if (found == borders.size() || borders[found].points != side.points) continue;
        edge[side.number] = borders[found++].number;
    }
    return found == borders.size();
}

bool Fit::matchInside() {
    twin.assign(point.size(), NONE);
    sides.clear();
    for (std::size_t i = 0; i < point.size(); ++i) {
        if (edge[i] != NONE) continue;
        const std::uint32_t end = endOf(i);
        const auto [low, high] = std::minmax(point[i], end);
        sides.push_back({std::uint64_t{low} << 32 | high, static_cast<std::uint32_t>(i)});
    }
    std::sort(sides.begin(), sides.end());
    if (sides.size() % 2 != 0) return false;
    for (std::size_t i = 0; i < sides.size(); i += 2) {
        const std::uint32_t a = sides[i].number;
        const std::uint32_t b = sides[i + 1].number;
        if (sides[i].points != sides[i + 1].points || point[a] != endOf(b)) return false;
        twin[a] = b;
        twin[b] = a;
    }
    return true;
}

} // namespace orva::tidy

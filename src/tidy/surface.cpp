#include "tidy/surface.hpp"

namespace orva::tidy {

std::uint32_t divide(Surface& surface, std::uint32_t edge, std::uint32_t point) {
    std::vector<Edge>& edges = surface.edges;
    const std::uint32_t twin = edges[edge].twin;
    const auto behind = static_cast<std::uint32_t>(edges.size());
    edges.push_back({point, edges[edge].to, edges[edge].face, NONE, NONE});
    edges[edge].to = point;
    if (twin == NONE) return behind;

    const auto behindTwin = static_cast<std::uint32_t>(edges.size());
    edges.push_back({point, edges[twin].to, edges[twin].face, NONE, NONE});
    edges[twin].to = point;
    match(surface, edge, behindTwin);
    match(surface, behind, twin);
    return behind;
}

} // namespace orva::tidy

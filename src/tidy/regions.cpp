#include "tidy/regions.hpp"

#include "tidy/adjacency.hpp"
#include "tidy/carried.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orva::tidy {

std::vector<std::uint32_t> mergeCoplanar(const Surface& surface, const std::vector<FaceFacts>& facts,
                                         const std::vector<bool>& mayMerge, double distance) {
    const std::size_t count = surface.faces.size();
    Adjacency borders;
    collect(borders, surface, count, [](const Edge& edge) { return edge.face; });
    struct Sized {
        double area;
        std::uint32_t face;
    };
    std::vector<Sized> bySize;
    for (std::size_t i = 0; i < count; ++i) {
        if (mayMerge[i]) bySize.push_back({surface.faces[i].area, static_cast<std::uint32_t>(i)});
    }
    std::sort(bySize.begin(), bySize.end(),
              [](const Sized& a, const Sized& b) { return a.area != b.area ? a.area > b.area : a.face < b.face; });

    std::vector<std::uint32_t> region(count, NONE);
    std::vector<std::uint32_t> flood;
    for (const Sized& sized : bySize) {
        const std::uint32_t seed = sized.face;
        if (region[seed] != NONE) continue;
        const Vec3& normal = surface.faces[seed].normal;
        const Vec3& origin = facts[seed].origin;
        const double reach = distance * squareRoot(squaredLength(normal));
        const auto liesInPlane = [&](std::uint32_t face) {
            for (std::size_t i = borders.first[face]; i < borders.first[face + 1]; ++i) {
                const Vec3& point = surface.points[surface.edges[borders.edges[i]].from];
                if (!(std::fabs(dot(normal, point - origin)) <= reach)) return false;
            }
            return true;
        };
        const auto belongs = [&](std::uint32_t face) {
            return mayMerge[face] && facts[face].mesh == facts[seed].mesh &&
                   dot(surface.faces[face].normal, normal) >= 0.0 && liesInPlane(face) &&
                   carryTheSame(facts[seed].carrier, facts[face].carrier);
        };
        region[seed] = seed;
        flood.assign(1, seed);
        while (!flood.empty()) {
            const std::uint32_t at = flood.back();
            flood.pop_back();
            for (std::size_t i = borders.first[at]; i < borders.first[at + 1]; ++i) {
                const std::uint32_t twin = surface.edges[borders.edges[i]].twin;
                if (twin == NONE) continue;
                const std::uint32_t other = surface.edges[twin].face;
                if (region[other] != NONE || !belongs(other)) continue;
                region[other] = seed;
                flood.push_back(other);
            }
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (region[i] == NONE) region[i] = static_cast<std::uint32_t>(i);
    }
    return region;
}

void dissolve(Surface& surface, const std::vector<std::uint32_t>& region) {
    for (std::size_t i = 0; i < surface.edges.size(); ++i) {
        const Edge edge = surface.edges[i];
        if (!isAlive(edge) || edge.twin == NONE) continue;
        if (region[edge.face] != region[surface.edges[edge.twin].face]) continue;
        remove(surface, static_cast<std::uint32_t>(i));
        remove(surface, edge.twin);
    }
}

} // namespace orva::tidy

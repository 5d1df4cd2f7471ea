#include "tidy/regions.hpp"

#include "tidy/adjacency.hpp"
#include "tidy/carried.hpp"
#include "tidy/fit.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

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
        const Vec3& origin = surface.faces[seed].origin;
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

void keepFittingFaces(const Surface& surface, const types::Mesh<double>& soup, std::vector<std::uint32_t>& region,
                      double radius) {
    std::vector<bool> isMerged(region.size());
    for (std::size_t i = 0; i < region.size(); ++i) {
        if (region[i] != i) isMerged[region[i]] = true;
    }
    if (std::none_of(isMerged.begin(), isMerged.end(), [](bool merged) { return merged; })) return;

    std::vector<bool> gains(region.size());
    Adjacency borders;
    collect(borders, surface, surface.faces.size(), [](const Edge& edge) { return edge.face; });
    Fit fit;
    for (std::size_t i = 0; i < region.size(); ++i) {
        if (!isMerged[region[i]] || gains[region[i]]) continue;
        const std::span edges(borders.edges.data() + borders.first[i], borders.first[i + 1] - borders.first[i]);
        if (!fit.test(surface, soup, surface.faces[i], edges)) gains[region[i]] = true;
    }
    Adjacency around;
    collect(around, surface, surface.points.size(), [](const Edge& edge) { return edge.from; });
    for (std::size_t p = 0; p < surface.points.size(); ++p) {
        std::array<std::uint32_t, 2> border{NONE, NONE};
        std::size_t count = 0;
        for (std::size_t i = around.first[p]; i < around.first[p + 1]; ++i) {
            const Edge& edge = surface.edges[around.edges[i]];
            if (edge.twin != NONE && region[surface.edges[edge.twin].face] == region[edge.face]) continue;
            if (count < 2) border[count] = around.edges[i];
            ++count;
        }
        if (count == 1 || count > 2 || around.first[p] == around.first[p + 1]) continue;
        if (count == 2) {
            const Vec3& before = surface.points[surface.edges[border[0]].to];
            const Vec3& behind = surface.points[surface.edges[border[1]].to];
            if (!(squaredDistance(surface.points[p], before, behind) <= radius * radius)) continue;
        }
        for (std::size_t i = around.first[p]; i < around.first[p + 1]; ++i) {
            gains[region[surface.edges[around.edges[i]].face]] = true;
        }
    }
    for (std::size_t i = 0; i < region.size(); ++i) {
        if (isMerged[region[i]] && !gains[region[i]]) region[i] = static_cast<std::uint32_t>(i);
    }
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

#include "picture/raster.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orva::program {

namespace {

// In pixels. Where a corner meets the middle of a neighbour's edge, rounding leaves cracks; triangles this much larger
// cover them.
constexpr double overlap = 0.01;

// In pixels. Faces of two meshes in one plane differ by rounding alone, here and there one way or the other.
constexpr float equallyNear = 0.02F;

// The first sample at or after a place, the last one at or before it: samples lie in the middle of their cells.
double firstFrom(double place, double perPixel) {
    return std::ceil(place * perPixel - 0.5);
}
double lastUpTo(double place, double perPixel) {
    return std::floor(place * perPixel - 0.5);
}

} // namespace

Samples makeSamples(std::size_t perPixel, std::size_t width, std::size_t rows, std::ptrdiff_t top) {
    Samples samples;
    samples.perPixel = perPixel;
    samples.width = width;
    samples.rows = rows;
    samples.top = top;
    samples.triangles.assign(width * rows, Samples::none);
    samples.depths.assign(width * rows, -std::numeric_limits<float>::infinity());
    return samples;
}

// Row by row: each edge leaves one side of a row to the triangle.
void paint(Samples& samples, const ScreenTriangle& triangle, std::uint32_t index) {
    struct Corner {
        double x, y, z;
    };
    std::array<Corner, 3> corners;
    for (std::size_t i = 0; i < 3; ++i) {
        const ScreenVector& corner = triangle.corners[i];
        corners[i] = {static_cast<double>(corner.x), static_cast<double>(corner.y), static_cast<double>(corner.z)};
    }
    const auto& [a, b, c] = corners;
    double area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
    if (!(std::abs(area) > 1e-9)) return; // seen from the side
    if (area < 0.0) {
        std::swap(corners[1], corners[2]);
        area = -area;
    }
    const double slopeX = ((b.z - a.z) * (c.y - a.y) - (c.z - a.z) * (b.y - a.y)) / area;
    const double slopeY = ((b.x - a.x) * (c.z - a.z) - (c.x - a.x) * (b.z - a.z)) / area;

    // note: backs are left as they are, or they would look over the rims of closed meshes.
    const double margin = triangle.normal.z > 0.0F ? overlap : 0.0;
    const auto [left, right] = std::minmax({a.x, b.x, c.x});
    const auto [upper, lower] = std::minmax({a.y, b.y, c.y});
    const auto [farthest, nearest] = std::minmax({a.z, b.z, c.z});
    const auto perPixel = static_cast<double>(samples.perPixel);
    const auto top = static_cast<double>(samples.top);
    const double firstRow = std::max(firstFrom(upper - margin, perPixel), top);
    const double lastRow = std::min(lastUpTo(lower + margin, perPixel), top + static_cast<double>(samples.rows) - 1.0);

    for (double row = firstRow; row <= lastRow; row += 1.0) {
        const double y = (row + 0.5) / perPixel;
        double from = left - margin;
        double to = right + margin;
        for (std::size_t i = 0; i < 3; ++i) {
            const Corner& p = corners[i];
            const Corner& q = corners[(i + 1) % 3];
            const double dx = q.x - p.x;
            const double dy = q.y - p.y;
            // Inside: dx * (y - p.y) - dy * (x - p.x) >= 0
            const double here = dx * (y - p.y) + dy * p.x + margin * std::sqrt(dx * dx + dy * dy);
            if (dy < 0.0) {
                from = std::max(from, here / dy);
            } else if (dy > 0.0) {
                to = std::min(to, here / dy);
            } else if (here < 0.0) {
                to = from - 1.0;
            }
        }
        const double first = std::max(firstFrom(from, perPixel), 0.0);
        const double last = std::min(lastUpTo(to, perPixel), static_cast<double>(samples.width) - 1.0);
        if (!(first <= last)) continue;

        const std::size_t begin = samples.at(static_cast<std::size_t>(row - top), static_cast<std::size_t>(first));
        const std::size_t count = static_cast<std::size_t>(last - first) + 1;
        const double rowDepth = a.z + slopeY * (y - a.y);
        for (std::size_t i = 0; i < count; ++i) {
            const double x = (first + static_cast<double>(i) + 0.5) / perPixel;
            const auto depth = static_cast<float>(std::clamp(rowDepth + slopeX * (x - a.x), farthest, nearest));
            if (!(depth > samples.depths[begin + i] + equallyNear)) continue;
            samples.depths[begin + i] = depth;
            samples.triangles[begin + i] = index;
        }
    }
}

} // namespace orva::program

#include "picture/lines.hpp"

#include <algorithm>
#include <cmath>

namespace orva::program {

namespace {

float dot(const ScreenVector& a, const ScreenVector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// 0 to 1: from no line to a full one.
float smoothStep(float from, float to, float value) {
    const float t = std::clamp((value - from) / (to - from), 0.0F, 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

class LineFinder {
public:
    LineFinder(const Samples& of, const std::vector<ScreenTriangle>& in, Lines which)
        : samples(of), triangles(in), lines(which) {}

    // Between two samples next to each other.
    float between(std::size_t a, std::size_t b) const {
        const std::uint32_t indexA = samples.triangles[a];
        const std::uint32_t indexB = samples.triangles[b];
        if (indexA == indexB) return 0.0F;
        if (indexA == Samples::none || indexB == Samples::none) return 1.0F;
        const ScreenTriangle& triangleA = triangles[indexA];
        const ScreenTriangle& triangleB = triangles[indexB];
        if (triangleA.mesh != triangleB.mesh) return 1.0F;
        if ((triangleA.normal.z < 0.0F) != (triangleB.normal.z < 0.0F)) return 1.0F;

        // Faces that meet at 25 degrees show a little, from 45 on fully.
        const float crease = 1.0F - smoothStep(0.70F, 0.91F, dot(triangleA.normal, triangleB.normal));
        if (crease == 1.0F) return 1.0F;

        // A step in depth that neither face explains by its slope.
        const float apart = std::abs(samples.depths[a] - samples.depths[b]);
        const float slope = std::max(steepness(triangleA), steepness(triangleB));
        const float step = 1.0F / static_cast<float>(samples.perPixel);
        const float jump = smoothStep(1.0F, 2.5F, apart - 1.2F * slope * step);

        const float base = lines == Lines::All ? 0.4F : 0.0F;
        return std::max({base, crease, jump});
    }

private:
    static float steepness(const ScreenTriangle& triangle) {
        constexpr float most = 30.0F;
        const ScreenVector& n = triangle.normal;
        const float across = std::max(std::abs(n.x), std::abs(n.y));
        return across < most * std::abs(n.z) ? across / std::abs(n.z) : most;
    }

    const Samples& samples;
    const std::vector<ScreenTriangle>& triangles;
    Lines lines;
};

// By one sample all around.
std::vector<float> widened(const Samples& samples, const std::vector<float>& lines) {
    std::vector<float> wide = lines;
    for (std::size_t row = 1; row + 1 < samples.rows; ++row) {
        for (std::size_t column = 1; column + 1 < samples.width; ++column) {
            const std::size_t here = samples.at(row, column);
            wide[here] = std::max({lines[here], lines[here - 1], lines[here + 1], lines[here - samples.width],
                                   lines[here + samples.width]});
        }
    }
    return wide;
}

} // namespace

std::vector<float> findLines(const Samples& samples, const std::vector<ScreenTriangle>& triangles, Lines lines) {
    std::vector<float> found(samples.triangles.size());
    if (lines == Lines::None) return found;
    const LineFinder finder(samples, triangles, lines);
    const auto look = [&](std::size_t a, std::size_t b) {
        const float strength = finder.between(a, b);
        found[a] = std::max(found[a], strength);
        found[b] = std::max(found[b], strength);
    };
    for (std::size_t row = 0; row < samples.rows; ++row) {
        for (std::size_t column = 0; column < samples.width; ++column) {
            const std::size_t here = samples.at(row, column);
            if (column + 1 < samples.width) look(here, here + 1);
            if (row + 1 < samples.rows) look(here, here + samples.width);
        }
    }

    return widened(samples, found);
}

std::vector<float> drawRims(const Samples& samples, const std::vector<ScreenLine>& rims) {
    if (rims.empty()) return {};
    std::vector<float> found(samples.triangles.size());
    const auto fineness = static_cast<float>(samples.perPixel);
    const auto top = static_cast<float>(samples.top);
    for (const auto& [from, to] : rims) {
        const float length = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)) * fineness;
        const auto steps = static_cast<std::size_t>(std::ceil(length)) + 1; // from sample to sample
        for (std::size_t i = 0; i <= steps; ++i) {
            const float t = static_cast<float>(i) / static_cast<float>(steps);
            const float x = std::floor((from.x + t * (to.x - from.x)) * fineness);
            const float y = std::floor((from.y + t * (to.y - from.y)) * fineness) - top;
            if (!(x >= 0.0F && x < static_cast<float>(samples.width))) continue;
            if (!(y >= 0.0F && y < static_cast<float>(samples.rows))) continue;
            const std::size_t at = samples.at(static_cast<std::size_t>(y), static_cast<std::size_t>(x));
            constexpr float inFront = 1.5F; // pixels: the surface whose rim it is does not hide it
            if (from.z + t * (to.z - from.z) > samples.depths[at] - inFront) found[at] = 1.0F;
        }
    }
    return widened(samples, widened(samples, found));
}

} // namespace orva::program

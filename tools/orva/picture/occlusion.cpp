#include "picture/occlusion.hpp"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace orva::program {

namespace {

// Directions in which each sample looks around, sixteen of equal angles, and how far on each: denser near by.
constexpr float diagonal = 0.70710678F;
constexpr float wide = 0.92387953F;
constexpr float narrow = 0.38268343F;
constexpr std::array<std::array<float, 2>, 16> directions{{{1, 0},
                                                           {wide, narrow},
                                                           {diagonal, diagonal},
                                                           {narrow, wide},
                                                           {0, 1},
                                                           {-narrow, wide},
                                                           {-diagonal, diagonal},
                                                           {-wide, narrow},
                                                           {-1, 0},
                                                           {-wide, -narrow},
                                                           {-diagonal, -diagonal},
                                                           {-narrow, -wide},
                                                           {0, -1},
                                                           {narrow, -wide},
                                                           {diagonal, -diagonal},
                                                           {wide, -narrow}}};
constexpr std::array<float, 5> steps{0.06F, 0.16F, 0.32F, 0.58F, 1.0F};

// Facets of a round surface rise a little above each other's planes: no reason to be dark.
constexpr float least = 0.12F;

// Where to look from a sample, by direction.
struct Place {
    std::ptrdiff_t column = 0;
    std::ptrdiff_t row = 0;
    float dx = 0.0F;
    float dy = 0.0F;
};
using Places = std::array<std::array<Place, steps.size()>, directions.size()>;

Places placesWithin(float reach) {
    Places places;
    for (std::size_t i = 0; i < directions.size(); ++i) {
        for (std::size_t k = 0; k < steps.size(); ++k) {
            const float dx = std::round(directions[i][0] * steps[k] * reach);
            const float dy = std::round(directions[i][1] * steps[k] * reach);
            places[i][k] = {static_cast<std::ptrdiff_t>(dx), static_cast<std::ptrdiff_t>(dy), dx, dy};
        }
    }
    return places;
}

// The mean over the directions of the highest angle under which something stands there.
float occlusionAt(const Samples& samples, const std::vector<ScreenTriangle>& triangles, const Places& places,
                  float reach, std::size_t row, std::size_t column) {
    const std::size_t here = samples.at(row, column);
    const float depth = samples.depths[here];
    ScreenVector normal = triangles[samples.triangles[here]].normal;
    if (normal.z < 0.0F) normal = {-normal.x, -normal.y, -normal.z};

    const float fading = 1.0F / (2.0F * reach * reach);
    float sum = 0.0F;
    for (const auto& direction : places) {
        float most = 0.0F;
        for (const Place& place : direction) {
            const std::size_t y = row + static_cast<std::size_t>(place.row); // around zero when it is above the picture
            const std::size_t x = column + static_cast<std::size_t>(place.column);
            if (y >= samples.rows || x >= samples.width) break;
            const float dz = samples.depths[samples.at(y, x)] - depth; // minus infinity where nothing is seen
            const float above = place.dx * normal.x + place.dy * normal.y + dz * normal.z;
            if (!(above > 0.0F)) continue;
            const float squared = place.dx * place.dx + place.dy * place.dy + dz * dz;
            const float fade = std::max(0.0F, 1.0F - squared * fading);
            most = std::max(most, (above / std::sqrt(squared) - least) / (1.0F - least) * fade);
        }
        sum += most;
    }
    return sum / static_cast<float>(directions.size());
}

// Over the neighbours that lie about as deep: takes the steps off that a few directions leave.
float smoothedAt(const Samples& samples, const std::vector<float>& rough, std::size_t row, std::size_t column) {
    const std::size_t here = samples.at(row, column);
    constexpr std::size_t radius = 2;
    constexpr float sameDepth = 4.0F;
    float sum = 0.0F;
    float weight = 0.0F;
    for (std::size_t y = row - std::min(row, radius); y <= std::min(row + radius, samples.rows - 1); ++y) {
        for (std::size_t x = column - std::min(column, radius); x <= std::min(column + radius, samples.width - 1);
             ++x) {
            const std::size_t there = samples.at(y, x);
            if (samples.triangles[there] == Samples::none) continue;
            if (std::abs(samples.depths[there] - samples.depths[here]) > sameDepth) continue;
            sum += rough[there];
            weight += 1.0F;
        }
    }
    return sum / weight; // one at least: the sample itself
}

template <typename Value> std::vector<float> forEachSeen(const Samples& samples, const Value& value) {
    std::vector<float> values(samples.triangles.size());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, samples.rows, 16), [&](const auto& rows) {
        for (std::size_t row = rows.begin(); row != rows.end(); ++row) {
            for (std::size_t column = 0; column < samples.width; ++column) {
                const std::size_t here = samples.at(row, column);
                if (samples.triangles[here] != Samples::none) values[here] = value(row, column);
            }
        }
    });
    return values;
}

} // namespace

std::vector<float> occlusionOf(const Samples& samples, const std::vector<ScreenTriangle>& triangles, double reach) {
    const auto far = static_cast<float>(reach * static_cast<double>(samples.perPixel));
    const Places places = placesWithin(far);
    const std::vector<float> rough = forEachSeen(samples, [&](std::size_t row, std::size_t column) {
        return occlusionAt(samples, triangles, places, far, row, column);
    });
    return forEachSeen(samples,
                       [&](std::size_t row, std::size_t column) { return smoothedAt(samples, rough, row, column); });
}

} // namespace orva::program

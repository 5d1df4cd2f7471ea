#include "picture/light.hpp"

#include <algorithm>
#include <cmath>

namespace orva::program {

namespace {

// A lamp far away: where it stands, of unit length, and how bright it is.
struct Lamp {
    ScreenVector direction;
    Light light;
};

// The main one from the upper left, a cooler one from the right, so that no side is flat.
constexpr Lamp mainLamp{{-0.40F, -0.53F, 0.7477F}, {0.70F, 0.69F, 0.67F}};
constexpr Lamp sideLamp{{0.8321F, -0.1387F, 0.5370F}, {0.16F, 0.17F, 0.19F}};

// From all around: more from above.
constexpr Light sky{0.40F, 0.42F, 0.45F};
constexpr Light ground{0.22F, 0.21F, 0.20F};

// Lamps are wide, and reach around the corner a little.
float shareOf(const Lamp& lamp, const ScreenVector& normal) {
    constexpr float around = 0.25F;
    const ScreenVector& d = lamp.direction;
    const float cosine = normal.x * d.x + normal.y * d.y + normal.z * d.z;
    return std::max(0.0F, (cosine + around) / (1.0F + around));
}

} // namespace

Light lightOf(const Color& color) {
    const auto value = [](std::uint8_t level) {
        const float part = static_cast<float>(level) / 255.0F;
        return part * part;
    };
    return {value(color.red), value(color.green), value(color.blue)};
}

Color colorOf(const Light& light) {
    const auto level = [](float value) {
        return static_cast<std::uint8_t>(std::sqrt(std::clamp(value, 0.0F, 1.0F)) * 255.0F + 0.5F);
    };
    return {level(light.red), level(light.green), level(light.blue)};
}

Light lightOn(const ScreenVector& normal, float occlusion) {
    const float open = 1.0F - occlusion;
    const Light around = mix(ground, sky, 0.5F - 0.5F * normal.y);
    const Light lamps = shareOf(mainLamp, normal) * mainLamp.light + shareOf(sideLamp, normal) * sideLamp.light;
    // In corners lamps are partly hidden, too.
    return open * open * around + (0.35F + 0.65F * open) * lamps;
}

} // namespace orva::program

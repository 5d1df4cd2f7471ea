/// @file
/// Light and what surfaces make of it.
#ifndef ORVA_PROGRAM_PICTURE_LIGHT_HPP
#define ORVA_PROGRAM_PICTURE_LIGHT_HPP

#include "picture/color.hpp"
#include "picture/raster.hpp"

namespace orva::program {

/// A colour to reckon with: amounts of light, which add up; 1 is white.
struct Light {
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;
};

constexpr Light operator+(const Light& a, const Light& b) {
    return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}
constexpr Light operator*(const Light& a, const Light& b) {
    return {a.red * b.red, a.green * b.green, a.blue * b.blue};
}
constexpr Light operator*(float s, const Light& light) {
    return {s * light.red, s * light.green, s * light.blue};
}
constexpr Light mix(const Light& a, const Light& b, float share) {
    return (1.0F - share) * a + share * b;
}

/// Levels of colours are taken for roots of light. That is close to what screens make of them, and roots, unlike other
/// powers, have the same bits everywhere.
Light lightOf(const Color& color);
Color colorOf(const Light& light);

/// What a white surface gives back that faces in this direction, with that much of the light around kept from it.
Light lightOn(const ScreenVector& normal, float occlusion);

} // namespace orva::program

#endif

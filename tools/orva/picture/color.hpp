/// @file
/// Colours.
#ifndef ORVA_PROGRAM_PICTURE_COLOR_HPP
#define ORVA_PROGRAM_PICTURE_COLOR_HPP

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orva::program {

/// As files and screens have them: sRGB.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

/// "rrggbb" or "rgb", hexadecimal, with or without a leading "#".
std::optional<Color> parseColor(std::string_view text);

/// For the mesh at that place in a command, round and round.
Color paletteColor(std::size_t mesh);

} // namespace orva::program

#endif

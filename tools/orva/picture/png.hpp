/// @file
/// Pictures as PNG files.
#ifndef ORVA_PROGRAM_PICTURE_PNG_HPP
#define ORVA_PROGRAM_PICTURE_PNG_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orva::program {

struct Image {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint8_t> pixels; ///< red, green, blue, opacity; from the top left, row by row
};

/// The bytes of a file; without opacity where all is opaque.
std::string pngOf(const Image& image);

} // namespace orva::program

#endif

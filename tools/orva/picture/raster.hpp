/// @file
/// Which triangle is seen where.
///
/// The picture is sampled on a grid finer than its pixels, in bands of rows, so that little memory is needed and
/// several processors find work.
#ifndef ORVA_PROGRAM_PICTURE_RASTER_HPP
#define ORVA_PROGRAM_PICTURE_RASTER_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orva::program {

/// In the frame of the picture: x to the right, y down, z towards the viewer; in pixels.
struct ScreenVector {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
};

struct ScreenTriangle {
    std::array<ScreenVector, 3> corners;
    ScreenVector normal;    ///< of unit length; with a negative z, one sees its back
    std::uint32_t mesh = 0; ///< the place of its mesh in the command
};

/// A band of the picture: `rows` rows of `width` samples.
struct Samples {
    static constexpr std::uint32_t none = 0xFFFFFFFFU;

    std::size_t perPixel = 1; ///< in a row, and in a column
    std::size_t width = 0;
    std::size_t rows = 0;
    std::ptrdiff_t top = 0; ///< the first row's place in the picture: above it, where negative

    std::vector<std::uint32_t> triangles; ///< the one that is seen, or `none`
    std::vector<float> depths;            ///< its z there

    std::size_t at(std::size_t row, std::size_t column) const { return row * width + column; }
};

/// A band in which nothing is seen.
Samples makeSamples(std::size_t perPixel, std::size_t width, std::size_t rows, std::ptrdiff_t top);

/// Puts the triangle into the band, where nothing nearer is seen. Of what is equally near, the first stays.
void paint(Samples& samples, const ScreenTriangle& triangle, std::uint32_t index);

} // namespace orva::program

#endif

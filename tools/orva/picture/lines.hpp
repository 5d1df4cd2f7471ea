/// @file
/// The lines of a drawing.
#ifndef ORVA_PROGRAM_PICTURE_LINES_HPP
#define ORVA_PROGRAM_PICTURE_LINES_HPP

#include "picture/raster.hpp"

#include <array>
#include <vector>

namespace orva::program {

enum class Lines {
    None,
    Feature, ///< outlines, and edges between faces that meet at an angle
    All,     ///< and every edge of every triangle
};

/// For each sample from 0, no line, to 1. Lines are a little wider than a pixel at three samples to one.
std::vector<float> findLines(const Samples& samples, const std::vector<ScreenTriangle>& triangles, Lines lines);

using ScreenLine = std::array<ScreenVector, 2>;

/// The same for rims of surfaces, which are drawn where nothing hides them, twice as wide. Empty for none.
std::vector<float> drawRims(const Samples& samples, const std::vector<ScreenLine>& rims);

} // namespace orva::program

#endif

/// @file
/// How much of the light from all around is kept from a place by what stands around it: why corners are darker.
#ifndef ORVA_PROGRAM_PICTURE_OCCLUSION_HPP
#define ORVA_PROGRAM_PICTURE_OCCLUSION_HPP

#include "picture/raster.hpp"

#include <vector>

namespace orva::program {

/// For each sample from 0, all light reaches it, to 1. What is farther away than `reach` pixels does not count. Only
/// what is seen is known: a rough guess, but a smooth one.
std::vector<float> occlusionOf(const Samples& samples, const std::vector<ScreenTriangle>& triangles, double reach);

} // namespace orva::program

#endif

// How wide a surface is open.
#pragma once

#include "tidy/vectors.hpp"

#include <array>
#include <vector>

namespace orva::tidy {

using Segment = std::array<Vec3, 2>;

/// The most that the middle of one of the segments is away from the nearest other one; 0 for fewer than two. In n log
/// n, by a tree of boxes.
double largestGap(const std::vector<Segment>& segments);

} // namespace orva::tidy

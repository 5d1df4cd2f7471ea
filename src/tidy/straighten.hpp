// Points that a line does not need.
#pragma once

#include "tidy/surface.hpp"

namespace orva::tidy {

/// Takes points out of runs of edges: `next[e]` is the edge behind e in its run, or NONE where the point between has to
/// stay. Points stay as far as the line through those that stay would be farther than `radius` from one that goes
/// (D. H. Douglas, T. K. Peucker, Algorithms for the Reduction of the Number of Points Required to Represent a
/// Digitized Line or its Caricature, 1973). An edge that has a twin takes the twin along; `next` then names one of the
/// two directions only. Gives the most that a point that went was off the line.
double straighten(Surface& surface, const std::vector<std::uint32_t>& next, double radius);

} // namespace orva::tidy

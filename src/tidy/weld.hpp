// Points near each other become one.
#pragma once

#include "tidy/surface.hpp"

namespace orva::tidy {

/// Moves points of open edges onto others within `radius`. The first in order leads, those of sound faces before the
/// rest, so that what was not cut stays where it is; a point that leads does not move, so welds do not add up. Edges
/// that then end where they begin are gone. Gives the most that a point was moved.
double weldOpen(Surface& surface, double radius);

} // namespace orva::tidy

// Each face by itself: from its pieces to the edges around them.
#pragma once

#include "orva/types.hpp"
#include "tidy/surface.hpp"

namespace orva::tidy {

/// Fills points and edges of a surface whose faces have their pieces. Pieces of one face were cut from it, so their
/// corners lie in each other's edges up to rounding, and all of that goes away in small tables that stay in the cache:
/// equal corners become one, opposite edges cancel, T-junctions are zipped, straight runs become one edge. What is left
/// is welded and zipped across faces later, and is little.
///
/// `radius` is the distance at which points of one face count as the same line.
void makeOutlines(Surface& surface, const types::Mesh<double>& soup, double radius);

} // namespace orva::tidy

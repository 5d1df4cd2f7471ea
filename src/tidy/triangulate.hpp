// From regions to triangles.
#pragma once

#include "orva/types.hpp"
#include "tidy/triangles.hpp"

namespace orva::tidy {

/// Divides every region into triangles. Pieces that divide their face as they are stay; any other region is cut into
/// ears (G. H. Meisters, Polygons Have Ears, 1975), its holes joined to the outline by bridges (D. Eberly,
/// Triangulation by Ear Clipping, 2002), and then made Delaunay by flips (C. L. Lawson, Software for C1 Surface
/// Interpolation, 1977).
///
/// Whatever the shape, the triangles' sides add up to the region's edges, so what was closed stays closed: an ear is
/// forced where none is good, and counted.
Triangles triangulate(const Surface& surface, const std::vector<std::uint32_t>& region,
                      const types::Mesh<double>& soup);

} // namespace orva::tidy

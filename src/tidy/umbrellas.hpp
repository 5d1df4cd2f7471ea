// A vertex for each fan of triangles around a point, and an edge for each pair.
#pragma once

#include "tidy/triangles.hpp"

namespace orva::tidy {

/// Triangles on each other's back, with the same three corners and a side in common, enclose nothing: they are gone,
/// and their neighbours become each other's.
void cancelMirrored(Triangles& triangles);

/// Gives each corner its vertex: those of one umbrella (triangles around a point that hang together by their sides)
/// share one. Where two pairs of triangles then still have an edge between the same two vertices, all but one get a
/// vertex in its middle, a new point of the surface. Gives the number of vertices.
std::uint32_t splitUmbrellas(Triangles& triangles, Surface& surface, std::vector<std::uint32_t>& vertex);

} // namespace orva::tidy

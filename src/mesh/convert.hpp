// The mesh of the C++ interface to and from a polygon list.
#pragma once

#include "geometry/records.hpp"
#include "orva/types.hpp"

namespace orva::bspcsg {

/// Makes `polygons` the triangles of the mesh, in order. A mesh without any vertex leaves the list as it is.
void meshToPolygons(const types::Mesh<double>& mesh, PolygonList& polygons);

/// Appends the polygons, fanned into triangles, behind what the mesh holds.
void polygonsToMesh(const PolygonList& polygons, types::Mesh<double>& mesh);

} // namespace orva::bspcsg

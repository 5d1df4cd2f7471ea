// The record of the C interface to and from a polygon list.
#pragma once

#include "geometry/records.hpp"
#include "orva/orva.h"

namespace orva::bspcsg {

/// Makes `polygons` the triangles of the record, in order. A null record, null vertices or a count below 1 is an empty
/// mesh: the list is cleared.
void meshDToPolygons(const MeshD* record, PolygonList& polygons);

/// Writes the polygons, fanned into triangles, into a new array of the record; what it held before is not released. A
/// null record is left alone. When the array cannot be had, the record keeps its old array beside the new count.
void polygonsToMeshD(const PolygonList& polygons, MeshD* record);

} // namespace orva::bspcsg

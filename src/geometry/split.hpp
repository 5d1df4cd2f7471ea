// One polygon against one plane: the geometric step on which everything rests.
#pragma once

#include "geometry/records.hpp"

namespace orva::bspcsg {

/// Half the thickness of a plane, in the unit of the coordinates: what lies within it lies in the plane. Chosen for
/// coordinates around 1 to 1000 (parts in millimetres, buildings in metres): far above the rounding of a distance there
/// (1e-13), far below any feature. Also the size below which the components of a node's plane count as not set.
inline constexpr double EPSILON = 1e-6;

/// The side of every vertex, in vertex order. A distance of exactly EPSILON, and NaN, are Coplanar.
List<PolygonSide> classifyVertices(const Plane& plane, const Polygon& polygon);

/// The side of the whole polygon: the OR of the sides of its vertices.
inline PolygonSide sideOf(const Plane& plane, const Polygon& polygon) {
    // Without branches: which side a vertex is on is nothing that a processor could foretell.
    std::int32_t side = 0;
    for (const Vertex& vertex : polygon.vertices) {
        const double distance = signedDistance(plane, vertex.pos);
        side |= (distance > EPSILON ? 1 : 0) | (distance < -EPSILON ? 2 : 0);
    }
    return static_cast<PolygonSide>(side);
}

/// Whether a polygon that lies in the plane faces the same way.
bool facesAlong(const Plane& plane, const Polygon& polygon);

/// classifyVertices into a list that is there already.
void classifyInto(const Plane& plane, const Polygon& polygon, List<PolygonSide>& sides);

/// The corners of the two pieces of a spanning polygon, into lists that are there already. Either may be of fewer than
/// three vertices and no piece at all.
void cutInto(const Plane& plane, const Polygon& polygon, const List<PolygonSide>& sides, List<Vertex>& front,
             List<Vertex>& back);

// ---- The same as one step over lists, as the algorithm is told. The tree takes the steps above one by one instead, so
// that nothing is copied where nothing is cut; this form is what it is held to. ----

/// Appends a copy of the polygon, or of its two pieces, to the lists on whose side they lie.
///
/// A coplanar polygon goes to `coplanarFront` when its own plane faces the same way as `plane`, otherwise (opposite,
/// perpendicular, NaN) to `coplanarBack`. A spanning one is cut: both pieces keep its plane, the new vertices are
/// interpolated in all eight values, and a piece of fewer than three vertices is dropped. Any of the four lists may be
/// the same one; the polygon is only read.
void splitPolygon(const Plane& plane, const Polygon& polygon, PolygonList& coplanarFront, PolygonList& coplanarBack,
                  PolygonList& front, PolygonList& back);

/// splitPolygon for every polygon of a list, in order.
void splitPolygons(const Plane& plane, const PolygonList& polygons, PolygonList& coplanarFront,
                   PolygonList& coplanarBack, PolygonList& front, PolygonList& back);

} // namespace orva::bspcsg

// The records on which everything computes, and the small operations on them: a plane from three points, the signed
// distance of a point, a vertex between two others, a polygon turned around.
//
// note: sums and products stand in the order in which they are evaluated, and that order is the contract: the same bits
// on every platform. Compiled without contraction into fused operations (cmake/CompilerFlags.cmake).
#pragma once

#include "geometry/list.hpp"
#include "orva/types.hpp"

#include <cstdint>

namespace orva::bspcsg {

using types::Vec3;
using types::Vertex;

inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator-(const Vec3& a) {
    return {-a.x, -a.y, -a.z};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec3 cross(const Vec3& a, const Vec3& b);
double length(const Vec3& a);
/// Divided by its length, unguarded: zero gives NaN.
Vec3 unit(const Vec3& a);

/// The points p with normal . p = w; the front is where the normal points.
struct Plane {
    Vec3 normal;
    double w = 0.0;
};

/// A convex polygon, its vertices counter-clockwise seen from the front of its plane.
///
/// The plane is computed once, for the triangle that came in, and from then on only copied or negated: every piece cut
/// from that triangle carries the same four doubles, so pieces of one face stay in one plane however often they are
/// cut. Copying a polygon copies its vertices into storage of exactly their number.
struct Polygon {
    List<Vertex> vertices;
    Plane plane;
};

/// The unit in which geometry travels through the library, by move.
using PolygonList = List<Polygon>;

/// Where a point or a polygon lies. Bit flags: the side of a polygon is the OR of the sides of its vertices.
enum class PolygonSide : std::int32_t {
    Coplanar = 0,
    Front = 1,
    Back = 2,
    Spanning = 3, ///< polygons only: vertices on both sides
};

constexpr PolygonSide operator|(PolygonSide a, PolygonSide b) {
    return static_cast<PolygonSide>(static_cast<std::int32_t>(a) | static_cast<std::int32_t>(b));
}

/// The plane through a, b, c whose front sees them counter-clockwise.
/// note: no test for triangles without area: 0 / 0 leaves a NaN plane, against which every comparison fails, so that
/// such a triangle splits nothing and is split only by others.
Plane planeFromPoints(const Vec3& a, const Vec3& b, const Vec3& c);

/// normal . p - w: positive in front.
inline double signedDistance(const Plane& plane, const Vec3& p) {
    return dot(plane.normal, p) - plane.w;
}

/// a + (b - a) * t in each of the eight doubles; the normal is not made unit length again.
Vertex interpolate(const Vertex& a, const Vertex& b, double t);

/// The same plane seen from behind: four sign bits flipped.
Plane flipped(const Plane& plane);

/// Turns a polygon around: vertices in reverse order, their normals and the plane negated. Twice restores every bit.
void flip(Polygon& polygon);

} // namespace orva::bspcsg

// What can be measured of a solid.
#pragma once

#include "shapes.hpp"

namespace orva::test {

/// Enclosed volume; negative for an inside-out mesh.
double volume(const Mesh& mesh);

/// How often the surface winds around a point: 1 inside, 0 outside, a fraction where the mesh is open.
/// (A. Van Oosterom, J. Strackee: The Solid Angle of a Plane Triangle, 1983.)
double windingNumber(const Mesh& mesh, const Vec3& point);

/// The same by the signed crossings of a ray along x: an integer, and much faster, but wrong where the ray meets an
/// edge.
int crossingNumber(const Mesh& mesh, const Vec3& point);

/// The distance of a point from the nearest triangle.
double distanceTo(const Mesh& mesh, const Vec3& point);

} // namespace orva::test

// What the corners of a face carry: linear on the face, so it can be had at any point of its plane.
#pragma once

#include "orva/tidy.hpp"
#include "tidy/vectors.hpp"

namespace orva::tidy {

/// At a corner of the triangle what stands there, bit for bit; elsewhere the linear continuation of the three. Of a
/// triangle without area, what stands at the nearest corner.
Corner carriedAt(const types::Vertex* triangle, const Vec3& point);

/// Whether two triangles carry the same linear values, as far as rounding lets one tell.
bool carryTheSame(const types::Vertex* triangle, const types::Vertex* other);

} // namespace orva::tidy

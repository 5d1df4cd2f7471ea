/// @file
/// Normals for meshes from formats without normals, or with normals that nobody should trust.
#ifndef ORVA_PROGRAM_MESH_FACET_NORMAL_HPP
#define ORVA_PROGRAM_MESH_FACET_NORMAL_HPP

#include "orva/types.hpp"

namespace orva::program {

/// The unit normal of the triangle, on the side from which its corners run counter-clockwise; zero for a triangle
/// without area.
types::Vec3 facetNormal(const types::Vec3& a, const types::Vec3& b, const types::Vec3& c);

/// Appends a triangle whose corners carry its facet normal.
void appendTriangle(types::Mesh<double>& mesh, const types::Vec3& a, const types::Vec3& b, const types::Vec3& c);

} // namespace orva::program

#endif

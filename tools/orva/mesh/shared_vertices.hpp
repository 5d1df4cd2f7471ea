/// @file
/// A mesh whose triangles share their corners.
#ifndef ORVA_PROGRAM_MESH_SHARED_VERTICES_HPP
#define ORVA_PROGRAM_MESH_SHARED_VERTICES_HPP

#include "mesh/model.hpp"

#include <cstddef>
#include <vector>

namespace orva::program {

struct SharedVertices {
    std::vector<types::Vec3> positions; ///< of each vertex, in the order of first use
    std::vector<std::size_t> corners;   ///< three to a triangle: indices into `positions`
};

/// Corners share a position when their coordinates are equal; nothing is rounded. 0 and -0 are equal.
SharedVertices shareVertices(const types::Mesh<double>& mesh);

/// By the model's own indices; where it has none, corners in one position are one vertex.
SharedVertices verticesOf(const Model& model);

} // namespace orva::program

#endif

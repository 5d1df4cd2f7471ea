/// @file
/// A mesh whose triangles share their corners.
#ifndef ORVA_PROGRAM_MESH_SHARED_VERTICES_HPP
#define ORVA_PROGRAM_MESH_SHARED_VERTICES_HPP

#include "orva/types.hpp"

#include <cstddef>
#include <vector>

namespace orva::program {

struct SharedVertices {
    std::vector<types::Vec3> positions; ///< each once, in the order of first use
    std::vector<std::size_t> corners;   ///< three to a triangle: indices into `positions`
};

/// Corners share a position when their coordinates are equal; nothing is rounded. 0 and -0 are equal.
SharedVertices shareVertices(const types::Mesh<double>& mesh);

} // namespace orva::program

#endif

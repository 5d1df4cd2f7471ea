/// @file
/// A mesh with what its file said of it.
#ifndef ORVA_PROGRAM_MESH_MODEL_HPP
#define ORVA_PROGRAM_MESH_MODEL_HPP

#include "orva/types.hpp"

#include <cstdint>
#include <vector>

namespace orva::program {

/// Where a triangle came from: a face of one of the meshes that went into an operation.
struct Origin {
    std::uint32_t mesh = 0; ///< the place of the mesh in the command, from 0
    std::uint32_t face = 0; ///< the place of the face in its file, from 0
};

/// Of a triangle that could not be told.
inline constexpr Origin UNKNOWN_ORIGIN{0xFFFFFFFF, 0xFFFFFFFF};

struct Model {
    types::Mesh<double> mesh;

    /// Whether the corners' normals are the file's own. If not, each corner carries the normal of its triangle.
    bool hasNormals = false;
    /// Whether the corners' `aux` are texture coordinates, u and v. If not, they are zero.
    bool hasTexture = false;

    /// For each triangle its three vertices, as the file numbers them: two vertices may lie in one position. Below 2^32
    /// and in proportion to the mesh. Empty where there are no numbers, as in STL: equal positions are one vertex then.
    std::vector<std::uint32_t> indices;

    /// For each triangle the face in the file that it is a part of, from 0; empty where triangle i is face i.
    std::vector<std::uint32_t> faces;

    /// For each triangle where it came from, if somebody asked for it; else empty.
    std::vector<Origin> origins;
};

inline std::size_t countTriangles(const types::Mesh<double>& mesh) {
    return mesh.vertices.size() / 3;
}

} // namespace orva::program

#endif

/// @file
/// Whether a mesh is closed and edge-manifold by its indices alone, wherever its vertices lie.
///
/// Booleans of this library read positions and do not ask. Slicers, viewers with smooth shading and other modellers do:
/// to them an edge is a pair of vertices' numbers, and two vertices in one position are two.
#ifndef ORVA_PROGRAM_MEASURES_MANIFOLD_HPP
#define ORVA_PROGRAM_MEASURES_MANIFOLD_HPP

#include <cstddef>
#include <vector>

namespace orva::program {

/// What was found. An edge is a pair of indices.
struct Manifold {
    std::size_t vertices = 0;     ///< that a triangle uses
    std::size_t openEdges = 0;    ///< of one triangle only
    std::size_t doubledEdges = 0; ///< of more than two triangles
    std::size_t turnedEdges = 0;  ///< of two triangles that run along it in the same direction
    std::size_t umbrellas = 0;    ///< vertices whose triangles form more than one fan
    std::size_t collapsed = 0;    ///< triangles with a vertex twice; they have no edges
};

/// Whether each edge that is run along is run along once more, in the opposite direction, and no third time.
inline bool isEdgeManifold(const Manifold& manifold) {
    return manifold.openEdges + manifold.doubledEdges + manifold.turnedEdges + manifold.collapsed == 0;
}

/// Three indices to a triangle, each below `vertices`. In time and memory of both together.
Manifold measureManifold(const std::vector<std::size_t>& corners, std::size_t vertices);

} // namespace orva::program

#endif

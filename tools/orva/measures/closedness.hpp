/// @file
/// Whether a mesh is the whole boundary of a solid, with tolerance for what booleans do to meshes.
///
/// A mesh is closed when each directed edge of its triangles is matched by one in the opposite direction. Booleans cut
/// each triangle on its own: of two neighbours one may have a corner in the middle of the other's edge, and corners
/// that should meet lie up to the tolerance of the cuts apart. So vertices near each other are welded first, and edges
/// split where such a vertex lies on them; what is matched or not are the pieces.
#ifndef ORVA_PROGRAM_MEASURES_CLOSEDNESS_HPP
#define ORVA_PROGRAM_MEASURES_CLOSEDNESS_HPP

#include "mesh/shared_vertices.hpp"
#include "orva/types.hpp"

#include <array>
#include <cstddef>
#include <vector>

namespace orva::program {

/// For results of the library, in the unit of the coordinates. A corner that counts as in a plane lies up to 1e-6 to
/// either side of it. That puts two corners that should be one 2e-6 apart across one plane, 3.5e-6 where three planes
/// meet at right angles, and more where they meet at smaller angles. Measured on booleans of three scans and moved
/// copies of them: the open edges become fewer from 1e-6 to 8e-6 and then stay as many up to 1.5e-5. Those that stay
/// surround slivers up to 4e-3 wide that a cut at a shallow angle left on both of its sides; no tolerance should hide
/// them.
inline constexpr double CLOSING_TOLERANCE = 8e-6;

struct Closedness {
    std::size_t openEdges = 0; ///< pieces of edges without a match; 0 when the mesh is closed
    double largestGap = 0.0;   ///< the most that the middle of one of them is away from the nearest other
};

/// In n log n for n triangles, unless a good part of them is smaller than the tolerance. Coordinates are finite.
Closedness measureClosedness(const types::Mesh<double>& mesh, double tolerance);
Closedness measureClosedness(const SharedVertices& mesh, double tolerance);

/// Pieces of edges without a match that hang together, each from a place to another, with the surface on their left.
using Rim = std::vector<std::array<types::Vec3, 2>>;

/// Where the mesh is open: what measureClosedness counts, each place once.
std::vector<Rim> findRims(const types::Mesh<double>& mesh, double tolerance);

} // namespace orva::program

#endif

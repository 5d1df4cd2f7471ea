/// @file
/// Whether a mesh is fit for a boolean: what the library assumes of its input, looked at.
#ifndef ORVA_PROGRAM_MEASURES_FITNESS_HPP
#define ORVA_PROGRAM_MEASURES_FITNESS_HPP

#include "measures/box_tree.hpp"
#include "measures/crossings.hpp"
#include "measures/manifold.hpp"
#include "mesh/model.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace orva::program {

/// The library's, in the unit of the coordinates: what is closer to a plane lies in it.
inline constexpr double TOLERANCE = 1e-6;

/// What was found. An edge is a pair of positions; corners share a position when their coordinates are equal. A
/// triangle with two corners in one position has no edges.
struct Fitness {
    std::size_t triangles = 0;
    std::size_t parts = 0;            ///< groups of triangles that hang together by edges; by corners, at open edges
    std::size_t boundaryEdges = 0;    ///< of one triangle only: the surface has a rim there, or a neighbour's corner
    std::size_t nonManifoldEdges = 0; ///< of more than two triangles
    std::size_t flippedEdges = 0;     ///< of two triangles that run along it in the same direction: one faces inward
    std::size_t openEdges = 0;        ///< pieces of edges without a match within CLOSING_TOLERANCE: what is really open
    double largestGap = 0.0;          ///< how wide it is there
    std::size_t degenerate = 0;       ///< triangles without area
    std::size_t thin = 0;             ///< triangles with area, but narrower than TOLERANCE
    std::size_t duplicates = 0;       ///< triangles with the corners of an earlier one, in whatever order
    std::size_t insideOutParts = 0;   ///< of negative volume, and no hollow in another part; 0 where edges are open
    double volume = 0.0;              ///< in cubic units; negative if the mesh is inside out
    double area = 0.0;                ///< in square units
    Box box;                          ///< zero for a mesh without triangles
    Crossings crossings;              ///< of the surface with itself, deeper and shallower than CLOSING_TOLERANCE
    bool ownIndices = false;          ///< whether the next are the file's; else equal positions are one vertex
    Manifold byIndex;                 ///< which no boolean asks for
};

/// In n log n for n triangles. Coordinates are finite.
Fitness measureFitness(const Model& model);

/// Why a boolean may go wrong, and what to do about it, a sentence each; empty for a mesh that is fit. A boolean that
/// chooses its own unit takes meshes of every size.
std::vector<std::string> complaints(const Fitness& fitness, bool anySize = false);

/// What is worth knowing, and does a boolean no harm: that the mesh closes only within the tolerance, for instance, as
/// results of booleans do.
std::vector<std::string> remarks(const Fitness& fitness);

} // namespace orva::program

#endif

/// @file
/// Where a surface passes through itself.
///
/// Two triangles cross where they have more in common than the corners and edges that they share, and more than a
/// touch: a segment inside both, or, in one plane, an area. An edge that lies in a triangle is a crossing where the
/// surface goes on to both sides of it. Whether they do is computed without rounding; how deep is not.
///
/// Results of booleans have corners in the middle of neighbours' edges, rounded off them: such neighbours pass through
/// each other by a hair, which harms nobody. They are counted apart.
#ifndef ORVA_PROGRAM_MEASURES_CROSSINGS_HPP
#define ORVA_PROGRAM_MEASURES_CROSSINGS_HPP

#include "mesh/shared_vertices.hpp"

#include <cstddef>
#include <vector>

namespace orva::program {

struct Crossings {
    std::size_t pairs = 0;   ///< of triangles that cross by more than the tolerance
    std::size_t shallow = 0; ///< of those that cross by less
    types::Vec3 place;       ///< of one of `pairs`: near what two triangles have in common
    bool complete = true;    ///< whether all were counted: after a million nobody wants to know
};

/// How deep is how far one triangle would have to move to be clear of the other. Triangles without area are left out,
/// and those that `leftOut` names: a second one with the same corners.
///
/// In n log n for n triangles that are small beside the whole. Coordinates are finite.
Crossings findCrossings(const SharedVertices& mesh, const std::vector<bool>& leftOut, double tolerance);

} // namespace orva::program

#endif

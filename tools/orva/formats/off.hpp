/// @file
/// OFF, as text.
///
///     OFF
///     # a comment reaches to the end of its line
///     4 2 0            vertices, faces, edges (not used)
///     0 0 0
///     1 0 0
///     1 1 0
///     0 1 0
///     3 0 1 2          number of corners, their vertices, counter-clockwise from outside
///     3 0 2 3 255 0 0  whatever else stands in a face's line is ignored
///
/// A double is written with the fewest digits that give the same double again.
#ifndef ORVA_PROGRAM_FORMATS_OFF_HPP
#define ORVA_PROGRAM_FORMATS_OFF_HPP

#include "formats/format.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// A face of more than three corners becomes a fan around its first corner; one of fewer than three is passed over.
/// COFF, NOFF and the like are read too: what stands in a vertex's line behind its position is ignored.
Model readOff(std::string_view bytes, Notes& notes);

/// The model's own vertices; without, corners at equal positions become one. Triangles come in the mesh's order.
std::string writeOff(const Model& model, const WriteOptions& options, Notes& notes);

} // namespace orva::program

#endif

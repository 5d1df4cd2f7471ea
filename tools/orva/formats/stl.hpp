/// @file
/// STL, binary; which of the two an STL file is, its content tells.
///
///     80 bytes   anything
///      4 bytes   number of triangles
///     50 bytes   for each: normal and three corners of three floats, two bytes of attributes; all little-endian
///
/// Positions are single precision: a result loses digits here that .off keeps.
#ifndef ORVA_PROGRAM_FORMATS_STL_HPP
#define ORVA_PROGRAM_FORMATS_STL_HPP

#include "formats/format.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// Binary and text. The normals and attributes in the file are ignored.
Model readStl(std::string_view bytes, Notes& notes);

/// Binary. The normals are computed from the rounded positions, so that they fit what a reader sees.
std::string writeStl(const Model& model, const WriteOptions& options, Notes& notes);

} // namespace orva::program

#endif

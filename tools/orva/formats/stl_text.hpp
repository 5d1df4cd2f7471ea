/// @file
/// STL as text.
///
///     solid name
///       facet normal 0 0 1
///         outer loop
///           vertex 0 0 0
///           vertex 1 0 0
///           vertex 0 1 0
///         endloop
///       endfacet
///     endsolid name
///
/// Words may be in upper case, and one solid may follow another.
#ifndef ORVA_PROGRAM_FORMATS_STL_TEXT_HPP
#define ORVA_PROGRAM_FORMATS_STL_TEXT_HPP

#include "formats/format.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// Whether it begins as one, and not as a binary file that has the same word in its header.
bool looksLikeTextStl(std::string_view bytes);

/// All solids as one mesh. The normals in the file are ignored, whatever they are.
Model readTextStl(std::string_view bytes, Notes& notes);

/// The doubles as they are, unless fewer digits are asked for; normals, which nobody trusts, with those of a float.
std::string writeTextStl(const Model& model, const WriteOptions& options, Notes& notes);

} // namespace orva::program

#endif

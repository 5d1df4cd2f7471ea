/// @file
/// OBJ, the mesh in it.
///
///     v 0 0 0          a position; a fourth number and colours are ignored
///     vt 0 0           texture coordinates; the second is 0 if it is not there, a third is ignored
///     vn 0 0 1         a normal
///     f 1 2 3          a face: positions, counted from 1; -1 is the one read last
///     f 1/1 2/1 3/1    with texture coordinates
///     f 1//1 2//1 3//1 with normals
///     f 1/1/1 \        with both; a backslash takes the line end away
///       2/1/1 3/1/1
///
/// Names, groups, materials, lines, points and whatever else there is are passed over.
#ifndef ORVA_PROGRAM_FORMATS_OBJ_HPP
#define ORVA_PROGRAM_FORMATS_OBJ_HPP

#include "formats/format.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// A face of more than three corners becomes a fan around its first corner. What a face names has to stand above it.
Model readObj(std::string_view bytes, Notes& notes);

/// The model's own vertices; without, positions that are equal stand there once. Normals and texture coordinates that
/// are equal do so always.
std::string writeObj(const Model& model, const WriteOptions& options, Notes& notes);

} // namespace orva::program

#endif

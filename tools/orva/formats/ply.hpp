/// @file
/// PLY: as text, and binary in both byte orders.
///
///     ply
///     format ascii 1.0                         or binary_little_endian, binary_big_endian
///     comment goes to the end of its line
///     element vertex 3
///     property double x                        x y z; nx ny nz for normals; s t, u v or texture_u texture_v
///     property double y
///     property double z
///     element face 1
///     property list uchar int vertex_indices   or vertex_index
///     property uint source_mesh                where the face came from: see Origin
///     property uint source_face
///     end_header
///     0 0 0
///     1 0 0
///     0 1 0
///     3 0 1 2 0 7
///
/// Numbers may be of any type; other elements and properties are passed over.
#ifndef ORVA_PROGRAM_FORMATS_PLY_HPP
#define ORVA_PROGRAM_FORMATS_PLY_HPP

#include "formats/format.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// All three. A face of more than three corners becomes a fan around its first corner; one of fewer is passed over.
Model readPly(std::string_view bytes, Notes& notes);

/// Doubles. Corners that are equal in all that the model has, its own indices included, become one vertex: where
/// normals or texture coordinates have a seam, there are two.
std::string writePly(const Model& model, const WriteOptions& options, Notes& notes); ///< binary, little-endian
std::string writePlyBigEndian(const Model& model, const WriteOptions& options, Notes& notes);
std::string writeTextPly(const Model& model, const WriteOptions& options, Notes& notes);

} // namespace orva::program

#endif

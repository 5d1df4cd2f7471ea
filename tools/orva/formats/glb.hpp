/// @file
/// GLB: glTF 2.0 in one binary file, the triangles in it.
///
///     12 bytes   "glTF", version 2, length of the file
///      8 bytes   length of a chunk and its kind: "JSON" first, "BIN\0" behind it
///     ...        its content; all little-endian
///
/// The JSON describes nodes, which place meshes, whose triangles are named by accessors: views of the binary chunk.
///
/// Positions are single precision. Coordinates stay as they are, though glTF's y points up: a part that stands on its z
/// axis lies on its back in viewers, and comes back from there as it was.
#ifndef ORVA_PROGRAM_FORMATS_GLB_HPP
#define ORVA_PROGRAM_FORMATS_GLB_HPP

#include "formats/format.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// All triangles, strips and fans of the default scene, placed by its nodes; points, lines, skins and morph targets are
/// left aside. Normals at moved nodes are made unit length. What stands in other files, sparse accessors and required
/// extensions are refused, and so is a file that places the same data so often that its triangles outnumber its bytes
/// by far.
Model readGlb(std::string_view bytes, Notes& notes);

/// One mesh. Corners that are equal in single precision, in all that the model has, its own indices included, become
/// one vertex. Normals are made unit length, as they have to be here.
std::string writeGlb(const Model& model, const WriteOptions& options, Notes& notes);

} // namespace orva::program

#endif

/// @file
/// The file formats, and meshes from and to files by the extension of their names.
#ifndef ORVA_PROGRAM_FORMATS_FORMAT_HPP
#define ORVA_PROGRAM_FORMATS_FORMAT_HPP

#include "files/output.hpp"
#include "orva/types.hpp"

#include <string>
#include <string_view>

namespace orva::program {

/// A format turns bytes into a mesh and back. Both directions throw MeshError.
///
/// What a reader promises: every coordinate is finite, every corner carries the normal of its triangle (zero for one
/// without area), and memory is taken in proportion to the bytes that are there, whatever they claim.
struct Format {
    std::string_view extension; ///< lower case, with its dot
    types::Mesh<double> (*read)(std::string_view bytes);
    std::string (*write)(const types::Mesh<double>& mesh);
};

/// By the name's extension, in upper or lower case. Throws Failure (Usage) if there is none like it.
const Format& formatOf(const std::string& name);

/// Throws Failure (CannotRead).
types::Mesh<double> readMesh(const Format& format, const std::string& name);

/// Throws Failure (CannotWrite).
void writeMesh(const Format& format, const OutputFile& file, const types::Mesh<double>& mesh);

} // namespace orva::program

#endif

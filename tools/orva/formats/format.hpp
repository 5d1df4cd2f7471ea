/// @file
/// The file formats, and meshes from and to files.
#ifndef ORVA_PROGRAM_FORMATS_FORMAT_HPP
#define ORVA_PROGRAM_FORMATS_FORMAT_HPP

#include "files/output.hpp"
#include "mesh/model.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orva::program {

/// What the user should know of a file that was written or read all the same: a sentence each, without the file's name.
using Notes = std::vector<std::string>;

struct WriteOptions {
    /// Significant digits in text, 1 to 17; without, as few as give the same double again.
    std::optional<int> digits;
};

/// A format turns bytes into a mesh and back. Both directions throw MeshError.
///
/// What a reader promises: every number is finite; a corner without a normal in the file carries that of its triangle
/// (zero for one without area); and memory is taken in proportion to the bytes that are there, whatever they claim.
///
/// What a writer may rely on: every number that the model has is finite.
struct Format {
    std::string_view name;      ///< for --from and --to
    std::string_view extension; ///< lower case, with its dot; of formats with the same one, the first is written
    bool text;                  ///< whether digits can be asked for
    Model (*read)(std::string_view bytes, Notes& notes);
    std::string (*write)(const Model& model, const WriteOptions& options, Notes& notes);
};

/// By its name, or without one by the extension of the file, in upper or lower case. Throws Failure (Usage) if there is
/// none like it.
const Format& formatOf(const std::string& file, const std::string& name = {});

/// "stl, off, ...": for help and messages.
std::string namesOfFormats();

/// Throws Failure (CannotRead).
Model readModel(const Format& format, const std::string& file, Notes& notes);

/// Throws Failure (CannotWrite).
void writeModel(const Format& format, const OutputFile& file, const Model& model, const WriteOptions& options,
                Notes& notes);

} // namespace orva::program

#endif

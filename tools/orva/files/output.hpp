/// @file
/// Memory into a file, all or nothing, or to stdout.
///
/// The bytes go to a temporary file beside the target, which then takes the target's name in one step. Whoever looks
/// at the target sees the old file or the whole new one, also when the disk fills up or the program is killed.
#ifndef ORVA_PROGRAM_FILES_OUTPUT_HPP
#define ORVA_PROGRAM_FILES_OUTPUT_HPP

#include <filesystem>
#include <string>
#include <string_view>

namespace orva::program {

struct OutputFile {
    std::string name;           ///< as the user gave it; - is stdout
    std::filesystem::path path; ///< where it leads; a link stays, the file behind it is replaced
    bool replace = false;       ///< whether what is there may go
};

/// Finds out what can be known before the work begins: the user should not wait for a result that has nowhere to go.
/// `replace` allows that there is a file already. Throws Failure (CannotWrite).
OutputFile prepareOutput(const std::string& name, bool replace);

/// Throws Failure (CannotWrite); the target is then as it was, and the temporary file gone.
void writeFile(const OutputFile& file, std::string_view bytes);

} // namespace orva::program

#endif

/// @file
/// A file, or stdin, into memory.
#ifndef ORVA_PROGRAM_FILES_INPUT_HPP
#define ORVA_PROGRAM_FILES_INPUT_HPP

#include <string>

namespace orva::program {

/// All bytes of the file, which is stdin for -. It is closed again before this returns, so an output may replace it.
/// Throws Failure (CannotRead).
std::string readFile(const std::string& name);

} // namespace orva::program

#endif

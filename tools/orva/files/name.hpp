/// @file
/// File names. The program keeps them as the user gave them, in UTF-8, to say them again in its messages.
#ifndef ORVA_PROGRAM_FILES_NAME_HPP
#define ORVA_PROGRAM_FILES_NAME_HPP

#include <filesystem>
#include <string>

namespace orva::program {

/// - is no file but stdin or stdout. (A file of that name is ./-.)
bool isStream(const std::string& name);

std::filesystem::path pathOf(const std::string& utf8Name);

std::string nameOf(const std::filesystem::path& path);

} // namespace orva::program

#endif

/// @file
/// The words in which readers refuse: where, what was wrong, what to do.
#ifndef ORVA_PROGRAM_FORMATS_MESSAGES_HPP
#define ORVA_PROGRAM_FORMATS_MESSAGES_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace orva::program {

/// A piece of a file for a message: in one line, of bounded length, whatever the file holds.
std::string inQuotes(std::string_view word);

/// "line 7", "byte 80".
std::string lineAt(std::size_t number);
std::string byteAt(std::size_t place);

/// Throws MeshError: "WHERE: WHAT; repair the mesh or export it again".
[[noreturn]] void failAt(const std::string& where, const std::string& what);

/// `item` of `count` in the file, for the message that the file ends there.
struct Progress {
    std::string kind; ///< "vertices"
    std::size_t item = 0;
    std::size_t count = 0;
};

/// Throws MeshError: "the file ends at WHERE after 3 of 5 vertices; it is cut short ...".
[[noreturn]] void failCutShort(const std::string& where, const Progress& progress);

/// Throws MeshError for an index that is not below the number of vertices.
[[noreturn]] void failIndex(const std::string& where, const std::string& index, std::size_t vertexCount);

} // namespace orva::program

#endif

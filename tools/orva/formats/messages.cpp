#include "formats/messages.hpp"

#include "failure.hpp"

namespace orva::program {

std::string inQuotes(std::string_view word) {
    constexpr std::size_t longest = 24;
    std::string text = "\"";
    for (const char c : word.substr(0, longest)) text += c >= ' ' && c <= '~' ? c : '?';
    return text + (word.size() > longest ? "...\"" : "\"");
}

std::string lineAt(std::size_t number) {
    return "line " + std::to_string(number);
}

std::string byteAt(std::size_t place) {
    return "byte " + std::to_string(place);
}

void failAt(const std::string& where, const std::string& what) {
    throw MeshError(where + ": " + what + "; repair the mesh or export it again");
}

void failCutShort(const std::string& where, const Progress& progress) {
    throw MeshError("the file ends at " + where + " after " + std::to_string(progress.item) + " of " +
                    std::to_string(progress.count) + " " + progress.kind +
                    "; it is cut short or its counts are wrong, export it again");
}

void failIndex(const std::string& where, const std::string& index, std::size_t vertexCount) {
    failAt(where, index + " is not the index of one of the " + std::to_string(vertexCount) + " vertices");
}

} // namespace orva::program

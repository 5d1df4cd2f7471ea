#include "files/name.hpp"

namespace orva::program {

bool isStream(const std::string& name) {
    return name == "-";
}

std::filesystem::path pathOf(const std::string& utf8Name) {
    return {std::u8string(utf8Name.begin(), utf8Name.end())}; // from plain char, Windows would take its code page
}

std::string nameOf(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

} // namespace orva::program

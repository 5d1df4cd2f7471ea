/// @file
/// Texts made of parts.
#ifndef ORVA_PROGRAM_WORDS_HPP
#define ORVA_PROGRAM_WORDS_HPP

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace orva::program {

/// As std::printf would print the numbers.
template <typename... Values> std::string formatted(const char* pattern, Values... values) {
    std::array<char, 256> text; // far more than a few numbers can take
    std::snprintf(text.data(), text.size(), pattern, values...);
    return text.data();
}

/// "1 edge", "2 edges".
inline std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

inline std::string joined(const std::vector<std::string>& words, const char* between) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

} // namespace orva::program

#endif

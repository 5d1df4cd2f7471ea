/// @file
/// Words and numbers of text files, the same whatever the locale.
///
/// Lines end in LF, CRLF or CR; a byte order mark at the beginning is passed over.
#ifndef ORVA_PROGRAM_FORMATS_TEXT_HPP
#define ORVA_PROGRAM_FORMATS_TEXT_HPP

#include "formats/format.hpp"
#include "formats/messages.hpp"

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

namespace orva::program {

struct TextStyle {
    char comment = '\0';         ///< begins a comment, which reaches to the end of its line; '\0' if there are none
    bool continuedLines = false; ///< whether a line that ends in a backslash goes on in the next one
};

/// The words of a text one by one, apart by whitespace and without comments; knows the line of the word it gave last.
class Words {
public:
    explicit Words(std::string_view text, TextStyle style = {});

    /// The next word; empty at the end of the text.
    std::string_view next();

    /// The next word of this line; empty at its end.
    std::string_view nextInLine();

    /// To the end of this line.
    void skipLine();

    std::size_t line() const { return lineNumber; }

    /// The text behind the word given last, or from the line's end on, which that begins with.
    std::string_view rest() const { return text.substr(place); }

private:
    bool atLineEnd() const;
    std::size_t continuation() const;
    void advance(std::size_t count);
    void skipBlanks();
    std::string_view takeWord();

    std::string_view text;
    TextStyle style;
    std::size_t place = 0;
    std::size_t lineNumber = 1;
};

[[noreturn]] void failAt(const Words& words, const std::string& what);

/// All of the word is a number that T can hold.
template <typename T> bool parse(std::string_view word, T& value) {
    if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1); // from_chars knows no plus sign
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

/// The word just taken from `words`, as a finite number; throws MeshError if it is none.
double finiteNumber(const Words& words, std::string_view word);

/// The next word, where a file that ends is cut short.
std::string_view nextOf(Words& words, const Progress& progress);

/// As many digits as asked for; if none are, as few as give the same number again.
void appendNumber(std::string& text, double value, const WriteOptions& options);
void appendNumber(std::string& text, std::size_t value);

/// "x y z".
void appendNumbers(std::string& text, const types::Vec3& values, const WriteOptions& options);

/// What `value` is to somebody who reads what appendNumber wrote.
double asWritten(double value, const WriteOptions& options);

} // namespace orva::program

#endif

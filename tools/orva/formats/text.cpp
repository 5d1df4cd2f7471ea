#include "formats/text.hpp"

#include "failure.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace orva::program {

namespace {

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

bool hasDecimalComma(std::string_view word) {
    std::string repaired(word.substr(0, 64)); // no number is longer
    std::replace(repaired.begin(), repaired.end(), ',', '.');
    double value = 0.0;
    return word.find(',') != std::string_view::npos && parse(repaired, value);
}

} // namespace

Words::Words(std::string_view whole, TextStyle itsStyle) : text(whole), style(itsStyle) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
}

std::string_view Words::next() {
    for (;;) {
        skipBlanks();
        if (!atLineEnd() || place == text.size()) return takeWord();
        advance(1);
    }
}

std::string_view Words::nextInLine() {
    skipBlanks();
    return atLineEnd() ? std::string_view() : takeWord();
}

void Words::skipLine() {
    while (!atLineEnd()) advance(std::max<std::size_t>(continuation(), 1));
}

bool Words::atLineEnd() const {
    return place == text.size() || isLineEnd(text[place]);
}

// The length of a backslash with the line end that it takes away; 0 if there is none.
std::size_t Words::continuation() const {
    if (!style.continuedLines || text[place] != '\\') return 0;
    const std::string_view behind = text.substr(place + 1, 2);
    if (behind == "\r\n") return 3;
    return !behind.empty() && isLineEnd(behind.front()) ? 2 : 0;
}

void Words::advance(std::size_t count) {
    for (; count > 0; --count, ++place) {
        const bool pair = text[place] == '\r' && place + 1 < text.size() && text[place + 1] == '\n';
        lineNumber += isLineEnd(text[place]) && !pair;
    }
}

void Words::skipBlanks() {
    while (!atLineEnd()) {
        if (style.comment != '\0' && text[place] == style.comment) {
            while (!atLineEnd()) ++place;
        } else if (isBlank(text[place])) {
            ++place;
        } else if (const std::size_t length = continuation()) {
            advance(length);
        } else {
            return;
        }
    }
}

std::string_view Words::takeWord() {
    const std::size_t begin = place;
    while (!atLineEnd() && !isBlank(text[place]) && (style.comment == '\0' || text[place] != style.comment) &&
           continuation() == 0) {
        ++place;
    }
    return text.substr(begin, place - begin);
}

void failAt(const Words& words, const std::string& what) {
    failAt(lineAt(words.line()), what);
}

double finiteNumber(const Words& words, std::string_view word) {
    double value = 0.0;
    if (parse(word, value) && std::isfinite(value)) return value;
    if (hasDecimalComma(word)) {
        throw MeshError(lineAt(words.line()) + ": " + inQuotes(word) + " has a decimal comma; export it with points");
    }
    failAt(words, inQuotes(word) + " is not a finite number");
}

std::string_view nextOf(Words& words, const Progress& progress) {
    const std::string_view word = words.next();
    if (word.empty()) failCutShort(lineAt(words.line()), progress);
    return word;
}

void appendNumber(std::string& text, double value, const WriteOptions& options) {
    std::array<char, 32> buffer; // the longest double takes 24
    char* const end = buffer.data() + buffer.size();
    // note: rounded to fewer digits, the largest doubles would be too large for any reader.
    const auto result = options.digits && std::abs(value) < 1e308
                            ? std::to_chars(buffer.data(), end, value, std::chars_format::general, *options.digits)
                            : std::to_chars(buffer.data(), end, value);
    text.append(buffer.data(), result.ptr);
}

void appendNumber(std::string& text, std::size_t value) {
    text += std::to_string(value);
}

void appendNumbers(std::string& text, const types::Vec3& values, const WriteOptions& options) {
    appendNumber(text, values.x, options);
    text += ' ';
    appendNumber(text, values.y, options);
    text += ' ';
    appendNumber(text, values.z, options);
}

double asWritten(double value, const WriteOptions& options) {
    if (!options.digits) return value;
    std::string text;
    appendNumber(text, value, options);
    double read = 0.0;
    parse(text, read);
    return read;
}

} // namespace orva::program

#include "formats/off.hpp"

#include "failure.hpp"
#include "mesh/facet_normal.hpp"
#include "mesh/shared_vertices.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>
#include <vector>

namespace orva::program {

namespace {

constexpr std::string_view whitespace = " \t\r\n\v\f";
constexpr std::string_view lineEnds = "\r\n";

// Words apart by whitespace, comments left out; knows the line of the word it gave last.
class Words {
public:
    explicit Words(std::string_view text) : rest(text) {
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (rest.starts_with(byteOrderMark)) rest.remove_prefix(byteOrderMark.size());
    }

    // The next word; empty at the end.
    std::string_view next() {
        while (!rest.empty()) {
            if (rest.front() == '#') {
                skipLine();
            } else if (whitespace.find(rest.front()) != std::string_view::npos) {
                skip(1);
            } else {
                break;
            }
        }
        return skip(std::min(rest.find_first_of(" \t\r\n\v\f#"), rest.size()));
    }

    // Whether a word follows in the line of the last one.
    bool lineHasMore() const {
        const std::size_t place = rest.find_first_not_of(" \t\v\f");
        return place != std::string_view::npos && rest[place] != '#' &&
               lineEnds.find(rest[place]) == std::string_view::npos;
    }

    // To the end of the line of the last word.
    void skipLine() { skip(std::min(rest.find_first_of(lineEnds), rest.size())); }

    std::size_t line() const { return lineNumber; }

private:
    std::string_view skip(std::size_t count) {
        const std::string_view skipped = rest.substr(0, count);
        for (const char c : skipped) lineNumber += c == '\n';
        rest.remove_prefix(count);
        return skipped;
    }

    std::string_view rest;
    std::size_t lineNumber = 1;
};

// For a message: in one line, of bounded length, whatever the file holds.
std::string quoted(std::string_view word) {
    constexpr std::size_t longest = 24;
    std::string text = "\"";
    for (const char c : word.substr(0, longest)) text += c >= ' ' && c <= '~' ? c : '?';
    return text + (word.size() > longest ? "...\"" : "\"");
}

[[noreturn]] void failAt(const Words& words, const std::string& what) {
    throw MeshError("line " + std::to_string(words.line()) + ": " + what + "; repair the mesh or export it again");
}

// `item` of `count` in the file, for the message that the file ends there.
struct Progress {
    std::string_view kind;
    std::size_t item = 0;
    std::size_t count = 0;
};

std::string_view nextOf(Words& words, const Progress& progress) {
    const std::string_view word = words.next();
    if (!word.empty()) return word;
    throw MeshError("the file ends at line " + std::to_string(words.line()) + " after " +
                    std::to_string(progress.item) + " of " + std::to_string(progress.count) + " " +
                    std::string(progress.kind) + "; it is cut short or its counts are wrong, export it again");
}

// All of the word is a number that T can hold.
template <typename T> bool parse(std::string_view word, T& value) {
    if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1); // from_chars knows no plus sign
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

double coordinate(Words& words, const Progress& progress) {
    const std::string_view word = nextOf(words, progress);
    double value = 0.0;
    if (!parse(word, value) || !std::isfinite(value)) failAt(words, quoted(word) + " is not a finite number");
    return value;
}

std::size_t count(Words& words, std::string_view of) {
    const std::string_view word = words.next();
    std::size_t value = 0;
    if (!parse(word, value)) failAt(words, quoted(word) + " is not a number of " + std::string(of));
    return value;
}

std::size_t index(Words& words, const Progress& progress, std::size_t vertexCount) {
    const std::string_view word = nextOf(words, progress);
    std::size_t value = 0;
    if (!parse(word, value) || value >= vertexCount) {
        failAt(words, quoted(word) + " is not the index of one of the " + std::to_string(vertexCount) + " vertices");
    }
    return value;
}

// Whether more than a position stands in a vertex's line.
bool readKeyword(Words& words) {
    const std::string_view keyword = words.next();
    if (keyword == "OFF") return false;
    for (const std::string_view known : {"COFF", "NOFF", "CNOFF", "STOFF", "STCOFF", "STNOFF", "STCNOFF"}) {
        if (keyword == known) return true;
    }
    throw MeshError("not an OFF file: line " + std::to_string(words.line()) + " begins with " + quoted(keyword) +
                    ", not with OFF; check that the extension fits the content");
}

void append(std::string& text, std::size_t value) {
    text += std::to_string(value);
}

void append(std::string& text, double value, const WriteOptions& options) {
    std::array<char, 32> buffer; // the longest double takes 24
    char* const end = buffer.data() + buffer.size();
    const auto result = options.digits
                            ? std::to_chars(buffer.data(), end, value, std::chars_format::general, *options.digits)
                            : std::to_chars(buffer.data(), end, value);
    text.append(buffer.data(), result.ptr);
}

} // namespace

Model readOff(std::string_view bytes, Notes& /*notes*/) {
    Words words(bytes);
    const bool longVertexLines = readKeyword(words);
    Progress vertices{"vertices", 0, count(words, "vertices")};
    Progress faces{"faces", 0, count(words, "faces")};
    if (words.lineHasMore()) words.next(); // the number of edges

    std::vector<types::Vec3> positions; // grows with what is read: the count may lie
    for (; vertices.item < vertices.count; ++vertices.item) {
        const double x = coordinate(words, vertices);
        const double y = coordinate(words, vertices);
        const double z = coordinate(words, vertices);
        positions.push_back({x, y, z});
        if (longVertexLines) words.skipLine();
    }

    Model model;
    for (; faces.item < faces.count; ++faces.item) {
        const std::string_view word = nextOf(words, faces);
        std::size_t corners = 0;
        if (!parse(word, corners)) failAt(words, quoted(word) + " is not the number of a face's corners");
        std::array<std::size_t, 3> fan{};
        for (std::size_t corner = 0; corner < corners; ++corner) {
            const std::size_t vertex = index(words, faces, positions.size());
            if (corner == 0) fan[0] = vertex;
            fan[1] = fan[2];
            fan[2] = vertex;
            if (corner < 2) continue;
            appendTriangle(model.mesh, positions[fan[0]], positions[fan[1]], positions[fan[2]]);
            model.faces.push_back(static_cast<std::uint32_t>(faces.item));
        }
        words.skipLine(); // colours
    }
    if (!words.next().empty())
        failAt(words, "more follows than the announced " + std::to_string(faces.count) + " faces");
    return model;
}

std::string writeOff(const Model& model, const WriteOptions& options, Notes& /*notes*/) {
    const SharedVertices shared = shareVertices(model.mesh);
    std::string text = "OFF\n";
    append(text, shared.positions.size());
    text += ' ';
    append(text, shared.corners.size() / 3);
    text += " 0\n";
    for (const types::Vec3& position : shared.positions) {
        append(text, position.x, options);
        text += ' ';
        append(text, position.y, options);
        text += ' ';
        append(text, position.z, options);
        text += '\n';
    }
    for (std::size_t i = 0; i < shared.corners.size(); i += 3) {
        text += '3';
        for (std::size_t k = 0; k < 3; ++k) {
            text += ' ';
            append(text, shared.corners[i + k]);
        }
        text += '\n';
    }
    return text;
}

} // namespace orva::program

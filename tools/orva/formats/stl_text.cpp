#include "formats/stl_text.hpp"

#include "failure.hpp"
#include "formats/rounding.hpp"
#include "formats/text.hpp"
#include "mesh/facet_normal.hpp"
#include "mesh/model_builder.hpp"

#include <algorithm>
#include <array>

namespace orva::program {

namespace {

bool isWord(std::string_view word, std::string_view lowerCase) {
    const auto same = [](char c, char lower) { return (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c) == lower; };
    return std::equal(word.begin(), word.end(), lowerCase.begin(), lowerCase.end(), same);
}

std::string_view nextOf(Words& words) {
    const std::string_view word = words.next();
    if (!word.empty()) return word;
    throw MeshError("the file ends at " + lineAt(words.line()) +
                    " before its endsolid; it is cut short, export it again");
}

void expect(Words& words, std::initializer_list<std::string_view> expected) {
    for (const std::string_view one : expected) {
        const std::string_view word = nextOf(words);
        if (!isWord(word, one)) failAt(words, inQuotes(word) + " stands where " + std::string(one) + " belongs");
    }
}

void readFacet(Words& words, ModelBuilder& builder) {
    expect(words, {"normal"});
    for (int i = 0; i < 3; ++i) nextOf(words);
    expect(words, {"outer", "loop"});
    builder.beginFace();
    for (int corner = 0; corner < 3; ++corner) {
        expect(words, {"vertex"});
        std::array<double, 3> values{};
        for (double& value : values) value = finiteNumber(words, nextOf(words));
        builder.addCorner({{values[0], values[1], values[2]}, {}, {}});
    }
    expect(words, {"endloop", "endfacet"});
}

} // namespace

bool looksLikeTextStl(std::string_view bytes) {
    constexpr std::size_t binaryHeader = 84; // full of zeros behind its text, in most files
    return bytes.substr(0, binaryHeader).find('\0') == std::string_view::npos && isWord(Words(bytes).next(), "solid");
}

Model readTextStl(std::string_view bytes, Notes& /*notes*/) {
    ModelBuilder builder;
    Words words(bytes);
    for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
        if (!isWord(word, "solid")) failAt(words, inQuotes(word) + " stands where solid belongs");
        words.skipLine(); // its name
        for (;;) {
            word = nextOf(words);
            if (isWord(word, "endsolid")) break;
            if (!isWord(word, "facet")) failAt(words, inQuotes(word) + " stands where facet or endsolid belongs");
            readFacet(words, builder);
        }
        words.skipLine();
    }
    return builder.take();
}

std::string writeTextStl(const Model& model, const WriteOptions& options, Notes& notes) {
    constexpr WriteOptions digitsOfFloat{9};
    std::string text = "solid orva\n";
    Rounding rounded;
    for (std::size_t i = 0; i < countTriangles(model.mesh); ++i) {
        const Corners corners = rounded(model.mesh, i, [&options](double value) { return asWritten(value, options); });
        text += "  facet normal ";
        appendNumbers(text, facetNormal(corners[0], corners[1], corners[2]), options.digits ? options : digitsOfFloat);
        text += "\n    outer loop\n";
        for (const types::Vec3& corner : corners) {
            text += "      vertex ";
            appendNumbers(text, corner, options);
            text += '\n';
        }
        text += "    endloop\n  endfacet\n";
    }
    rounded.note(notes, std::to_string(options.digits.value_or(0)) + " digits");
    return text + "endsolid orva\n";
}

} // namespace orva::program

#include "formats/obj.hpp"

#include "failure.hpp"
#include "formats/text.hpp"
#include "mesh/model_builder.hpp"
#include "mesh/shared_rows.hpp"
#include "mesh/shared_vertices.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orva::program {

namespace {

constexpr TextStyle style{'#', true};

// Enough of them that a file of another kind is told from one with nothing to read.
constexpr std::array<std::string_view, 15> keywords{"v", "vt", "vn", "f",      "l",      "p",  "o",     "g",
                                                    "s", "mg", "vp", "mtllib", "usemtl", "fo", "cstype"};

struct Lists {
    std::vector<types::Vec3> positions;
    std::vector<types::Vec3> normals;
    std::vector<std::array<double, 2>> texture;
};

double numberInLine(Words& words, std::string_view keyword) {
    const std::string_view word = words.nextInLine();
    if (word.empty()) failAt(words, "too few numbers behind " + std::string(keyword));
    return finiteNumber(words, word);
}

types::Vec3 vectorInLine(Words& words, std::string_view keyword) {
    const double x = numberInLine(words, keyword);
    const double y = numberInLine(words, keyword);
    const double z = numberInLine(words, keyword);
    return {x, y, z};
}

std::array<double, 2> textureInLine(Words& words) {
    const double u = numberInLine(words, "vt");
    const std::string_view second = words.nextInLine();
    return {u, second.empty() ? 0.0 : finiteNumber(words, second)};
}

// From 1 to the number of those that were read so far, or from -1 back.
template <typename Value>
std::size_t chosen(const Words& words, const std::vector<Value>& list, std::string_view number, std::string_view kind) {
    std::int64_t index = 0;
    const auto size = static_cast<std::int64_t>(list.size());
    const bool isNumber = parse(number, index);
    if (isNumber && index < 0 && index >= -size) index += size + 1;
    if (!isNumber || index < 1 || index > size) {
        failAt(words, inQuotes(number) + " is not the number of one of the " + std::to_string(size) + " " +
                          std::string(kind) + " above");
    }
    return static_cast<std::size_t>(index - 1);
}

// "position", "position/texture", "position//normal" or "position/texture/normal".
Corner readCorner(const Words& words, std::string_view reference, const Lists& lists) {
    std::array<std::string_view, 3> parts;
    std::string_view rest = reference;
    for (std::string_view& part : parts) {
        const std::size_t slash = std::min(rest.find('/'), rest.size());
        part = rest.substr(0, slash);
        rest.remove_prefix(std::min(slash + 1, rest.size()));
    }
    if (!rest.empty()) failAt(words, inQuotes(reference) + " has more than three numbers for a corner");
    Corner corner;
    corner.vertex = chosen(words, lists.positions, parts[0], "positions");
    corner.position = lists.positions[*corner.vertex];
    if (!parts[1].empty())
        corner.texture = lists.texture[chosen(words, lists.texture, parts[1], "texture coordinates")];
    if (!parts[2].empty()) corner.normal = lists.normals[chosen(words, lists.normals, parts[2], "normals")];
    return corner;
}

void appendLine(std::string& text, std::string_view keyword, const double* values, std::size_t count,
                const WriteOptions& options) {
    text += keyword;
    for (std::size_t i = 0; i < count; ++i) {
        text += ' ';
        appendNumber(text, values[i], options);
    }
    text += '\n';
}

} // namespace

Model readObj(std::string_view bytes, Notes& /*notes*/) {
    Words words(bytes, style);
    Lists lists;
    ModelBuilder builder;
    bool known = false;
    std::string unknown; // the first line that is none of a mesh's
    for (std::string_view keyword = words.next(); !keyword.empty(); keyword = words.next()) {
        if (keyword == "v") {
            lists.positions.push_back(vectorInLine(words, keyword));
        } else if (keyword == "vn") {
            lists.normals.push_back(vectorInLine(words, keyword));
        } else if (keyword == "vt") {
            lists.texture.push_back(textureInLine(words));
        } else if (keyword == "f") {
            builder.beginFace();
            for (std::string_view word = words.nextInLine(); !word.empty(); word = words.nextInLine()) {
                builder.addCorner(readCorner(words, word, lists));
            }
        }
        const bool isKeyword = std::find(keywords.begin(), keywords.end(), keyword) != keywords.end();
        known = known || isKeyword;
        if (!isKeyword && unknown.empty()) unknown = lineAt(words.line()) + " begins with " + inQuotes(keyword);
        words.skipLine();
    }
    if (!known && !unknown.empty()) {
        throw MeshError("not an OBJ file: " + unknown + "; check that the extension fits the content");
    }
    return builder.take();
}

std::string writeObj(const Model& model, const WriteOptions& options, Notes& /*notes*/) {
    const SharedVertices shared = verticesOf(model);
    SharedRows<2> texture;
    SharedRows<3> normals;
    std::string faces;
    const std::size_t count = 3 * countTriangles(model.mesh);
    for (std::size_t i = 0; i < count; ++i) {
        const types::Vertex& vertex = model.mesh.vertices[i];
        faces += i % 3 == 0 ? "f " : " ";
        appendNumber(faces, shared.corners[i] + 1);
        if (model.hasTexture) {
            faces += '/';
            appendNumber(faces, texture.indexOf(vertex.aux) + 1);
        }
        if (model.hasNormals) {
            faces += model.hasTexture ? "/" : "//";
            appendNumber(faces, normals.indexOf({vertex.normal.x, vertex.normal.y, vertex.normal.z}) + 1);
        }
        if (i % 3 == 2) faces += '\n';
    }

    std::string text = "# written by orva\n";
    for (const types::Vec3& p : shared.positions) {
        appendLine(text, "v", std::array{p.x, p.y, p.z}.data(), 3, options);
    }
    for (const auto& row : texture.rows()) appendLine(text, "vt", row.data(), row.size(), options);
    for (const auto& row : normals.rows()) appendLine(text, "vn", row.data(), row.size(), options);
    return text + faces;
}

} // namespace orva::program

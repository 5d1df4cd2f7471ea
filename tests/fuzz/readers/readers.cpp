// Any bytes as a file. A reader refuses it in one line, or gives a model that keeps the promises of formats/format.hpp,
// no larger than the file pays for; and what is written of that and read again is the same mesh.
#include "failure.hpp"
#include "formats/bytes.hpp"
#include "formats/glb.hpp"
#include "formats/obj.hpp"
#include "formats/off.hpp"
#include "formats/ply.hpp"
#include "formats/stl.hpp"
#include "formats/stl_text.hpp"
#include "targets.hpp"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace orva::fuzz {

namespace {

using namespace program;

struct Writer {
    decltype(Format::write) write;
    bool single;     ///< positions are rounded to single precision, and refused where they are too large for it
    bool attributes; ///< normals and texture coordinates are kept, and the origins of PLY
    bool unitNormals = false;
};

void require(bool kept, const char* promise) {
    if (!kept) throw Difference(promise);
}

bool isFinite(const types::Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void requireOneLine(std::string_view message) {
    require(!message.empty() && message.size() < 300, "a message of bounded length");
    const auto printable = [](char c) { return c >= ' ' && c <= '~'; };
    require(std::all_of(message.begin(), message.end(), printable), "a message in one line of plain text");
    require(message.find("; ") != std::string_view::npos, "a message that says what to do");
}

// As many numbers as corners, none larger than the bytes pay for, and one position for each.
void requireIndices(const Model& model, std::size_t mostVertices) {
    if (model.indices.empty()) return;
    require(model.indices.size() == model.mesh.vertices.size(), "an index for each corner");
    const std::size_t count = std::size_t{1} + *std::max_element(model.indices.begin(), model.indices.end());
    require(count <= mostVertices, "no more vertices than the bytes pay for");
    std::vector<const types::Vec3*> positions(count);
    for (std::size_t i = 0; i < model.indices.size(); ++i) {
        const types::Vec3& here = model.mesh.vertices[i].pos;
        const types::Vec3*& position = positions[model.indices[i]];
        if (position == nullptr) position = &here;
        require(position->x == here.x && position->y == here.y && position->z == here.z, "a position for each vertex");
    }
}

void requirePromises(const Model& model, std::size_t mostTriangles) {
    const std::size_t triangles = countTriangles(model.mesh);
    require(model.mesh.vertices.size() == 3 * triangles, "whole triangles");
    require(triangles <= mostTriangles, "no more triangles than the bytes pay for");
    require(model.faces.empty() || model.faces.size() == triangles, "a face for each triangle");
    requireIndices(model, 3 * mostTriangles);
    require(std::is_sorted(model.faces.begin(), model.faces.end()), "faces in the order of the file");
    require(model.origins.empty() || model.origins.size() == triangles, "an origin for each triangle");
    for (const types::Vertex& vertex : model.mesh.vertices) {
        require(isFinite(vertex.pos) && isFinite(vertex.normal), "finite positions and normals");
        require(std::isfinite(vertex.aux[0]) && std::isfinite(vertex.aux[1]), "finite texture coordinates");
        require(model.hasTexture || (vertex.aux[0] == 0.0 && vertex.aux[1] == 0.0), "none where there are none");
    }
}

void requireSame(double read, double written, bool single) {
    require(read == (single ? static_cast<double>(static_cast<float>(written)) : written), "the same numbers again");
}

void requireSame(const types::Vec3& read, const types::Vec3& written, bool single) {
    requireSame(read.x, written.x, single);
    requireSame(read.y, written.y, single);
    requireSame(read.z, written.z, single);
}

void requireSame(const Model& read, const Model& written, const Writer& writer) {
    require(read.mesh.vertices.size() == written.mesh.vertices.size(), "the same triangles again");
    require(read.faces.empty(), "each triangle a face again");
    require(read.hasNormals == (writer.attributes && written.hasNormals), "normals again where they were");
    require(read.hasTexture == (writer.attributes && written.hasTexture), "texture coordinates again where they were");
    for (std::size_t i = 0; i < read.mesh.vertices.size(); ++i) {
        const types::Vertex& now = read.mesh.vertices[i];
        const types::Vertex& before = written.mesh.vertices[i];
        requireSame(now.pos, before.pos, writer.single);
        if (read.hasNormals && !writer.unitNormals) requireSame(now.normal, before.normal, writer.single);
        if (read.hasNormals && writer.unitNormals) {
            require(std::abs(std::hypot(now.normal.x, now.normal.y, now.normal.z) - 1.0) < 1e-6, "normals of length 1");
        }
        if (!read.hasTexture) continue;
        requireSame(now.aux[0], before.aux[0], writer.single);
        requireSame(now.aux[1], before.aux[1], writer.single);
    }
}

void requireSameOrigins(const Model& read, const Model& written) {
    const auto same = [](const Origin& a, const Origin& b) { return a.mesh == b.mesh && a.face == b.face; };
    require(std::equal(read.origins.begin(), read.origins.end(), written.origins.begin(), written.origins.end(), same),
            "the same origins again");
}

void check(std::string_view bytes, decltype(Format::read) read, std::size_t trianglesPerByte,
           std::initializer_list<Writer> writers) {
    Notes notes;
    Model model;
    try {
        model = read(bytes, notes);
    } catch (const MeshError& error) {
        requireOneLine(error.what());
        return;
    }
    requirePromises(model, trianglesPerByte * bytes.size());
    for (const Writer& writer : writers) {
        std::string written;
        try {
            written = writer.write(model, {}, notes);
        } catch (const MeshError& error) {
            requireOneLine(error.what());
            require(writer.single, "doubles are always written");
            continue;
        }
        const Model again = read(written, notes);
        requireSame(again, model, writer);
        if (read == readPly) requireSameOrigins(again, model);
        if (!writer.unitNormals) require(writer.write(again, {}, notes) == written, "the same bytes again");
        for (const int digits : {1, 9}) read(writer.write(model, {digits}, notes), notes);
    }
}

std::string_view viewOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace

void stl(const std::uint8_t* data, std::size_t size) {
    check(viewOf(data, size), readStl, 1, {{writeStl, true, false}, {writeTextStl, false, false}});
}

void off(const std::uint8_t* data, std::size_t size) {
    check(viewOf(data, size), readOff, 1, {{writeOff, false, false}});
}

void obj(const std::uint8_t* data, std::size_t size) {
    check(viewOf(data, size), readObj, 1, {{writeObj, false, true}});
}

void ply(const std::uint8_t* data, std::size_t size) {
    check(viewOf(data, size), readPly, 1,
          {{writePly, false, true}, {writePlyBigEndian, false, true}, {writeTextPly, false, true}});
}

// The counts of a container would refuse nearly every change of its content. So bytes that are no container are made
// one: what stands before the first zero is its JSON, what follows its binary chunk.
void glb(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = viewOf(data, size);
    std::string bytes(input);
    if (!input.starts_with("glTF")) {
        const std::size_t zero = std::min(input.find('\0'), input.size());
        const std::string_view json = input.substr(0, zero);
        const std::string_view binary = input.substr(std::min(zero + 1, input.size()));
        const auto append = [&bytes](std::size_t value) {
            appendNumber(bytes, static_cast<std::uint32_t>(value), ByteOrder::Little);
        };
        bytes = "glTF";
        append(2);
        append(28 + input.size() - (zero < input.size() ? 1 : 0));
        append(json.size());
        bytes += "JSON";
        bytes += json;
        append(binary.size());
        bytes += std::string_view("BIN\0", 4);
        bytes += binary;
    }
    check(bytes, readGlb, 8, {{writeGlb, true, true, true}});
}

} // namespace orva::fuzz

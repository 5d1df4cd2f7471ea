#include "samples.hpp"

#include "failure.hpp"
#include "formats/off.hpp"
#include "mesh/facet_normal.hpp"

#include <bit>
#include <cstddef>
#include <utility>

namespace orva::program {

namespace {

void appendUint32(std::string& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xff);
}

} // namespace

std::vector<Triangle> boxTriangles(const Vec3& low, const Vec3& high) {
    std::vector<Triangle> triangles;
    const auto quad = [&triangles](const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
        triangles.push_back({a, b, c});
        triangles.push_back({a, c, d});
    };
    const auto at = [&](bool x, bool y, bool z) {
        return Vec3{x ? high.x : low.x, y ? high.y : low.y, z ? high.z : low.z};
    };
    quad(at(0, 0, 0), at(0, 1, 0), at(1, 1, 0), at(1, 0, 0));
    quad(at(0, 0, 0), at(1, 0, 0), at(1, 0, 1), at(0, 0, 1));
    quad(at(1, 0, 0), at(1, 1, 0), at(1, 1, 1), at(1, 0, 1));
    quad(at(1, 1, 0), at(0, 1, 0), at(0, 1, 1), at(1, 1, 1));
    quad(at(0, 1, 0), at(0, 0, 0), at(0, 0, 1), at(0, 1, 1));
    quad(at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1));
    return triangles;
}

Mesh meshOf(const std::vector<Triangle>& triangles) {
    Mesh mesh;
    for (const Triangle& triangle : triangles) appendTriangle(mesh, triangle[0], triangle[1], triangle[2]);
    return mesh;
}

Mesh box(const Vec3& low, const Vec3& high) {
    return meshOf(boxTriangles(low, high));
}

Model modelOf(Mesh mesh) {
    Model model;
    model.mesh = std::move(mesh);
    return model;
}

Mesh readAs(decltype(Format::read) read, std::string_view bytes) {
    return modelAs(read, bytes).mesh;
}

Model modelAs(decltype(Format::read) read, std::string_view bytes) {
    Notes notes;
    return read(bytes, notes);
}

std::string refusalOf(decltype(Format::read) read, std::string_view bytes) {
    try {
        modelAs(read, bytes);
        return "nothing was refused";
    } catch (const MeshError& error) {
        return error.what();
    }
}

std::string writeAs(decltype(Format::write) write, const Mesh& mesh) {
    Notes notes;
    return write(modelOf(mesh), {}, notes);
}

std::string boxFile(const Vec3& low, const Vec3& high) {
    return writeAs(writeOff, box(low, high));
}

std::string stlFile(std::uint32_t count, const std::vector<float>& floats, const std::string& header) {
    std::string bytes = header;
    bytes.resize(80);
    appendUint32(bytes, count);
    for (std::size_t i = 0; i < floats.size(); ++i) {
        appendUint32(bytes, std::bit_cast<std::uint32_t>(floats[i]));
        if (i % 12 == 11) bytes.append(2, '\x7f'); // attributes
    }
    return bytes;
}

std::vector<float> stlTriangle() {
    return {9, 9, 9, 1.5F, 0, 0, 1.5F, 0.1F, 0, 1.5F, 0, -3e-5F};
}

} // namespace orva::program

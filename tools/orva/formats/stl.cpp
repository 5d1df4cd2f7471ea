#include "formats/stl.hpp"

#include "failure.hpp"
#include "mesh/facet_normal.hpp"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace orva::program {

namespace {

constexpr std::size_t headerSize = 80;
constexpr std::size_t beforeTriangles = headerSize + 4;
constexpr std::size_t triangleSize = 50;
constexpr std::size_t normalSize = 12;

std::uint32_t readUint32(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

void writeUint32(std::string& bytes, std::uint32_t value) {
    for (int i = 0; i < 4; ++i, value >>= 8) bytes.push_back(static_cast<char>(static_cast<unsigned char>(value)));
}

double readCoordinate(std::string_view bytes, std::size_t at) {
    const auto value = std::bit_cast<float>(readUint32(bytes, at));
    if (!std::isfinite(value)) {
        throw MeshError("the coordinate at byte " + std::to_string(at) +
                        " is not a finite number; repair the mesh or export it again");
    }
    return static_cast<double>(value);
}

types::Vec3 readPosition(std::string_view bytes, std::size_t at) {
    const double x = readCoordinate(bytes, at);
    const double y = readCoordinate(bytes, at + 4);
    const double z = readCoordinate(bytes, at + 8);
    return {x, y, z};
}

// Double precision that holds what single precision can.
double rounded(double value) {
    if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        throw MeshError("a coordinate of the result is too large for single precision; write .off");
    }
    return static_cast<double>(static_cast<float>(value));
}

void writePosition(std::string& bytes, const types::Vec3& position) {
    for (const double value : {position.x, position.y, position.z}) {
        writeUint32(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
    }
}

bool looksLikeText(std::string_view bytes) {
    const std::size_t begin = bytes.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    return begin != std::string_view::npos && bytes.substr(begin).starts_with("solid");
}

// note: the size decides, not the word. Many programs write "solid" into the header of binary files, too.
std::size_t countTriangles(std::string_view bytes) {
    const std::size_t count = bytes.size() < beforeTriangles ? 0 : readUint32(bytes, headerSize);
    const std::size_t expected = beforeTriangles + count * triangleSize;
    if (bytes.size() == expected) return count;
    if (looksLikeText(bytes))
        throw MeshError("this is a text STL file, only binary STL is read; export it as binary STL");
    const std::string size = std::to_string(bytes.size()) + " bytes";
    if (bytes.size() < beforeTriangles) {
        throw MeshError("not an STL file: it ends after " + size + ", within the header of 84; export it again");
    }
    throw MeshError("not a whole STL file: at byte 80 it announces " + std::to_string(count) +
                    " triangles, which take " + std::to_string(expected) + " bytes, but it has " + size +
                    "; export it again");
}

} // namespace

Model readStl(std::string_view bytes, Notes& /*notes*/) {
    const std::size_t count = countTriangles(bytes);
    Model model;
    model.mesh.vertices.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = beforeTriangles + i * triangleSize + normalSize;
        const types::Vec3 a = readPosition(bytes, at);
        const types::Vec3 b = readPosition(bytes, at + 12);
        const types::Vec3 c = readPosition(bytes, at + 24);
        appendTriangle(model.mesh, a, b, c);
    }
    return model;
}

std::string writeStl(const Model& model, const WriteOptions& /*options*/, Notes& /*notes*/) {
    const types::Mesh<double>& mesh = model.mesh;
    const std::size_t count = mesh.vertices.size() / 3;
    if (count > std::numeric_limits<std::uint32_t>::max()) throw MeshError("too many triangles for STL; write .off");

    std::string bytes = "binary STL, written by orva"; // must not begin with "solid"
    bytes.reserve(beforeTriangles + count * triangleSize);
    bytes.resize(headerSize);
    writeUint32(bytes, static_cast<std::uint32_t>(count));
    for (std::size_t i = 0; i < count; ++i) {
        std::array<types::Vec3, 3> corners;
        for (std::size_t k = 0; k < 3; ++k) {
            const types::Vec3& position = mesh.vertices[3 * i + k].pos;
            corners[k] = {rounded(position.x), rounded(position.y), rounded(position.z)};
        }
        writePosition(bytes, facetNormal(corners[0], corners[1], corners[2]));
        for (const types::Vec3& corner : corners) writePosition(bytes, corner);
        bytes.append(2, '\0');
    }
    return bytes;
}

} // namespace orva::program

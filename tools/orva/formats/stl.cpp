#include "formats/stl.hpp"

#include "failure.hpp"
#include "formats/bytes.hpp"
#include "formats/messages.hpp"
#include "formats/rounding.hpp"
#include "formats/stl_text.hpp"
#include "mesh/facet_normal.hpp"
#include "mesh/model_builder.hpp"

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

double readCoordinate(std::string_view bytes, std::size_t at) {
    const auto value = readNumber<float>(bytes, at);
    if (!std::isfinite(value)) {
        throw MeshError("the coordinate at byte " + std::to_string(at) +
                        " is not a finite number; repair the mesh or export it again");
    }
    return static_cast<double>(value);
}

Corner readCorner(std::string_view bytes, std::size_t at) {
    const double x = readCoordinate(bytes, at);
    const double y = readCoordinate(bytes, at + 4);
    const double z = readCoordinate(bytes, at + 8);
    return {{x, y, z}, {}, {}};
}

void append(std::string& bytes, const types::Vec3& values) {
    for (const double value : {values.x, values.y, values.z}) {
        appendNumber(bytes, static_cast<float>(value), ByteOrder::Little);
    }
}

// note: the size decides, not the word. Many programs write "solid" into the header of binary files, too.
bool isBinary(std::string_view bytes) {
    if (bytes.size() < beforeTriangles) return false;
    return bytes.size() == beforeTriangles + std::size_t{readNumber<std::uint32_t>(bytes, headerSize)} * triangleSize;
}

[[noreturn]] void failNeither(std::string_view bytes) {
    const std::string size = std::to_string(bytes.size()) + " bytes";
    if (bytes.size() < beforeTriangles) {
        throw MeshError("not an STL file: it ends after " + size + ", within the header of 84; export it again");
    }
    const std::size_t count = readNumber<std::uint32_t>(bytes, headerSize);
    throw MeshError("not a whole STL file: at byte 80 it announces " + std::to_string(count) +
                    " triangles, which take " + std::to_string(beforeTriangles + count * triangleSize) +
                    " bytes, but it has " + size + "; export it again");
}

} // namespace

Model readStl(std::string_view bytes, Notes& notes) {
    if (!isBinary(bytes)) {
        if (looksLikeTextStl(bytes)) return readTextStl(bytes, notes);
        failNeither(bytes);
    }
    ModelBuilder builder;
    for (std::size_t at = beforeTriangles; at < bytes.size(); at += triangleSize) {
        const Corner a = readCorner(bytes, at + normalSize);
        const Corner b = readCorner(bytes, at + normalSize + 12);
        const Corner c = readCorner(bytes, at + normalSize + 24);
        builder.addTriangle(a, b, c);
    }
    return builder.take();
}

std::string writeStl(const Model& model, const WriteOptions& /*options*/, Notes& notes) {
    const std::size_t count = countTriangles(model.mesh);
    if (count > std::numeric_limits<std::uint32_t>::max()) throw MeshError("too many triangles for STL; write .off");

    std::string bytes = "binary STL, written by orva"; // must not begin with "solid"
    bytes.reserve(beforeTriangles + count * triangleSize);
    bytes.resize(headerSize);
    appendNumber(bytes, static_cast<std::uint32_t>(count), ByteOrder::Little);
    Rounding rounded;
    for (std::size_t i = 0; i < count; ++i) {
        const Corners corners = rounded(model.mesh, i, inSinglePrecision);
        append(bytes, facetNormal(corners[0], corners[1], corners[2]));
        for (const types::Vec3& corner : corners) append(bytes, corner);
        bytes.append(2, '\0');
    }
    rounded.note(notes, "single precision");
    return bytes;
}

} // namespace orva::program

#include "formats/format.hpp"

#include "failure.hpp"
#include "files/input.hpp"
#include "files/name.hpp"
#include "formats/off.hpp"
#include "formats/stl.hpp"

#include <array>
#include <cmath>

namespace orva::program {

namespace {

constexpr std::array formats{
    Format{".off", readOff, writeOff},
    Format{".stl", readStl, writeStl},
};

char toLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

void requireFinite(const types::Mesh<double>& mesh) {
    for (const types::Vertex& vertex : mesh.vertices) {
        if (std::isfinite(vertex.pos.x) && std::isfinite(vertex.pos.y) && std::isfinite(vertex.pos.z)) continue;
        throw MeshError("a coordinate of the result is too large for a number; scale the input down");
    }
}

} // namespace

const Format& formatOf(const std::string& name) {
    std::string extension = nameOf(pathOf(name).extension());
    for (char& c : extension) c = toLower(c);
    std::string known;
    for (const Format& format : formats) {
        if (format.extension == extension) return format;
        known += (known.empty() ? "" : " or ") + std::string(format.extension);
    }
    throw Failure(ExitCode::Usage, name + ": " +
                                       (extension.empty() ? "no extension to tell the format"
                                                          : "no format is known by the extension " + extension) +
                                       "; use " + known);
}

types::Mesh<double> readMesh(const Format& format, const std::string& name) {
    const std::string bytes = readFile(name);
    try {
        return format.read(bytes);
    } catch (const MeshError& error) {
        throw Failure(ExitCode::CannotRead, name + ": " + error.what());
    }
}

void writeMesh(const Format& format, const OutputFile& file, const types::Mesh<double>& mesh) {
    std::string bytes;
    try {
        requireFinite(mesh);
        bytes = format.write(mesh);
    } catch (const MeshError& error) {
        throw Failure(ExitCode::CannotWrite, file.name + ": " + error.what());
    }
    writeFile(file, bytes);
}

} // namespace orva::program

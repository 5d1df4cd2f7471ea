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
    Format{"off", ".off", true, readOff, writeOff},
    Format{"stl", ".stl", false, readStl, writeStl},
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

std::string namesOfFormats() {
    std::string names;
    for (const Format& format : formats) names += (names.empty() ? "" : ", ") + std::string(format.name);
    return names;
}

const Format& formatOf(const std::string& file, const std::string& name) {
    std::string extension = nameOf(pathOf(file).extension());
    for (char& c : extension) c = toLower(c);
    std::string known;
    for (const Format& format : formats) {
        if (name.empty() ? format.extension == extension : format.name == name) return format;
        known += (known.empty() ? "" : " or ") + std::string(format.extension);
    }
    if (!name.empty()) throw Failure(ExitCode::Usage, "no format has the name " + name + "; use " + namesOfFormats());
    throw Failure(ExitCode::Usage, file + ": " +
                                       (extension.empty() ? "no extension to tell the format"
                                                          : "no format is known by the extension " + extension) +
                                       "; use " + known);
}

Model readModel(const Format& format, const std::string& file, Notes& notes) {
    const std::string bytes = readFile(file);
    try {
        return format.read(bytes, notes);
    } catch (const MeshError& error) {
        throw Failure(ExitCode::CannotRead, file + ": " + error.what());
    }
}

void writeModel(const Format& format, const OutputFile& file, const Model& model, const WriteOptions& options,
                Notes& notes) {
    std::string bytes;
    try {
        requireFinite(model.mesh);
        bytes = format.write(model, options, notes);
    } catch (const MeshError& error) {
        throw Failure(ExitCode::CannotWrite, file.name + ": " + error.what());
    }
    writeFile(file, bytes);
}

} // namespace orva::program

#include "formats/format.hpp"

#include "failure.hpp"
#include "files/input.hpp"
#include "files/name.hpp"
#include "formats/glb.hpp"
#include "formats/obj.hpp"
#include "formats/off.hpp"
#include "formats/ply.hpp"
#include "formats/stl.hpp"
#include "formats/stl_text.hpp"

#include <array>
#include <cmath>

namespace orva::program {

namespace {

constexpr std::array formats{
    Format{"stl", ".stl", false, readStl, writeStl},
    Format{"stl-ascii", ".stl", true, readStl, writeTextStl},
    Format{"off", ".off", true, readOff, writeOff},
    Format{"obj", ".obj", true, readObj, writeObj},
    Format{"ply", ".ply", false, readPly, writePly},
    Format{"ply-ascii", ".ply", true, readPly, writeTextPly},
    Format{"ply-big-endian", ".ply", false, readPly, writePlyBigEndian},
    Format{"glb", ".glb", false, readGlb, writeGlb},
};

char toLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isFinite(const types::Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Of what the model has; the rest is not written.
void requireFinite(const Model& model) {
    for (const types::Vertex& vertex : model.mesh.vertices) {
        const char* what = nullptr;
        if (!isFinite(vertex.pos)) what = "a coordinate";
        if (model.hasNormals && !isFinite(vertex.normal)) what = "a normal";
        if (model.hasTexture && !isFinite({vertex.aux[0], vertex.aux[1], 0.0})) what = "a texture coordinate";
        if (what == nullptr) continue;
        throw MeshError(std::string(what) + " of the result is too large for a number; scale the input down");
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
        if (known.ends_with(format.extension)) continue; // of formats with the same one, which stand together
        known += (known.empty() ? "" : ", ") + std::string(format.extension);
    }
    if (!name.empty())
        throw Failure(ExitCode::Usage, "no format has the name " + name + "; use one of " + namesOfFormats());
    throw Failure(ExitCode::Usage, file + ": " +
                                       (extension.empty() ? "no extension to tell the format"
                                                          : "no format is known by the extension " + extension) +
                                       "; use one of " + known);
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
        requireFinite(model);
        bytes = format.write(model, options, notes);
    } catch (const MeshError& error) {
        throw Failure(ExitCode::CannotWrite, file.name + ": " + error.what());
    }
    writeFile(file, bytes);
}

} // namespace orva::program

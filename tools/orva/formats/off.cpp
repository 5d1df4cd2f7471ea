#include "formats/off.hpp"

#include "failure.hpp"
#include "formats/text.hpp"
#include "mesh/model_builder.hpp"
#include "mesh/shared_vertices.hpp"

#include <cstddef>
#include <vector>

namespace orva::program {

namespace {

std::size_t count(Words& words, std::string_view of) {
    const std::string_view word = words.next();
    std::size_t value = 0;
    if (!parse(word, value)) failAt(words, inQuotes(word) + " is not a number of " + std::string(of));
    return value;
}

std::size_t index(Words& words, const Progress& progress, std::size_t vertexCount) {
    const std::string_view word = nextOf(words, progress);
    std::size_t value = 0;
    if (!parse(word, value) || value >= vertexCount) failIndex(lineAt(words.line()), inQuotes(word), vertexCount);
    return value;
}

// Whether more than a position stands in a vertex's line.
bool readKeyword(Words& words) {
    const std::string_view keyword = words.next();
    if (keyword == "OFF") return false;
    for (const std::string_view known : {"COFF", "NOFF", "CNOFF", "STOFF", "STCOFF", "STNOFF", "STCNOFF"}) {
        if (keyword == known) return true;
    }
    throw MeshError("not an OFF file: line " + std::to_string(words.line()) + " begins with " + inQuotes(keyword) +
                    ", not with OFF; check that the extension fits the content");
}

} // namespace

Model readOff(std::string_view bytes, Notes& /*notes*/) {
    Words words(bytes, {'#'});
    const bool longVertexLines = readKeyword(words);
    Progress vertices{"vertices", 0, count(words, "vertices")};
    Progress faces{"faces", 0, count(words, "faces")};
    words.nextInLine(); // the number of edges, if it is there

    std::vector<types::Vec3> positions; // grows with what is read: the count may lie
    for (; vertices.item < vertices.count; ++vertices.item) {
        const double x = finiteNumber(words, nextOf(words, vertices));
        const double y = finiteNumber(words, nextOf(words, vertices));
        const double z = finiteNumber(words, nextOf(words, vertices));
        positions.push_back({x, y, z});
        if (longVertexLines) words.skipLine();
    }

    ModelBuilder builder;
    for (; faces.item < faces.count; ++faces.item) {
        const std::string_view word = nextOf(words, faces);
        std::size_t corners = 0;
        if (!parse(word, corners)) failAt(words, inQuotes(word) + " is not the number of a face's corners");
        builder.beginFace();
        for (; corners > 0; --corners) {
            const std::size_t vertex = index(words, faces, positions.size());
            builder.addCorner({positions[vertex], {}, {}, vertex});
        }
        words.skipLine(); // colours
    }
    if (!words.next().empty())
        failAt(words, "more follows than the announced " + std::to_string(faces.count) + " faces");
    return builder.take();
}

std::string writeOff(const Model& model, const WriteOptions& options, Notes& /*notes*/) {
    const SharedVertices shared = verticesOf(model);
    std::string text = "OFF\n";
    appendNumber(text, shared.positions.size());
    text += ' ';
    appendNumber(text, shared.corners.size() / 3);
    text += " 0\n";
    for (const types::Vec3& position : shared.positions) {
        appendNumbers(text, position, options);
        text += '\n';
    }
    for (std::size_t i = 0; i < shared.corners.size(); i += 3) {
        text += '3';
        for (std::size_t k = 0; k < 3; ++k) {
            text += ' ';
            appendNumber(text, shared.corners[i + k]);
        }
        text += '\n';
    }
    return text;
}

} // namespace orva::program

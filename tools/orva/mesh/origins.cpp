#include "mesh/origins.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace orva::program {

namespace {

// note: a NaN fails every comparison, so it names no face.
bool isIndex(double value, std::size_t count) {
    return value >= 0.0 && value < static_cast<double>(count) && value == std::floor(value);
}

// The face that a triangle's corners name, all three the same; otherwise UNKNOWN_ORIGIN.
Origin originOf(const types::Vertex* corners, const std::vector<std::size_t>& faces) {
    const std::array<double, 2>& mark = corners[0].aux;
    if (mark != corners[1].aux || mark != corners[2].aux || !isIndex(mark[0], faces.size())) return UNKNOWN_ORIGIN;
    const auto mesh = static_cast<std::uint32_t>(mark[0]);
    if (!isIndex(mark[1], faces[mesh])) return UNKNOWN_ORIGIN;
    return {mesh, static_cast<std::uint32_t>(mark[1])};
}

} // namespace

std::size_t countFaces(const Model& model) {
    if (model.faces.empty()) return countTriangles(model.mesh);
    return std::size_t{1} + *std::max_element(model.faces.begin(), model.faces.end());
}

void markFaces(Model& model, std::size_t place) {
    for (std::size_t i = 0; i < model.mesh.vertices.size(); ++i) {
        const std::size_t face = model.faces.empty() ? i / 3 : model.faces[i / 3];
        model.mesh.vertices[i].aux = {static_cast<double>(place), static_cast<double>(face)};
    }
    model.hasTexture = false;
}

Shares countShares(const std::vector<Origin>& origins, const std::vector<std::size_t>& faces) {
    Shares shares;
    shares.inputs.resize(faces.size());
    std::vector<std::vector<bool>> seen;
    for (const std::size_t count : faces) seen.emplace_back(count);
    for (const Origin& origin : origins) {
        if (origin.mesh == UNKNOWN_ORIGIN.mesh) {
            ++shares.unknown;
            continue;
        }
        ++shares.inputs[origin.mesh].triangles;
        if (!seen[origin.mesh][origin.face]) ++shares.inputs[origin.mesh].faces;
        seen[origin.mesh][origin.face] = true;
    }
    return shares;
}

void readOrigins(Model& result, const std::vector<std::size_t>& faces) {
    std::vector<types::Vertex>& vertices = result.mesh.vertices;
    result.origins.clear();
    result.origins.reserve(vertices.size() / 3);
    for (std::size_t i = 0; i + 2 < vertices.size(); i += 3) result.origins.push_back(originOf(&vertices[i], faces));
    for (types::Vertex& vertex : vertices) vertex.aux = {};
}

} // namespace orva::program

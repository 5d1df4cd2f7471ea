#include "mesh/model_builder.hpp"

#include "failure.hpp"
#include "mesh/facet_normal.hpp"

#include <limits>
#include <numeric>

namespace orva::program {

void ModelBuilder::beginFace() {
    if (faces == std::numeric_limits<std::uint32_t>::max()) { // the last number means "unknown"
        throw MeshError("more than 4294967295 faces; divide the mesh into several files");
    }
    ++faces;
    corners = 0;
}

void ModelBuilder::addCorner(const Corner& corner) {
    if (corners > 2) fan[1] = fan[2];
    fan[corners < 2 ? corners : 2] = corner;
    if (++corners > 2) addTriangleOfFace();
}

void ModelBuilder::addTriangle(const Corner& a, const Corner& b, const Corner& c) {
    beginFace();
    for (const Corner& corner : {a, b, c}) addCorner(corner);
}

void ModelBuilder::addTriangleOfFace() {
    const std::size_t triangle = triangles();
    const auto face = static_cast<std::uint32_t>(faces - 1);
    if (model.faces.empty() && triangle != face) { // so far triangle i was face i
        model.faces.resize(triangle);
        std::iota(model.faces.begin(), model.faces.end(), 0U);
    }
    if (triangle != face || !model.faces.empty()) model.faces.push_back(face);

    addIndices();
    const types::Vec3 facet = facetNormal(fan[0].position, fan[1].position, fan[2].position);
    for (const Corner& corner : fan) {
        model.mesh.vertices.push_back(
            {corner.position, corner.normal.value_or(facet), corner.texture.value_or(std::array<double, 2>())});
        model.hasNormals = model.hasNormals || corner.normal;
        model.hasTexture = model.hasTexture || corner.texture;
    }
}

void ModelBuilder::addIndices() {
    for (const Corner& corner : fan) {
        indexed = indexed && corner.vertex;
        if (!indexed) return model.indices.clear();
        if (*corner.vertex > std::numeric_limits<std::uint32_t>::max()) {
            throw MeshError("more than 4294967296 vertices; divide the mesh into several files");
        }
        model.indices.push_back(static_cast<std::uint32_t>(*corner.vertex));
    }
}

} // namespace orva::program

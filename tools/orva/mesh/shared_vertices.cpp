#include "mesh/shared_vertices.hpp"

#include "mesh/shared_rows.hpp"

#include <algorithm>

namespace orva::program {

SharedVertices shareVertices(const types::Mesh<double>& mesh) {
    SharedVertices shared;
    SharedRows<3> positions;
    const std::size_t count = mesh.vertices.size() / 3 * 3;
    shared.corners.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const types::Vec3& position = mesh.vertices[i].pos;
        shared.corners.push_back(positions.indexOf({position.x, position.y, position.z}));
    }
    shared.positions.reserve(positions.rows().size());
    for (const auto& row : positions.rows()) shared.positions.push_back({row[0], row[1], row[2]});
    return shared;
}

SharedVertices verticesOf(const Model& model) {
    if (model.indices.empty()) return shareVertices(model.mesh);
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> places(std::size_t{1} + *std::max_element(model.indices.begin(), model.indices.end()),
                                    none);
    SharedVertices shared;
    shared.corners.reserve(model.indices.size());
    for (std::size_t i = 0; i < model.indices.size(); ++i) {
        std::size_t& place = places[model.indices[i]];
        if (place == none) {
            place = shared.positions.size();
            shared.positions.push_back(model.mesh.vertices[i].pos);
        }
        shared.corners.push_back(place);
    }
    return shared;
}

} // namespace orva::program

#include "mesh/shared_vertices.hpp"

#include "mesh/shared_rows.hpp"

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

} // namespace orva::program

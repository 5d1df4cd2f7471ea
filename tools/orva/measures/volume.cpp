#include "measures/volume.hpp"

#include "mesh/vectors.hpp"

#include <algorithm>

namespace orva::program {

namespace {

// Of the bounding box.
types::Vec3 centreOf(const types::Mesh<double>& mesh) {
    types::Vec3 low = mesh.vertices.front().pos;
    types::Vec3 high = low;
    for (const types::Vertex& vertex : mesh.vertices) {
        low = {std::min(low.x, vertex.pos.x), std::min(low.y, vertex.pos.y), std::min(low.z, vertex.pos.z)};
        high = {std::max(high.x, vertex.pos.x), std::max(high.y, vertex.pos.y), std::max(high.z, vertex.pos.z)};
    }
    return 0.5 * low + 0.5 * high;
}

} // namespace

// By the divergence theorem, the tetrahedra between a point and each triangle add up to what the triangles enclose. The
// point is any in theory. From one far away, large volumes of both signs cancel and take the digits with them.
double signedVolume(const types::Mesh<double>& mesh) {
    if (mesh.vertices.empty()) return 0.0;
    const types::Vec3 centre = centreOf(mesh);
    double sixfold = 0.0;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        const types::Vec3 a = mesh.vertices[i].pos - centre;
        const types::Vec3 b = mesh.vertices[i + 1].pos - centre;
        const types::Vec3 c = mesh.vertices[i + 2].pos - centre;
        sixfold += dot(a, cross(b, c));
    }
    return sixfold / 6.0;
}

} // namespace orva::program

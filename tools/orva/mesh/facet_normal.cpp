#include "mesh/facet_normal.hpp"

#include "mesh/vectors.hpp"

#include <cmath>

namespace orva::program {

types::Vec3 facetNormal(const types::Vec3& a, const types::Vec3& b, const types::Vec3& c) {
    const types::Vec3 normal = cross(b - a, c - a);
    const double length = std::sqrt(dot(normal, normal));
    if (!(length > 0.0) || !std::isfinite(length)) return {};
    return {normal.x / length, normal.y / length, normal.z / length};
}

void appendTriangle(types::Mesh<double>& mesh, const types::Vec3& a, const types::Vec3& b, const types::Vec3& c) {
    const types::Vec3 normal = facetNormal(a, b, c);
    for (const types::Vec3& corner : {a, b, c}) mesh.vertices.push_back({corner, normal, {}});
}

} // namespace orva::program

// The box between two corners, for the examples: 12 triangles, counter-clockwise seen from outside.
#pragma once

#include <orva/types.hpp>

inline orva::types::Mesh<double> box(const orva::types::Vec3& low, const orva::types::Vec3& high) {
    // Bits 0, 1 and 2 of a corner's number choose low or high in x, y and z.
    static constexpr int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                        2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    orva::types::Mesh<double> mesh;
    for (const int c : corners) {
        mesh.vertices.push_back({{c & 1 ? high.x : low.x, c & 2 ? high.y : low.y, c & 4 ? high.z : low.z}});
    }
    return mesh;
}

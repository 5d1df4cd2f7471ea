// Telling faces apart: an aux that is equal at a triangle's three corners marks every piece that it is cut into.
// Here it says which face of which part a triangle belongs to; the result is asked for the area of each.
#include "box.hpp"

#include <orva/bspcsg.hpp>

#include <cmath>
#include <cstdio>
#include <map>

namespace {

using Mesh = orva::types::Mesh<double>;
using Mark = std::array<double, 2>; // part, face

// The box's faces, two triangles each: 0 and 1 below and above, 2 and 3 in front and behind, 4 and 5 left and right.
Mesh marked(Mesh mesh, double part) {
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const std::size_t face = i / 6;
        mesh.vertices[i].aux = {part, static_cast<double>(face)};
    }
    return mesh;
}

double area(const orva::types::Vertex* corners) {
    const orva::types::Vec3& a = corners[0].pos;
    const orva::types::Vec3& b = corners[1].pos;
    const orva::types::Vec3& c = corners[2].pos;
    const orva::types::Vec3 u{b.x - a.x, b.y - a.y, b.z - a.z};
    const orva::types::Vec3 v{c.x - a.x, c.y - a.y, c.z - a.z};
    return std::hypot(u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x) / 2;
}

} // namespace

int main() {
    const Mesh wall = marked(box({0, 0, 0}, {10, 0.3, 3}), 1);
    const std::vector<Mesh> openings{marked(box({1, -1, 0.9}, {2.5, 1, 2.2}), 2), // a window
                                     marked(box({6, -1, -1}, {6.9, 1, 2.1}), 3)}; // a door, down to the floor
    Mesh result;
    orva::bspcsg::subtractMultiMesh(result, wall, openings);

    std::map<Mark, double> areas;
    for (std::size_t i = 0; i < result.vertices.size(); i += 3) {
        areas[result.vertices[i].aux] += area(&result.vertices[i]);
    }
    for (const auto& [mark, sum] : areas) std::printf("part %g, face %g: %.3f\n", mark[0], mark[1], sum);

    const std::map<Mark, double> expected{
        {{1, 0}, 10 * 0.3 - 0.9 * 0.3},           // the wall's underside, less the door's threshold
        {{1, 1}, 10 * 0.3},                       // its top
        {{1, 2}, 10 * 3 - 1.5 * 1.3 - 0.9 * 2.1}, // its front, less both openings
        {{1, 3}, 10 * 3 - 1.5 * 1.3 - 0.9 * 2.1}, // and its back
        {{1, 4}, 0.3 * 3},
        {{1, 5}, 0.3 * 3}, // its ends
        {{2, 0}, 1.5 * 0.3},
        {{2, 1}, 1.5 * 0.3}, // the window's sill and lintel
        {{2, 4}, 1.3 * 0.3},
        {{2, 5}, 1.3 * 0.3}, // and its reveals
        {{3, 1}, 0.9 * 0.3},
        {{3, 4}, 2.1 * 0.3},
        {{3, 5}, 2.1 * 0.3}, // the door's, which has no sill
    };
    if (areas.size() != expected.size()) return 1;
    for (const auto& [mark, sum] : expected) {
        if (areas.count(mark) == 0 || std::abs(areas[mark] - sum) > 1e-9) return 1;
    }
    return 0;
}

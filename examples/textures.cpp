// Carrying texture coordinates: a corner's aux is its place in the texture, and stays right where triangles are cut.
// A hole is cut into a tabletop whose texture runs with x and y; every corner that is left still has its own place.
#include "box.hpp"

#include <orva/bspcsg.hpp>

#include <cmath>
#include <cstdio>

namespace {

constexpr double length = 2.0;
constexpr double width = 1.0;

// Where in the texture, 0 to 1 each way, a point of the tabletop lies.
std::array<double, 2> textureAt(const orva::types::Vec3& position) {
    return {position.x / length, position.y / width};
}

bool close(const std::array<double, 2>& a, const std::array<double, 2>& b) {
    return std::abs(a[0] - b[0]) < 1e-12 && std::abs(a[1] - b[1]) < 1e-12;
}

} // namespace

int main() {
    orva::types::Mesh<double> table = box({0, 0, 0}, {length, width, 0.04});
    for (orva::types::Vertex& vertex : table.vertices) vertex.aux = textureAt(vertex.pos);

    // The walls of the hole are the cutter's own triangles, turned around, with the cutter's aux: they get a corner of
    // the texture that the picture leaves blank.
    orva::types::Mesh<double> hole = box({0.9, 0.4, -1}, {1.13, 0.57, 1});
    constexpr std::array<double, 2> blank{-1, -1};
    for (orva::types::Vertex& vertex : hole.vertices) vertex.aux = blank;

    orva::types::Mesh<double> result;
    orva::bspcsg::subtractMesh(result, table, hole);

    int onTable = 0;
    int onWalls = 0;
    for (const orva::types::Vertex& vertex : result.vertices) {
        if (vertex.aux == blank) {
            ++onWalls;
        } else if (close(vertex.aux, textureAt(vertex.pos))) {
            ++onTable;
        } else {
            std::printf("the corner at %g %g has moved to %g %g in the texture\n", vertex.pos.x, vertex.pos.y,
                        vertex.aux[0], vertex.aux[1]);
            return 1;
        }
    }
    std::printf("%d triangles of the table, %d of the hole's walls\n", onTable / 3, onWalls / 3);
    return onTable > 36 && onWalls >= 24 ? 0 : 1;
}

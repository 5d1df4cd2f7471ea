// Two cubes become one solid, in C++.
#include <orva/bspcsg.hpp>

#include <cstdio>

namespace {

// The cube of edge 2 from one corner on.
orva::types::Mesh<double> cube(double from) {
    const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                             2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    orva::types::Mesh<double> mesh;
    for (const int c : corners) {
        orva::types::Vertex vertex;
        vertex.pos = {from + 2.0 * (c & 1), from + 2.0 * ((c >> 1) & 1), from + 2.0 * ((c >> 2) & 1)};
        mesh.vertices.push_back(vertex);
    }
    return mesh;
}

} // namespace

int main() {
    orva::types::Mesh<double> result;
    orva::bspcsg::unionMesh(result, cube(0), cube(1));
    std::printf("%d triangles\n", static_cast<int>(result.vertices.size() / 3));
}

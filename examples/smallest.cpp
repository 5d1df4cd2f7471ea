// A tetrahedron minus another, in C++.
#include <orva/bspcsg.hpp>

#include <cstdio>

// A tetrahedron with one corner at `at`: four triangles, counter-clockwise seen from outside.
static orva::types::Mesh<double> tetrahedron(double at, double size) {
    const orva::types::Vertex o{{at, at, at}}, x{{at + size, at, at}}, y{{at, at + size, at}}, z{{at, at, at + size}};
    return {{o, y, x, o, x, z, o, z, y, x, y, z}};
}

int main() {
    orva::types::Mesh<double> result;
    orva::bspcsg::subtractMesh(result, tetrahedron(0, 3), tetrahedron(0.5, 3));
    std::printf("%zu triangles\n", result.vertices.size() / 3);
}

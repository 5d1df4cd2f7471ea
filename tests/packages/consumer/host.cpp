// Two cubes become one solid, in C++ over the C interface.
#include <orva/orva.hpp>

#include <cstdio>

namespace {

// The cube of edge 2 from one corner on.
orva::c::Mesh cube(double from) {
    const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                             2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    orva::c::Mesh mesh(36);
    for (std::size_t i = 0; i < mesh.size(); ++i) {
        mesh[i] = {};
        for (int k = 0; k < 3; ++k) mesh[i].pos[k] = from + 2.0 * ((corners[i] >> k) & 1);
    }
    return mesh;
}

} // namespace

int main() {
    orva::c::Mesh result;
    orva::c::unionMesh(result, cube(0), cube(1));
    std::printf("%d triangles\n", static_cast<int>(result.size() / 3));
}

/* A tetrahedron minus another, in C. */
#include <orva/orva.h>

#include <stdio.h>

/* A tetrahedron with one corner at `at`: four triangles, counter-clockwise seen from outside. */
static MeshD* tetrahedron(double at, double size) {
    static const int corners[12] = {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3}; /* 0 is the corner, 1 to 3 lie along x, y, z */
    MeshD* mesh = orva_meshd_create(12);
    for (int i = 0; i < 12; ++i) {
        VertexD vertex = {{at, at, at}, {0, 0, 0}, {0, 0}};
        if (corners[i] > 0) vertex.pos[corners[i] - 1] += size;
        mesh->vertices[i] = vertex;
    }
    return mesh;
}

int main(void) {
    MeshD* a = tetrahedron(0, 3);
    MeshD* b = tetrahedron(0.5, 3);
    MeshD* result = orva_meshd_create(0);
    orva_bspcsg_subtract_mesh(result, a, b);
    printf("%d triangles\n", result->count / 3);
    orva_meshd_destroy(result);
    orva_meshd_destroy(b);
    orva_meshd_destroy(a);
    return 0;
}

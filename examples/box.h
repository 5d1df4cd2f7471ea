/* The box between two corners, for the examples: 12 triangles, counter-clockwise seen from outside. */
#ifndef EXAMPLES_BOX_H
#define EXAMPLES_BOX_H

#include <orva/orva.h>

/* The array is the library's: release it with orva_meshd_free_vertices. */
static MeshD box(double x0, double y0, double z0, double x1, double y1, double z1) {
    /* Bits 0, 1 and 2 of a corner's number choose low or high in x, y and z. */
    static const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    MeshD mesh = {36, orva_meshd_alloc_vertices(36)};
    for (int i = 0; i < mesh.count; ++i) {
        const int c = corners[i];
        const VertexD vertex = {{c & 1 ? x1 : x0, c & 2 ? y1 : y0, c & 4 ? z1 : z0}, {0, 0, 0}, {0, 0}};
        mesh.vertices[i] = vertex;
    }
    return mesh;
}

#endif

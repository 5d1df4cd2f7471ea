/* Two cubes become one solid, in C. */
#include <orva/orva.h>

#include <stdio.h>

/* The cube of edge 2 from one corner on. */
static MeshD cube(double from) {
    static const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    MeshD mesh = {36, orva_meshd_alloc_vertices(36)};
    int i, k;
    for (i = 0; i < 36; ++i) {
        for (k = 0; k < 3; ++k) {
            mesh.vertices[i].pos[k] = from + 2.0 * ((corners[i] >> k) & 1);
            mesh.vertices[i].normal[k] = 0;
        }
        mesh.vertices[i].aux[0] = mesh.vertices[i].aux[1] = 0;
    }
    return mesh;
}

int main(void) {
    MeshD a = cube(0), b = cube(1), result = {0, NULL};
    orva_bspcsg_union_mesh(&result, &a, &b);
    printf("%d triangles\n", (int)(result.count / 3));
    orva_meshd_free_vertices(a.vertices);
    orva_meshd_free_vertices(b.vertices);
    orva_meshd_free_vertices(result.vertices);
    return 0;
}

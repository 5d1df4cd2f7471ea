/* Two cubes become one solid that is closed by index, in C. */
#include <orva/tidy.h>

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
    MeshD cubes[2];
    OrvaSolid result;
    OrvaTidyStatus status;
    cubes[0] = cube(0);
    cubes[1] = cube(1);
    status = orva_tidy_union(&result, NULL, cubes, 2, NULL);
    printf("%d triangles%s\n", (int)result.face_count, status == ORVA_TIDY_DONE ? ", closed" : "");
    orva_tidy_free(&result);
    orva_meshd_free_vertices(cubes[0].vertices);
    orva_meshd_free_vertices(cubes[1].vertices);
    return 0;
}

/* A wall minus its windows, in C. */
#include "box.h"

#include <stdio.h>

int main(void) {
    MeshD wall = box(0, 0, 0, 10, 0.3, 3), windows[9], result;
    for (int i = 0; i < 9; ++i) windows[i] = box(i + 0.7, -1, 1, i + 1.3, 1, 2);
    orva_bspcsg_subtract_multi_mesh(&result, &wall, windows, 9);
    printf("%d triangles\n", result.count / 3);
    for (int i = 0; i < 9; ++i) orva_meshd_free_vertices(windows[i].vertices);
    orva_meshd_free_vertices(wall.vertices);
    orva_meshd_free_vertices(result.vertices);
    return 0;
}

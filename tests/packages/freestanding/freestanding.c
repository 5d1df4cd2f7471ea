/* Two cubes become one solid, as a soup and tidied; the exit status is the number of triangles of both. No C library: nothing
 * to print with. */
#include <orva/tidy.h>

#include <stddef.h>

__declspec(dllimport) void ExitProcess(unsigned status);

int _fltused; /* MSVC's objects ask for it wherever there are floating-point numbers */

static VertexD vertices[2][36]; /* the host's own arrays */

static void fill_cube(VertexD* cube, double from) {
    static const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    for (int i = 0; i < 36; ++i) {
        for (int k = 0; k < 3; ++k) cube[i].pos[k] = from + 2.0 * ((corners[i] >> k) & 1);
    }
}

void start(void) {
    MeshD cubes[2] = {{36, vertices[0]}, {36, vertices[1]}};
    OrvaSolid tidied;
    MeshD* result = orva_meshd_create(0);
    unsigned triangles = 0;
    fill_cube(vertices[0], 0);
    fill_cube(vertices[1], 1);
    orva_bspcsg_union_mesh(result, &cubes[0], &cubes[1]);
    triangles = (unsigned)(result->count / 3);
    orva_meshd_destroy(result);
    if (orva_tidy_union(&tidied, NULL, cubes, 2, NULL) == ORVA_TIDY_DONE) triangles += (unsigned)tidied.face_count;
    orva_tidy_free(&tidied);
    ExitProcess(triangles);
}

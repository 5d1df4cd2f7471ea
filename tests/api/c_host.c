/* A C host: strict C99, the public header alone, every function called once. */
#include "orva/orva.h"

#include <stdio.h>

static int failures = 0;

static void expect(int holds, const char* what) {
    if (!holds) {
        ++failures;
        fprintf(stderr, "failed: %s\n", what);
    }
}

/* The box between two corners, 12 triangles. */
static void fill_box(VertexD* vertices, double low, double high) {
    static const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    int i, k;
    for (i = 0; i < 36; ++i) {
        for (k = 0; k < 3; ++k) {
            vertices[i].pos[k] = (corners[i] >> k) & 1 ? high : low;
            vertices[i].normal[k] = 0;
        }
        vertices[i].aux[0] = vertices[i].aux[1] = i;
    }
}

static double volume(const MeshD* mesh) {
    double sixfold = 0;
    int32_t i;
    for (i = 0; i + 2 < mesh->count; i += 3) {
        const double *a = mesh->vertices[i].pos, *b = mesh->vertices[i + 1].pos, *c = mesh->vertices[i + 2].pos;
        sixfold += a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
                   a[2] * (b[0] * c[1] - b[1] * c[0]);
    }
    return sixfold / 6;
}

static int about(double a, double b) {
    return a - b < 1e-9 && b - a < 1e-9;
}

int main(void) {
    MeshD* a = orva_meshd_create(36);
    MeshD b = {36, NULL};
    MeshD out = {0, NULL};
    MeshF* single = orva_meshf_create(3);
    VertexF* vertices = orva_meshf_alloc_vertices(2);

    b.vertices = orva_meshd_alloc_vertices(b.count);
    fill_box(a->vertices, 0, 2);
    fill_box(b.vertices, 1, 3);

    orva_bspcsg_union_mesh(&out, a, &b);
    expect(about(volume(&out), 15), "union");
    orva_meshd_free_vertices(out.vertices);

    orva_bspcsg_subtract_mesh(&out, a, &b);
    expect(about(volume(&out), 7), "difference");
    orva_meshd_free_vertices(out.vertices);

    orva_bspcsg_intersect_mesh(&out, a, &b);
    expect(about(volume(&out), 1), "intersection");
    orva_meshd_free_vertices(out.vertices);

    orva_bspcsg_subtract_multi_mesh(&out, a, &b, 1);
    expect(about(volume(&out), 7), "difference of several in turn");
    orva_meshd_free_vertices(out.vertices);

    orva_bspcsg_subtract_multi_union_mesh(&out, a, &b, 1);
    expect(about(volume(&out), 7), "difference of their union");
    orva_meshd_free_vertices(out.vertices);

    /* With a single cutter there is nothing to merge, and so no need of a worker thread. */
    orva_bspcsg_subtract_multi_union_mesh_parallel(&out, a, &b, 1);
    expect(about(volume(&out), 7), "difference of their union in parallel");
    orva_meshd_free_vertices(out.vertices);

    expect(single != NULL && single->count == 3 && vertices != NULL, "single precision records");
    orva_meshf_free_vertices(vertices);
    orva_meshf_destroy(single);
    orva_meshd_free_vertices(b.vertices);
    orva_meshd_destroy(a);
    return failures != 0;
}

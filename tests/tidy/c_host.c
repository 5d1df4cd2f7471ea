/* A C host: strict C99, the header of Orva_tidy alone, every function called. */
#include "orva/tidy.h"

#include <stddef.h>
#include <stdio.h>

static int failures = 0;

static void expect(int holds, const char* what) {
    if (!holds) {
        ++failures;
        fprintf(stderr, "failed: %s\n", what);
    }
}

/* The box between two corners, 12 triangles, in an array of the host's. */
static MeshD box(VertexD* vertices, double low, double high) {
    static const int corners[36] = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    MeshD mesh;
    int i, k;
    for (i = 0; i < 36; ++i) {
        for (k = 0; k < 3; ++k) {
            vertices[i].pos[k] = (corners[i] >> k) & 1 ? high : low;
            vertices[i].normal[k] = 0;
        }
        vertices[i].aux[0] = vertices[i].aux[1] = 0;
    }
    mesh.count = 36;
    mesh.vertices = vertices;
    return mesh;
}

static double volume(const OrvaSolid* solid) {
    double sixfold = 0;
    int32_t i;
    for (i = 0; i < solid->face_count; ++i) {
        const double* a = solid->vertices + 3 * (size_t)solid->faces[3 * i];
        const double* b = solid->vertices + 3 * (size_t)solid->faces[3 * i + 1];
        const double* c = solid->vertices + 3 * (size_t)solid->faces[3 * i + 2];
        sixfold += a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
                   a[2] * (b[0] * c[1] - b[1] * c[0]);
    }
    return sixfold / 6;
}

/* Every directed edge occurs once, and once in the opposite direction; slowly. */
static int closed(const OrvaSolid* solid) {
    const int32_t count = 3 * solid->face_count;
    int32_t i, k;
    for (i = 0; i < count; ++i) {
        const uint32_t from = solid->faces[i], to = solid->faces[i % 3 == 2 ? i - 2 : i + 1];
        int same = 0, opposite = 0;
        for (k = 0; k < count; ++k) {
            const uint32_t begin = solid->faces[k], end = solid->faces[k % 3 == 2 ? k - 2 : k + 1];
            same += begin == from && end == to;
            opposite += begin == to && end == from;
        }
        if (same != 1 || opposite != 1) return 0;
    }
    return 1;
}

static void expect_solid(OrvaTidyStatus status, OrvaSolid* solid, const OrvaTidyReport* report, double expected_volume,
                         const char* what) {
    const double off = volume(solid) - expected_volume;
    expect(status == ORVA_TIDY_DONE && report->closed == 1 && report->open_edges == 0 && report->scale > 0, what);
    expect(solid->face_count > 0 && closed(solid), what);
    expect(solid->corners != NULL && solid->origins != NULL, what);
    expect(off < 1e-9 && off > -1e-9, what);
    orva_tidy_free(solid);
    expect(solid->face_count == 0 && solid->vertices == NULL, what);
}

int main(void) {
    static VertexD vertices[2][36];
    MeshD boxes[2];
    OrvaOrigin origins[12];
    OrvaSolid solid, indexed[2];
    OrvaTidyReport report;
    OrvaTidyOptions options;
    OrvaTidyStatus status;
    int i;

    boxes[0] = box(vertices[0], 0, 2);
    boxes[1] = box(vertices[1], 1, 3);

    status = orva_tidy_union(&solid, &report, boxes, 2, NULL);
    expect_solid(status, &solid, &report, 15, "union");
    status = orva_tidy_intersect(&solid, &report, boxes, 2, NULL);
    expect_solid(status, &solid, &report, 1, "intersection");
    status = orva_tidy_subtract(&solid, &report, &boxes[0], &boxes[1], 1, ORVA_TIDY_IN_TURN, NULL);
    expect(solid.face_count == 24, "a difference of two boxes has 24 triangles");
    expect_solid(status, &solid, &report, 7, "difference");
    status = orva_tidy_subtract(&solid, &report, &boxes[0], &boxes[1], 1, ORVA_TIDY_AS_ONE_UNION_PARALLEL, NULL);
    expect_solid(status, &solid, &report, 7, "difference of a union");

    orva_tidy_default_options(&options);
    options.merge = ORVA_TIDY_MERGE_ALL;
    options.scale = 0;
    for (i = 0; i < 12; ++i) {
        origins[i].mesh = 0;
        origins[i].face = (uint32_t)i;
    }
    for (i = 0; i < 2; ++i) {
        status = orva_tidy_soup(&indexed[i], &report, &boxes[i], i == 0 ? origins : NULL, &options);
        expect(status == ORVA_TIDY_DONE && indexed[i].vertex_count == 8 && indexed[i].face_count == 12,
               "a box, tidied");
    }
    status = orva_tidy_union_solids(&solid, &report, indexed, 2, &options);
    expect_solid(status, &solid, &report, 15, "union of indexed meshes");
    status = orva_tidy_intersect_solids(&solid, &report, indexed, 2, &options);
    expect_solid(status, &solid, &report, 1, "intersection of indexed meshes");
    status = orva_tidy_subtract_solids(&solid, &report, &indexed[0], &indexed[1], 1, ORVA_TIDY_AS_ONE_UNION, &options);
    expect(solid.face_count == 24, "a difference of two indexed boxes has 24 triangles");
    expect_solid(status, &solid, &report, 7, "difference of indexed meshes");

    status = orva_tidy_union(&solid, NULL, boxes, -1, NULL);
    expect(status == ORVA_TIDY_BAD_ARGUMENT && solid.vertices == NULL, "a negative count");
    for (i = 0; i < 2; ++i) orva_tidy_free(&indexed[i]);
    return failures != 0;
}

/**
 * @file
 * Orva_tidy for C (C99 and later) and for every language that calls C: results closed by index, with few triangles.
 *
 *     OrvaSolid part;
 *     OrvaTidyReport report;
 *     OrvaTidyStatus status = orva_tidy_subtract(&part, &report, &block, &drill, 1, ORVA_TIDY_IN_TURN, NULL);
 *     if (status == ORVA_TIDY_DONE) ... part.face_count faces at part.faces ...
 *     orva_tidy_free(&part);
 *
 * What a tidied solid is, and the laws, stand in orva/tidy.hpp; these are the same functions, bit for bit.
 *
 * Every function that can fail returns a status; no exception leaves this library. With ORVA_TIDY_DONE and
 * ORVA_TIDY_NOT_CLOSED the output and the report are filled; with every other status both are set to zeros.
 *
 * Memory goes home by the door it came in: a function fills a record of the host's with arrays of its own, which
 * orva_tidy_free alone releases. What the record held before is not released: free it first. Inputs are only read;
 * `output` may be one of them, whose arrays are then lost to the host unless it kept a copy of the record.
 *
 * Threads: every function may be called from any thread at any time; one record is one thread's at a time.
 */
#ifndef ORVA_TIDY_H
#define ORVA_TIDY_H

#include "orva/export.h"
#include "orva/orva.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What became of a call. */
typedef int32_t OrvaTidyStatus;
enum {
    ORVA_TIDY_DONE = 0,          /**< the output is closed and edge-manifold by index */
    ORVA_TIDY_NOT_CLOSED = 1,    /**< the output is there, and open where the report says */
    ORVA_TIDY_OUT_OF_MEMORY = 2, /**< nothing was made */
    ORVA_TIDY_TOO_LARGE = 3,     /**< more than 2^31 - 1 vertices, faces or corners; nothing was made */
    /** A null pointer where there should be a record or an array, a negative count, an index out of range, an option
     * that is not valid; a tolerance or gap width that is negative or not finite. Nothing was made. */
    ORVA_TIDY_BAD_ARGUMENT = 4,
    ORVA_TIDY_FAILED = 5 /**< the task scheduler failed in some other way; nothing was made */
};

/** Where a face came from. Both 0xFFFFFFFF where that could not be told. */
typedef struct OrvaOrigin {
    uint32_t mesh; /**< the place of the mesh: 0 for the base or the first */
    uint32_t face; /**< the place of the triangle in its mesh, from 0 */
} OrvaOrigin;

/** What a corner of a face carries besides its position. 40 bytes. */
typedef struct OrvaCorner {
    double normal[3];
    double aux[2];
} OrvaCorner;

/**
 * An indexed mesh:
 *
 *     vertices | x y z | x y z | ...            vertex_count * 3 doubles
 *     faces    | a b c | a b c | ...            face_count * 3 indices, counter-clockwise from outside
 *     corners  | corner a | corner b | corner c | ...  face_count * 3; null on input: zeros
 *     origins  | origin | origin | ...          face_count; null on input
 */
typedef struct OrvaSolid {
    int32_t vertex_count;
    int32_t face_count;
    double* vertices;
    uint32_t* faces;
    OrvaCorner* corners;
    OrvaOrigin* origins;
} OrvaSolid;

/** Which coplanar neighbours become one face. */
enum { ORVA_TIDY_MERGE_NONE = 0, ORVA_TIDY_MERGE_CUT = 1, ORVA_TIDY_MERGE_ALL = 2 };

/**
 * In which way many cutters are subtracted. The parallel union has the limits of
 * orva_bspcsg_subtract_multi_union_mesh_parallel.
 */
enum { ORVA_TIDY_IN_TURN = 0, ORVA_TIDY_AS_ONE_UNION = 1, ORVA_TIDY_AS_ONE_UNION_PARALLEL = 2 };

/** See orva::tidy::Options. Null wherever options are taken stands for those of orva_tidy_default_options. */
typedef struct OrvaTidyOptions {
    double tolerance; /**< 0: the default */
    double gap_width; /**< 0: no gap is closed */
    int32_t merge;    /**< ORVA_TIDY_MERGE_... */
    int32_t scale;    /**< 1: operations choose the unit they compute in; 0: they keep the given one */
} OrvaTidyOptions;

/** See orva::tidy::Report. */
typedef struct OrvaTidyReport {
    int32_t closed;
    int32_t padding; /**< 0 */
    uint64_t open_edges;
    double largest_gap;
    uint64_t loops_removed;
    double loop_area;
    double moved_by_weld;
    double moved_by_zip;
    double moved_by_drop;
    uint64_t forced_ears;
    uint64_t faces_left;
    uint64_t soup_triangles;
    uint64_t pieces;
    double scale;
} OrvaTidyReport;

/** Fills in the defaults. Null does nothing. */
ORVA_TIDY_API void orva_tidy_default_options(OrvaTidyOptions* options);

/** Releases the arrays of a record that a function here filled, and sets it to zeros. Null does nothing. */
ORVA_TIDY_API void orva_tidy_free(OrvaSolid* solid);

/**
 * output = the soup, tidied. `origins` holds one for each triangle (soup->count / 3), or is null. `report` may be null,
 * here and below.
 */
ORVA_TIDY_API OrvaTidyStatus orva_tidy_soup(OrvaSolid* output, OrvaTidyReport* report, const MeshD* soup,
                                            const OrvaOrigin* origins, const OrvaTidyOptions* options);

/** output = what lies in any of the `count` meshes, one record behind the other. */
ORVA_TIDY_API OrvaTidyStatus orva_tidy_union(OrvaSolid* output, OrvaTidyReport* report, const MeshD* meshes,
                                             int32_t count, const OrvaTidyOptions* options);

/** output = what lies in all of the `count` meshes. */
ORVA_TIDY_API OrvaTidyStatus orva_tidy_intersect(OrvaSolid* output, OrvaTidyReport* report, const MeshD* meshes,
                                                 int32_t count, const OrvaTidyOptions* options);

/** output = what lies in base and in none of the cutters; `cutting` is ORVA_TIDY_IN_TURN or one of its like. */
ORVA_TIDY_API OrvaTidyStatus orva_tidy_subtract(OrvaSolid* output, OrvaTidyReport* report, const MeshD* base,
                                                const MeshD* cutters, int32_t count, int32_t cutting,
                                                const OrvaTidyOptions* options);

/** The same on indexed meshes. */
ORVA_TIDY_API OrvaTidyStatus orva_tidy_union_solids(OrvaSolid* output, OrvaTidyReport* report, const OrvaSolid* meshes,
                                                    int32_t count, const OrvaTidyOptions* options);
ORVA_TIDY_API OrvaTidyStatus orva_tidy_intersect_solids(OrvaSolid* output, OrvaTidyReport* report,
                                                        const OrvaSolid* meshes, int32_t count,
                                                        const OrvaTidyOptions* options);
ORVA_TIDY_API OrvaTidyStatus orva_tidy_subtract_solids(OrvaSolid* output, OrvaTidyReport* report, const OrvaSolid* base,
                                                       const OrvaSolid* cutters, int32_t count, int32_t cutting,
                                                       const OrvaTidyOptions* options);

#ifdef __cplusplus
}
#endif

#endif

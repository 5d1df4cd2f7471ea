/**
 * @file
 * Orva_acc for C (C99 and later) and for every language that calls C.
 *
 *     MeshD *out = orva_meshd_create(0);
 *     orva_bspcsg_subtract_mesh(out, block, drill);
 *     ... out->count vertices at out->vertices, three to a triangle ...
 *     orva_meshd_destroy(out);
 *
 * The records are the host's to read and fill. One triangle, count 3, in memory:
 *
 *     MeshD   | count = 3 | (padding) | vertices ----+
 *                                                     v
 *     VertexD | pos x y z | normal x y z | aux s t |  64 bytes
 *     VertexD | pos x y z | normal x y z | aux s t |
 *     VertexD | pos x y z | normal x y z | aux s t |
 *
 * Memory goes home by the door it came in. The records and arrays made here live on the library's process heap, which
 * on Windows need not be the host's: release them with the functions below and with nothing else.
 *
 *     made by                        released by
 *     orva_meshd_create              orva_meshd_destroy, which releases the array at `vertices` too
 *     orva_meshd_alloc_vertices      orva_meshd_free_vertices
 *     an operation, into `vertices`  orva_meshd_free_vertices, or orva_meshd_destroy if the record came from _create
 *     the host (record or array)     the host; the library never releases or keeps them
 *
 * What the operations compute, assume and promise stands in orva/bspcsg.hpp; these are the same operations, bit for
 * bit.
 *
 * Errors: there are no error codes. A null pointer where a record is needed makes the call return at once with nothing
 * written. Out of memory is a C++ exception (std::bad_alloc, "bad allocation"; std::length_error, "vector too long")
 * that passes through these functions to the host: a C host that wants to survive it calls through a C++ frame, and C
 * code in between is compiled with -fexceptions. On 64-bit Windows frames need nothing special.
 *
 * Threads: every function may be called from any thread at any time; one record is one thread's at a time.
 */
#ifndef ORVA_ORVA_H
#define ORVA_ORVA_H

#include "orva/export.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A corner of a triangle in double precision: 64 bytes, the layout of orva::types::Vertex. */
typedef struct VertexD {
    double pos[3];    /**< position; the only values that the geometry reads */
    double normal[3]; /**< carried through; interpolated at cuts, negated where a surface is turned inside out */
    double aux[2];    /**< two values of the host's own; carried through, interpolated at cuts */
} VertexD;

/** The same in single precision: 32 bytes. */
typedef struct VertexF {
    float pos[3];
    float normal[3];
    float aux[2];
} VertexF;

/** A mesh in double precision: every three vertices form a triangle, its outside where they run counter-clockwise. */
typedef struct MeshD {
    int32_t count;     /**< number of vertices; one or two behind the last whole triangle are ignored */
    VertexD* vertices; /**< the array of `count` vertices; null when `count` is 0 */
} MeshD;

/** A mesh in single precision, for hosts to keep and exchange; no operation takes it and nothing converts it. */
typedef struct MeshF {
    int32_t count;
    VertexF* vertices;
} MeshF;

/** @name Records */
/** @{ */

/**
 * A new record with room for n vertices, their values not set; for n = 0 with `vertices` null. Null when n is negative.
 * The caller releases it with orva_meshd_destroy.
 */
ORVA_API MeshD* orva_meshd_create(int32_t n);

/** Releases the array at `vertices`, unless that is null, then the record itself. Null does nothing. */
ORVA_API void orva_meshd_destroy(MeshD* mesh);

/** A new array of n vertices, their values not set. Null when n is less than 1. */
ORVA_API VertexD* orva_meshd_alloc_vertices(int32_t n);

/** Releases such an array. Null does nothing. A record that still points to it must be cleared by the host. */
ORVA_API void orva_meshd_free_vertices(VertexD* vertices);

/** The single-precision twins of the four functions above. */
ORVA_API MeshF* orva_meshf_create(int32_t n);
ORVA_API void orva_meshf_destroy(MeshF* mesh);
ORVA_API VertexF* orva_meshf_alloc_vertices(int32_t n);
ORVA_API void orva_meshf_free_vertices(VertexF* vertices);

/** @} */
/** @name Two meshes
 *
 * Each reads a and b and then writes a new array and its count into `output`, without releasing what `output->vertices`
 * held before: clear it first (orva_meshd_free_vertices), or that array is lost. `output` may be a or b. An empty
 * result is count 0 and vertices null. With a null output, a or b nothing is written. A record with count below 1 or
 * vertices null is an empty mesh, and an empty operand empties every result.
 */
/** @{ */

/** output = what lies in a, in b, or in both. */
ORVA_API void orva_bspcsg_union_mesh(MeshD* output, const MeshD* a, const MeshD* b);

/** output = what lies in a but not in b. */
ORVA_API void orva_bspcsg_subtract_mesh(MeshD* output, const MeshD* a, const MeshD* b);

/** output = what lies in both a and b. */
ORVA_API void orva_bspcsg_intersect_mesh(MeshD* output, const MeshD* a, const MeshD* b);

/** @} */
/** @name One base, many cutters
 *
 * `cutters` is an array of `cutter_count` records, one behind the other. With a null output, base or array, or a count
 * below 1, nothing is written. An empty cutter empties the result. Writing and ownership as above.
 */
/** @{ */

/** output = ((base - cutters[0]) - cutters[1]) - ... */
ORVA_API void orva_bspcsg_subtract_multi_mesh(MeshD* output, const MeshD* base, const MeshD* cutters,
                                              int32_t cutter_count);

/** output = base - (cutters[0] + cutters[1] + ...), the union merged on the calling thread. */
ORVA_API void orva_bspcsg_subtract_multi_union_mesh(MeshD* output, const MeshD* base, const MeshD* cutters,
                                                    int32_t cutter_count);

/**
 * The same solid, the union merged on the task scheduler's threads; from three cutters on its surface can be cut
 * differently from call to call. It never returns where the scheduler has no worker thread besides the caller, nor when
 * memory runs out inside a merge.
 */
ORVA_API void orva_bspcsg_subtract_multi_union_mesh_parallel(MeshD* output, const MeshD* base, const MeshD* cutters,
                                                             int32_t cutter_count);
/** @} */

#ifdef __cplusplus
}
#endif

#endif

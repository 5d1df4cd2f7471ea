/* The operations of orva/orva.h and of orva/tidy.h, each behind one function that never throws, for callers that cannot
 * catch. */
#ifndef ORVA_GUARDED_H
#define ORVA_GUARDED_H

#include <orva/tidy.h>

#include <stddef.h>

#if defined(_WIN32)
#define ORVA_GUARDED_API __declspec(dllexport)
#else
#define ORVA_GUARDED_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The numbers are written once more in orva_acc/_native.py. */
typedef enum OrvaGuardedOperation {
    OrvaGuardedUnion = 0,
    OrvaGuardedSubtract = 1,
    OrvaGuardedIntersect = 2,
    OrvaGuardedSubtractInTurn = 3,
    OrvaGuardedSubtractUnion = 4,
    OrvaGuardedSubtractUnionParallel = 5, /* as 4 where the scheduler has no worker thread: 5 would never return */
    OrvaGuardedTidy = 6                   /* of one mesh; orva_guarded_tidy alone */
} OrvaGuardedOperation;

typedef enum OrvaGuardedCode {
    OrvaGuardedDone = 0,
    OrvaGuardedNoMemory = 1, /* std::bad_alloc */
    OrvaGuardedTooLong = 2,  /* std::length_error */
    OrvaGuardedOther = 3
} OrvaGuardedCode;

/**
 * Does the operation and writes its result into `output`, whose old content is not looked at. `others` are `count`
 * records; the first three operations take one. Returns an OrvaGuardedCode; where that is not 0, `output` is empty and
 * `text`, of `size` bytes, holds what the exception says. No pointer may be null.
 */
ORVA_GUARDED_API int32_t orva_guarded_call(int32_t operation, MeshD* output, const MeshD* base, const MeshD* others,
                                           int32_t count, char* text, size_t size);

/** Releases the array of an `output`. Null does nothing. */
ORVA_GUARDED_API void orva_guarded_free(VertexD* vertices);

/**
 * Does the operation on `count` meshes, at least one, of which the first is the base, and writes its tidied result and
 * the report. Returns a status of orva/tidy.h; where nothing was made, both are zeros. No pointer may be null.
 */
ORVA_GUARDED_API int32_t orva_guarded_tidy(int32_t operation, OrvaSolid* output, OrvaTidyReport* report,
                                           const MeshD* meshes, int32_t count, const OrvaTidyOptions* options);

/** Releases the arrays of such an `output`. Null does nothing. */
ORVA_GUARDED_API void orva_guarded_tidy_free(OrvaSolid* solid);

#ifdef __cplusplus
}
#endif

#endif

// What the Python package calls instead of the C interfaces themselves: the same operations, with a code where those
// throw. Those of orva/tidy.h never do; here their threads are prepared, and the parallel union always returns.
//
// note: a C++ exception that meets the frames of an interpreter finds nobody there to catch it, and ends the process.
// Here it ends, in a C++ frame, and goes on as a number and a text.
#include "guarded.h"

#include <tbb/global_control.h>
#include <tbb/task_arena.h>
#include <tbb/task_scheduler_observer.h>

#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>

namespace {

// Lets this thread have what it needs for its first exception. The runtime keeps that in memory of each thread's own,
// which, in a library loaded by an interpreter, the C library takes from the heap at the first use; and if there is
// nothing left then, as is likely when what is to be thrown is std::bad_alloc, it ends the process. (A helper that
// first comes when nothing is left still meets that end; nobody can catch it.)
void prepareToThrow() {
    [[maybe_unused]] const volatile int exceptions = std::uncaught_exceptions();
}

// The same for threads that come to help with the calls of the thread that makes it.
class HelpersPrepared : public tbb::task_scheduler_observer {
public:
    HelpersPrepared() { observe(true); }
    ~HelpersPrepared() override { observe(false); }
    void on_scheduler_entry(bool) override { prepareToThrow(); }
};

// The parallel union needs a worker thread besides the caller, or it never returns. Both limits count: that of the
// process, and that of the arena which the calling thread is in or would get.
bool hasWorkers() {
    return tbb::global_control::active_value(tbb::global_control::max_allowed_parallelism) > 1 &&
           tbb::this_task_arena::max_concurrency() > 1;
}

void call(int32_t operation, MeshD* output, const MeshD* base, const MeshD* others, int32_t count) {
    switch (operation) {
    case OrvaGuardedUnion:
        return orva_bspcsg_union_mesh(output, base, others);
    case OrvaGuardedSubtract:
        return orva_bspcsg_subtract_mesh(output, base, others);
    case OrvaGuardedIntersect:
        return orva_bspcsg_intersect_mesh(output, base, others);
    case OrvaGuardedSubtractInTurn:
        return orva_bspcsg_subtract_multi_mesh(output, base, others, count);
    case OrvaGuardedSubtractUnionParallel:
        if (hasWorkers()) return orva_bspcsg_subtract_multi_union_mesh_parallel(output, base, others, count);
        [[fallthrough]];
    case OrvaGuardedSubtractUnion:
        return orva_bspcsg_subtract_multi_union_mesh(output, base, others, count);
    }
    throw std::invalid_argument("no such operation");
}

OrvaTidyStatus tidy(int32_t operation, OrvaSolid* output, OrvaTidyReport* report, const MeshD* meshes, int32_t count,
                    const OrvaTidyOptions* options) {
    const auto subtract = [=](int32_t cutting) {
        return orva_tidy_subtract(output, report, meshes, meshes + 1, count - 1, cutting, options);
    };
    switch (operation) {
    case OrvaGuardedUnion:
        return orva_tidy_union(output, report, meshes, count, options);
    case OrvaGuardedIntersect:
        return orva_tidy_intersect(output, report, meshes, count, options);
    case OrvaGuardedSubtract:
    case OrvaGuardedSubtractInTurn:
        return subtract(ORVA_TIDY_IN_TURN);
    case OrvaGuardedSubtractUnion:
        return subtract(ORVA_TIDY_AS_ONE_UNION);
    case OrvaGuardedSubtractUnionParallel:
        return subtract(hasWorkers() ? ORVA_TIDY_AS_ONE_UNION_PARALLEL : ORVA_TIDY_AS_ONE_UNION);
    case OrvaGuardedTidy:
        return orva_tidy_soup(output, report, meshes, nullptr, options);
    }
    return ORVA_TIDY_BAD_ARGUMENT;
}

OrvaGuardedCode failed(OrvaGuardedCode code, const char* what, MeshD* output, char* text, size_t size) {
    *output = {}; // its count may be written already when its array cannot be had
    if (size > 0) {
        std::strncpy(text, what, size - 1);
        text[size - 1] = '\0';
    }
    return code;
}

} // namespace

int32_t orva_guarded_call(int32_t operation, MeshD* output, const MeshD* base, const MeshD* others, int32_t count,
                          char* text, size_t size) {
    *output = {};
    try {
        prepareToThrow();
        const HelpersPrepared prepared;
        call(operation, output, base, others, count);
        return OrvaGuardedDone;
    } catch (const std::bad_alloc& exception) {
        return failed(OrvaGuardedNoMemory, exception.what(), output, text, size);
    } catch (const std::length_error& exception) {
        return failed(OrvaGuardedTooLong, exception.what(), output, text, size);
    } catch (const std::exception& exception) {
        return failed(OrvaGuardedOther, exception.what(), output, text, size);
    } catch (...) {
        return failed(OrvaGuardedOther, "unknown exception", output, text, size);
    }
}

void orva_guarded_free(VertexD* vertices) {
    orva_meshd_free_vertices(vertices);
}

int32_t orva_guarded_tidy(int32_t operation, OrvaSolid* output, OrvaTidyReport* report, const MeshD* meshes,
                          int32_t count, const OrvaTidyOptions* options) {
    *output = {};
    *report = {};
    try {
        prepareToThrow();
        const HelpersPrepared prepared;
        return tidy(operation, output, report, meshes, count, options);
    } catch (...) { // before the library was reached
        return ORVA_TIDY_OUT_OF_MEMORY;
    }
}

void orva_guarded_tidy_free(OrvaSolid* solid) {
    orva_tidy_free(solid);
}

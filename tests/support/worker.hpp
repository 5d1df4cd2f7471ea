// A worker thread for the parallel union, which never returns without one: also on a machine that shows a single
// processor.
#pragma once

#include <tbb/global_control.h>
#include <tbb/task_arena.h>

namespace orva::test {

/// Calls it in an arena of two threads.
template <typename Call> auto withAWorker(Call call) {
    const tbb::global_control two(tbb::global_control::max_allowed_parallelism, 2);
    tbb::task_arena arena(2);
    return arena.execute(call);
}

} // namespace orva::test

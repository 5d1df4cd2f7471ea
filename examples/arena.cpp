// Choosing a TBB arena: a call shares its work with the arena that it is made in, which limits the threads that help.
// Here a host lets the library have two threads and keeps the others; the result is the same, bit for bit.
#include "box.hpp"
#include "same_bits.hpp"

#include <orva/bspcsg.hpp>

#include <tbb/task_arena.h>

#include <cstdio>

namespace {

using Mesh = orva::types::Mesh<double>;

Mesh wallWithWindows() {
    const Mesh wall = box({0, 0, 0}, {100, 0.3, 3});
    std::vector<Mesh> windows;
    for (int i = 0; i < 100; ++i) windows.push_back(box({i + 0.2, -1, 1}, {i + 0.8, 1, 2}));
    Mesh result;
    orva::bspcsg::subtractMultiUnionMesh(result, wall, windows);
    return result;
}

} // namespace

int main() {
    const Mesh anywhere = wallWithWindows(); // in the default arena: as many threads as there are processors

    // The calling thread is one of the two, so a single helper can come. An arena of one makes a call keep to its
    // thread; but subtractMultiUnionMeshParallel needs a helper, and would never return from there.
    tbb::task_arena arena(2);
    int threads = 0;
    Mesh inside;
    arena.execute([&] {
        threads = tbb::this_task_arena::max_concurrency();
        inside = wallWithWindows();
    });

    std::printf("%zu triangles, by up to %d threads\n", inside.vertices.size() / 3, threads);
    return threads == 2 && !inside.vertices.empty() && sameBits(inside, anywhere) ? 0 : 1;
}

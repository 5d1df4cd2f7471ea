// What the library never does, to show that the thread sanitizer would see it: two tasks that change one tree. The tree
// comes the way it comes in the parallel union, through the result queue and out of working memory, and the tasks run
// on the scheduler's threads; were one of these to hide races from the sanitizer, this one would go unseen.
//
// Argument "shared": one tree for both. "apart": one for each, which is in order and must not be reported.
#include "boolean/batch.hpp"
#include "boolean/result_queue.hpp"
#include "polygons.hpp"

#include <tbb/global_control.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

namespace orva::bspcsg {

namespace {

// Both tasks are under way before either goes on, so that two threads run them. Relaxed, because a meeting that orders
// memory would put the one's changes before the other's, and there would be no race.
void meet(std::atomic<int>& arrived) {
    arrived.fetch_add(1, std::memory_order_relaxed);
    while (arrived.load(std::memory_order_relaxed) < 2) std::this_thread::yield();
}

void changeOnTwoThreads(Node& a, Node& b) {
    std::atomic<int> arrived = 0;
    tbb::task_group tasks;
    for (Node* tree : {&a, &b}) {
        tasks.run([tree, &arrived] {
            meet(arrived);
            // Without children: turned around by two threads at once, it ends up wrong, but in one piece.
            for (int i = 0; i < 100; ++i) tree->invert();
        });
    }
    tasks.wait();
}

} // namespace

} // namespace orva::bspcsg

int main(int argc, char** argv) {
    using namespace orva::bspcsg;
    const std::string which = argc > 1 ? argv[1] : "";
    // One worker besides this thread, on a machine with a single core, too.
    const tbb::global_control two(tbb::global_control::max_allowed_parallelism, 2);
    tbb::task_arena arena(2);

    ResultQueue queue;
    for (int i = 0; i < 2; ++i) queue.push(buildTree(listOf({level(1)})));
    const NodePtr first = queue.pop();
    const NodePtr second = queue.pop();
    std::puts("changing");
    std::fflush(stdout);
    arena.execute([&] { changeOnTwoThreads(*first, which == "shared" ? *first : *second); });
    std::puts("changed");
}

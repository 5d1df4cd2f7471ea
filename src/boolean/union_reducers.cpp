#include "boolean/union_reducers.hpp"

#include <tbb/task_group.h>

#include <future>
#include <thread>
#include <utility>

namespace orva::bspcsg {

namespace {

NodePtr unionTree(Node&& a, Node&& b) {
    auto result = std::make_unique<Node>();
    unionTrees(*result, std::move(a), std::move(b));
    return result;
}

// A merge on its way to a thread. It owns its trees: where it cannot be started, or is dropped, they go with it.
struct MergeTask {
    mutable NodePtr a; // the scheduler calls its tasks as const
    mutable NodePtr b;
    ResultQueue* queue;
    std::atomic<std::int32_t>* pending;

    void operator()() const { mergePair(std::move(a), std::move(b), *queue, *pending); }
};

// Pairs trees as they come and hands each pair to `start`, until all have been merged into one.
template <typename Start> void coordinate(ResultQueue& queue, std::atomic<std::int32_t>& pending, Start start) {
    while (pending > 1) {
        while (NodePtr a = queue.pop()) {
            NodePtr b = queue.pop();
            if (b == nullptr) {
                queue.push(std::move(a));
                break;
            }
            start(MergeTask{std::move(a), std::move(b), &queue, &pending});
        }
        std::this_thread::yield();
    }
}

void pushCopies(const TreeList& trees, ResultQueue& queue) {
    for (const NodePtr& tree : trees) queue.push(tree->clone());
}

} // namespace

void mergePair(NodePtr a, NodePtr b, ResultQueue& queue, std::atomic<std::int32_t>& pending) {
    NodePtr result = unionTree(std::move(*a), std::move(*b));
    // note: the push comes before the decrement. When the coordinator sees 1 pending, the last result is in the queue;
    // the other way round it could leave without it. The spent trees are freed after both: the coordinator waits for
    // the tasks to end before it returns.
    queue.push(std::move(result));
    --pending;
}

NodePtr unionTreeListSequential(const TreeList& trees) {
    if (trees.empty()) return nullptr;
    Queue<NodePtr> queue;
    for (const NodePtr& tree : trees) queue.push(tree->clone());
    return tournament(queue, [](NodePtr a, NodePtr b) { return unionTree(std::move(*a), std::move(*b)); });
}

NodePtr unionTreeListAsync(const TreeList& trees) {
    if (trees.empty()) return nullptr;
    ResultQueue queue;
    pushCopies(trees, queue);
    std::atomic<std::int32_t> pending = toCount(trees.size());

    // A future of std::async waits for its task when it is destroyed, so none outlives the call even where it fails.
    Queue<std::future<void>> merges;
    coordinate(queue, pending,
               [&merges](MergeTask task) { merges.push(std::async(std::launch::async, std::move(task))); });
    while (!merges.empty()) merges.take().wait();
    return queue.pop();
}

NodePtr unionTreeListParallel(const TreeList& trees) {
    if (trees.empty()) return nullptr;
    ResultQueue queue;
    pushCopies(trees, queue);
    std::atomic<std::int32_t> pending = toCount(trees.size());

    // A context of its own, as in clipTree: a host that cancels the task in which it called us would otherwise cancel
    // the merges, and the loop below would wait for them without end.
    tbb::task_group_context context(tbb::task_group_context::isolated,
                                    tbb::task_group_context::default_traits | tbb::task_group_context::fp_settings);
    tbb::task_group merges(context);
    try {
        coordinate(queue, pending, [&merges](MergeTask task) { merges.run(std::move(task)); });
    } catch (...) {
        merges.cancel();
        try {
            merges.wait();
        } catch (...) {
        }
        throw;
    }
    merges.wait();
    return queue.pop();
}

NodePtr unionTreeList(const TreeList& trees, UnionStrategy strategy) {
    if (strategy == UnionStrategy::TaskGroup) return unionTreeListParallel(trees);
    if (strategy == UnionStrategy::Async) return unionTreeListAsync(trees);
    return unionTreeListSequential(trees);
}

} // namespace orva::bspcsg

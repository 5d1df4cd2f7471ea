// Many trees into one by n - 1 unions, three ways.
//
// All three leave the trees of the list as they are and work on copies. They give the same solid; how its surface is
// cut depends on which trees were merged with which. The sequential one is a tournament in list order, the same every
// time; the other two start a merge as soon as two trees are at hand, so that from three trees on the order of arrival
// decides.
#pragma once

#include "boolean/recipes.hpp"
#include "boolean/result_queue.hpp"

#include <atomic>
#include <cstdint>

namespace orva::bspcsg {

using TreeList = List<NodePtr>;

/// Which reducer; any other value acts as Sequential.
enum class UnionStrategy : std::int32_t { Sequential = 0, Async = 1, TaskGroup = 2 };

/// The union of all trees; null for an empty list, a copy of the tree for a list of one.
NodePtr unionTreeList(const TreeList& trees, UnionStrategy strategy);

NodePtr unionTreeListSequential(const TreeList& trees);

/// Merges on threads of std::async. A merge that fails leaves the call waiting for its result without end.
NodePtr unionTreeListAsync(const TreeList& trees);

/// Merges on the task scheduler's worker threads.
///
/// The coordinating thread pairs trees and spins in between; it helps with no merge before the last one has ended. So
/// the scheduler must have a worker thread besides the caller, or the call never returns; and a merge that fails, for
/// lack of memory, leaves it waiting for that merge's result without end. Both are the price of the simple loop, and
/// part of its documented behaviour.
NodePtr unionTreeListParallel(const TreeList& trees);

/// What a merge task does: the union of a and b onto the queue, and one tree less pending.
void mergePair(NodePtr a, NodePtr b, ResultQueue& queue, std::atomic<std::int32_t>& pending);

/// Merges the first two of the queue and puts the result at its back, until one is left. Not a left fold: a result
/// waits for every tree ahead of it. Tree 0 and 1, 2 and 3, ..., then their unions in the same way; the one taken first
/// is a.
template <typename Tree, typename Merge> Tree tournament(Queue<Tree>& queue, Merge merge) {
    while (queue.size() > 1) {
        Tree a = queue.take();
        Tree b = queue.take();
        queue.push(merge(std::move(a), std::move(b)));
    }
    return queue.take();
}

} // namespace orva::bspcsg

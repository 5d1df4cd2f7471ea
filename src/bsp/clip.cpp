// One tree's polygons against another tree.
//
// A list of polygons runs down the tree and is divided at every node. What falls out in front of a node without a front
// child is outside the solid and survives; what falls out behind a node without a back child is inside and is dropped.
// A polygon in a node's plane goes with the side that its own plane faces.
#include "bsp/node.hpp"
#include "geometry/split.hpp"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/partitioner.h>
#include <tbb/task_group.h>

#include <algorithm>

namespace orva::bspcsg {

PolygonList Node::clipPolygonList(PolygonList input) const {
    PolygonList result;
    if (input.empty()) return result;
    result.reserve(input.size());
    Queue<WorkItem<const Node>> queue;
    queue.push({this, std::move(input)});
    while (!queue.empty()) {
        const WorkItem<const Node>& item = queue.front();
        if (item.node == nullptr) {
            result.append(item.polygons);
            queue.pop();
            continue;
        }

        // note: only whether a node exists is asked, never whether its plane is set. Against the plane of an empty
        // tree, all zeros, everything is coplanar and goes behind, where there is no child: an empty tree removes
        // everything.
        const Node& node = *item.node;
        PolygonList frontList;
        PolygonList backList;
        frontList.reserve(item.polygons.size());
        backList.reserve(item.polygons.size());
        splitPolygons(node.plane, item.polygons, frontList, backList, frontList, backList);
        queue.pop();

        // What falls out in front takes its turn in the queue like the rest: that is the order of the result.
        if (!frontList.empty()) queue.push({node.front.get(), std::move(frontList)});
        if (!backList.empty() && node.back) queue.push({node.back.get(), std::move(backList)});
    }
    return result;
}

void clipNodePolygons(Node& node, const Node& other) {
    node.polygons = other.clipPolygonList(std::move(node.polygons));
}

void Node::clipTree(const Node& other) {
    const List<Node*> nodes = collectNodes(0);

    // note: both kinds of work run in contexts of their own. A bound context would let a host that cancels the task in
    // which it called us end the loop early and silently, with half a solid; and heavy tasks are first spawned inside
    // the loop, whose context they must outlive. The threads that help compute with the caller's floating-point
    // settings.
    const auto traits = tbb::task_group_context::default_traits | tbb::task_group_context::fp_settings;
    tbb::task_group_context loopContext(tbb::task_group_context::isolated, traits);
    tbb::task_group_context heavyContext(tbb::task_group_context::isolated, traits);
    tbb::task_group heavyNodes(heavyContext);

    // Few long runs of nodes, at most halves of the list; the heavy nodes are taken out of them and spread as tasks.
    const std::size_t grain = std::max<std::size_t>(nodes.size() / 2, 1);
    try {
        tbb::parallel_for(
            tbb::blocked_range<std::size_t>(0, nodes.size(), grain),
            [&](const tbb::blocked_range<std::size_t>& run) {
                for (std::size_t i = run.begin(); i != run.end(); ++i) {
                    Node* node = nodes[i];
                    if (node->polygons.size() > NODE_TASK_THRESHOLD) {
                        heavyNodes.run([node, &other] { clipNodePolygons(*node, other); });
                    } else {
                        clipNodePolygons(*node, other);
                    }
                }
            },
            tbb::auto_partitioner(), loopContext);
    } catch (...) {
        // No task may outlive the call. What a cancelled one throws is dropped: the first failure is on its way
        // already.
        heavyNodes.cancel();
        try {
            heavyNodes.wait();
        } catch (...) {
        }
        throw;
    }
    heavyNodes.wait();
}

} // namespace orva::bspcsg

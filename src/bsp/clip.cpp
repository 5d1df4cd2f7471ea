// One tree's polygons against another tree.
//
// A list of polygons runs down the tree and is divided at every node. What falls out in front of a node without a front
// child is outside the solid and survives; what falls out behind a node without a back child is inside and is dropped.
// A polygon in a node's plane goes with the side that its own plane faces.
#include "bsp/node.hpp"
#include "bsp/sift.hpp"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/partitioner.h>
#include <tbb/task_group.h>

#include <algorithm>

namespace orva::bspcsg {

namespace {

// Sends all polygons of the sifter down the tree and calls take(polygon, rank) for each that survives, in the order in
// which they fall out.
template <typename Take> void clip(Sifter& sifter, const Node& tree, Take take) {
    List<WorkItem<const Node>> level;
    List<WorkItem<const Node>> nextLevel;
    level.push_back({&tree, sifter.start()});
    while (!level.empty()) {
        for (const auto& [node, part] : level) {
            // What falls out in front takes its turn in the queue like the rest: that is the order of the result.
            if (node == nullptr) {
                sifter.forEach(part, take);
                continue;
            }
            // note: only whether a node exists is asked, never whether its plane is set. Against the plane of an empty
            // tree, all zeros, everything is coplanar and goes behind, where there is no child: an empty tree removes
            // everything.
            const Sifter::Parts parts = sifter.divide(node->plane, part, {.dropBack = node->back == nullptr});
            if (parts.front.count > 0) nextLevel.push_back({node->front.get(), parts.front});
            if (parts.back.count > 0) nextLevel.push_back({node->back.get(), parts.back});
        }
        std::swap(level, nextLevel);
        nextLevel.clear();
        sifter.descend();
    }
}

// Clips the polygons of many nodes as one list. Each node's own walk would visit the other tree in the common order,
// restricted to the nodes that it reaches; so what falls out, taken in that order and handed back to its owner, is for
// every node the list that it would have got alone.
void clipNodes(const List<Node*>& nodes, const Node& other) {
    std::size_t count = 0;
    for (const Node* node : nodes) count += node->polygons.size();
    PolygonList all;
    List<Node*> owners; // by rank
    all.reserve(count);
    owners.reserve(count);
    for (Node* node : nodes) {
        for (Polygon& polygon : node->polygons) {
            all.push_back(std::move(polygon));
            owners.push_back(node);
        }
        node->polygons.clear();
    }
    Sifter sifter(std::move(all));
    clip(sifter, other,
         [&](Polygon& polygon, std::uint32_t rank) { owners[rank]->polygons.push_back(std::move(polygon)); });
}

} // namespace

PolygonList Node::clipPolygonList(PolygonList input) const {
    PolygonList result;
    if (input.empty()) return result;
    result.reserve(input.size());
    Sifter sifter(std::move(input));
    clip(sifter, *this, [&](Polygon& polygon, std::uint32_t) { result.push_back(std::move(polygon)); });
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
                List<Node*> lightNodes;
                lightNodes.reserve(run.size());
                for (std::size_t i = run.begin(); i != run.end(); ++i) {
                    Node* node = nodes[i];
                    if (node->polygons.size() > NODE_TASK_THRESHOLD) {
                        heavyNodes.run([node, &other] { clipNodePolygons(*node, other); });
                    } else {
                        lightNodes.push_back(node);
                    }
                }
                clipNodes(lightNodes, other);
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

// Polygons into a tree.
//
// A list enters at the root. At each node it is divided by the node's plane: what lies in the plane stays, the rest
// goes on to the two children, which are made where they are missing. The queue is first in, first out, so the tree
// grows level by level.
#include "bsp/node.hpp"
#include "geometry/split.hpp"

#include <cmath>

namespace orva::bspcsg {

namespace {

// A NaN component counts as not set, too; an infinite one as set.
bool isSet(const Plane& plane) {
    return std::abs(plane.normal.x) >= EPSILON || std::abs(plane.normal.y) >= EPSILON ||
           std::abs(plane.normal.z) >= EPSILON;
}

Node& childAt(NodePtr& child) {
    if (child == nullptr) child = std::make_unique<Node>();
    return *child;
}

} // namespace

void Node::build(PolygonList input) {
    if (input.empty()) return;
    Queue<WorkItem<Node>> queue;
    queue.push({this, std::move(input)});
    while (!queue.empty()) {
        const WorkItem<Node>& item = queue.front();
        Node& node = *item.node;
        const PolygonList& list = item.polygons;

        // The first polygon to reach a node without a plane gives it its own and stays there.
        // note: it stays unclassified. A needle-thin or very large triangle can have a corner farther than EPSILON from
        // the plane computed for it; classified, it would go on to a new child, which takes the same plane, without
        // end.
        std::size_t placed = 0;
        if (!isSet(node.plane)) {
            node.plane = list.front().plane;
            node.polygons.push_back(list.front());
            placed = 1;
        }

        PolygonList frontList;
        PolygonList backList;
        frontList.reserve(list.size());
        backList.reserve(list.size());
        for (std::size_t i = placed; i < list.size(); ++i) {
            splitPolygon(node.plane, list[i], node.polygons, node.polygons, frontList, backList);
        }
        queue.pop();

        if (!frontList.empty()) queue.push({&childAt(node.front), std::move(frontList)});
        if (!backList.empty()) queue.push({&childAt(node.back), std::move(backList)});
    }
}

} // namespace orva::bspcsg

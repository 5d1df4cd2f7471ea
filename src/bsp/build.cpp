// Polygons into a tree.
//
// A list enters at the root. At each node it is divided by the node's plane: what lies in the plane stays, the rest
// goes on to the two children, which are made where they are missing. The queue is first in, first out, so the tree
// grows level by level.
#include "bsp/node.hpp"
#include "bsp/sift.hpp"

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
    Sifter sifter(std::move(input));
    List<WorkItem<Node>> level;
    List<WorkItem<Node>> nextLevel;
    level.push_back({this, sifter.start()});
    while (!level.empty()) {
        for (const auto& [node, part] : level) {
            // The first polygon to reach a node without a plane gives it its own and stays there.
            // note: it stays unclassified. A needle-thin or very large triangle can have a corner farther than EPSILON
            // from the plane computed for it; classified, it would go on to a new child, which takes the same plane,
            // without end.
            const bool takesPlane = !isSet(node->plane);
            if (takesPlane) node->plane = sifter.first(part).plane;

            const Sifter::Parts parts =
                sifter.divide(node->plane, part, {.keepFirst = takesPlane, .keepCoplanar = true});
            PolygonList& staying = node->polygons; // Clang 14's lambdas cannot capture `node`, the name of a binding
            sifter.forEachKept([&](Polygon& polygon, std::uint32_t) { staying.push_back(std::move(polygon)); });
            if (parts.front.count > 0) nextLevel.push_back({&childAt(node->front), parts.front});
            if (parts.back.count > 0) nextLevel.push_back({&childAt(node->back), parts.back});
        }
        std::swap(level, nextLevel);
        nextLevel.clear();
        sifter.descend();
    }
}

} // namespace orva::bspcsg

// Inside out, and the polygons back into a list.
#include "bsp/node.hpp"

#include <utility>

namespace orva::bspcsg {

namespace {

std::size_t countPolygons(const Node& tree) {
    std::uint32_t count = 0;
    tree.countElements(nullptr, &count, nullptr);
    return count;
}

// Calls visit(node) for every node, breadth-first.
template <typename NodeType, typename Visit> void walk(NodeType* root, Visit visit) {
    Queue<NodeType*> queue;
    queue.push(root);
    while (!queue.empty()) {
        NodeType* node = queue.take();
        visit(*node);
        if (node->front) queue.push(node->front.get());
        if (node->back) queue.push(node->back.get());
    }
}

} // namespace

void Node::invert() {
    walk(this, [](Node& node) {
        for (Polygon& polygon : node.polygons) flip(polygon);
        node.plane = flipped(node.plane);
        std::swap(node.front, node.back);
    });
}

PolygonList Node::collectPolygons(std::int32_t expectedCount) const {
    PolygonList collected;
    collected.reserve(expectedCount < 1 ? countPolygons(*this) : static_cast<std::size_t>(expectedCount));
    walk(this, [&collected](const Node& node) { collected.append(node.polygons); });
    return collected;
}

PolygonList Node::takePolygons() {
    PolygonList taken;
    taken.reserve(countPolygons(*this));
    walk(this, [&taken](Node& node) {
        for (Polygon& polygon : node.polygons) taken.push_back(std::move(polygon));
        node.polygons = PolygonList(); // with its storage
    });
    // What is built next takes the place of the nodes, instead of standing beside them.
    front.reset();
    back.reset();
    return taken;
}

} // namespace orva::bspcsg

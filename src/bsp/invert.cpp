// Inside out, and the polygons back into a list.
#include "bsp/node.hpp"

#include <utility>

namespace orva::bspcsg {

void Node::invert() {
    Queue<Node*> queue;
    queue.push(this);
    while (!queue.empty()) {
        Node* node = queue.take();
        for (Polygon& polygon : node->polygons) flip(polygon);
        node->plane = flipped(node->plane);
        std::swap(node->front, node->back);
        if (node->front) queue.push(node->front.get());
        if (node->back) queue.push(node->back.get());
    }
}

PolygonList Node::collectPolygons(std::int32_t expectedCount) const {
    PolygonList collected;
    std::size_t capacity = 0;
    if (expectedCount < 1) {
        std::uint32_t counted = 0;
        countElements(nullptr, &counted, nullptr);
        capacity = counted;
    } else {
        capacity = static_cast<std::size_t>(expectedCount);
    }
    collected.reserve(capacity);

    Queue<const Node*> queue;
    queue.push(this);
    while (!queue.empty()) {
        const Node* node = queue.take();
        collected.append(node->polygons);
        if (node->front) queue.push(node->front.get());
        if (node->back) queue.push(node->back.get());
    }
    return collected;
}

} // namespace orva::bspcsg

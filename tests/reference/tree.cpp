// Every walk is breadth-first, the front child before the back child: the order of a walk is the order of its result.
#include "reference.hpp"

#include <cmath>
#include <queue>
#include <utility>

namespace orva::reference {

namespace {

bool isSet(const Plane& plane) {
    return std::abs(plane.normal.x) >= EPSILON || std::abs(plane.normal.y) >= EPSILON ||
           std::abs(plane.normal.z) >= EPSILON;
}

// Every node, breadth-first.
template <typename AnyNode> std::vector<AnyNode*> nodesOf(AnyNode& tree) {
    std::vector<AnyNode*> nodes{&tree};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        AnyNode* node = nodes[i];
        if (node->front) nodes.push_back(node->front.get());
        if (node->back) nodes.push_back(node->back.get());
    }
    return nodes;
}

} // namespace

Node::~Node() {
    if (!front && !back) return;
    std::vector<Tree> detached;
    detached.push_back(std::move(front));
    detached.push_back(std::move(back));
    while (!detached.empty()) {
        const Tree node = std::move(detached.back());
        detached.pop_back();
        if (node == nullptr) continue;
        detached.push_back(std::move(node->front));
        detached.push_back(std::move(node->back));
    }
}

// A node without a plane takes that of the first polygon to reach it. This polygon stays there without being
// classified, for rounding can put a sliver's corner off its own plane; the others stay where they are coplanar and go
// on to the children where they are not.
void build(Node& tree, const PolygonList& polygons) {
    if (polygons.empty()) return;
    std::queue<std::pair<Node*, PolygonList>> queue;
    queue.emplace(&tree, polygons);
    while (!queue.empty()) {
        Node& node = *queue.front().first;
        const PolygonList& list = queue.front().second;
        std::size_t next = 0;
        if (!isSet(node.plane)) {
            node.plane = list[0].plane;
            node.polygons.push_back(list[0]);
            next = 1;
        }
        PolygonList front;
        PolygonList back;
        for (; next < list.size(); ++next) {
            splitPolygon(node.plane, list[next], node.polygons, node.polygons, front, back);
        }
        queue.pop();
        if (!front.empty()) {
            if (!node.front) node.front = std::make_unique<Node>();
            queue.emplace(node.front.get(), std::move(front));
        }
        if (!back.empty()) {
            if (!node.back) node.back = std::make_unique<Node>();
            queue.emplace(node.back.get(), std::move(back));
        }
    }
}

// What arrives in front of a node that has no front child is kept; behind a node that has no back child it is dropped.
// What is kept waits for its turn in the queue like all the rest.
PolygonList clipPolygonList(const Node& tree, const PolygonList& polygons) {
    PolygonList kept;
    if (polygons.empty()) return kept;
    std::queue<std::pair<const Node*, PolygonList>> queue;
    queue.emplace(&tree, polygons);
    while (!queue.empty()) {
        const Node* node = queue.front().first;
        const PolygonList& list = queue.front().second;
        if (node == nullptr) {
            kept.insert(kept.end(), list.begin(), list.end());
            queue.pop();
            continue;
        }
        PolygonList front;
        PolygonList back;
        for (const Polygon& polygon : list) splitPolygon(node->plane, polygon, front, back, front, back);
        queue.pop();
        if (!front.empty()) queue.emplace(node->front.get(), std::move(front));
        if (!back.empty() && node->back) queue.emplace(node->back.get(), std::move(back));
    }
    return kept;
}

void clipTree(Node& tree, const Node& other) {
    for (Node* node : nodesOf(tree)) node->polygons = clipPolygonList(other, node->polygons);
}

void invert(Node& tree) {
    for (Node* node : nodesOf(tree)) {
        for (Polygon& polygon : node->polygons) polygon = flipped(polygon);
        node->plane = flipped(node->plane);
        std::swap(node->front, node->back);
    }
}

Tree clone(const Node& tree) {
    Tree copy = std::make_unique<Node>();
    std::queue<std::pair<const Node*, Node*>> queue;
    queue.emplace(&tree, copy.get());
    while (!queue.empty()) {
        const auto [from, to] = queue.front();
        queue.pop();
        to->polygons = from->polygons;
        to->plane = from->plane;
        if (from->front) {
            to->front = std::make_unique<Node>();
            queue.emplace(from->front.get(), to->front.get());
        }
        if (from->back) {
            to->back = std::make_unique<Node>();
            queue.emplace(from->back.get(), to->back.get());
        }
    }
    return copy;
}

PolygonList collect(const Node& tree) {
    PolygonList collected;
    for (const Node* node : nodesOf(tree)) {
        collected.insert(collected.end(), node->polygons.begin(), node->polygons.end());
    }
    return collected;
}

} // namespace orva::reference

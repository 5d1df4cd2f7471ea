// Polygons into a tree.
//
// A list enters at the root. At each node it is divided by the node's plane: what lies in the plane stays, the rest
// goes on to the two children, which are made where they are missing. The queue is first in, first out, so the tree
// grows level by level.
#include "bsp/node.hpp"
#include "bsp/sift.hpp"

#include <algorithm>
#include <cmath>
#include <functional>

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

bool isBare(const Node& node) {
    return !isSet(node.plane) && node.front == nullptr && node.back == nullptr;
}

// A polygon that waits for the rest of its list.
struct Waiting {
    Node* node;
    Slot slot;
};

// Divides the part that has reached a node, and what comes of it, and so on. With `waiting`, what reaches a node that
// has nothing yet is put aside there instead.
void grow(Sifter& sifter, Node& root, const Sifter::Part& all, List<Waiting>* waiting) {
    struct Reached {
        Node* node;
        Sifter::Part part;
    };
    List<Reached> work;
    work.push_back({&root, all});
    while (!work.empty()) {
        const auto [node, part] = work.back();
        work.pop_back();
        if (waiting != nullptr && isBare(*node)) {
            sifter.takeAll(part, [&, to = node](const Slot& slot) { waiting->push_back({to, slot}); });
            continue;
        }
        // The first polygon to reach a node without a plane gives it its own and stays there.
        // note: it stays unclassified. A needle-thin or very large triangle can have a corner farther than EPSILON
        // from the plane computed for it; classified, it would go on to a new child, which takes the same plane,
        // without end.
        const bool takesPlane = !isSet(node->plane);
        if (takesPlane) node->plane = sifter.first(part).plane;

        const Sifter::Parts parts = sifter.divide(node->plane, part, {.keepFirst = takesPlane, .keepCoplanar = true});
        if (sifter.keptCount() > 0) {
            node->polygons.reserve(node->polygons.size() + sifter.keptCount());
            sifter.forEachKept([&, to = node](Polygon& polygon) { to->polygons.push_back(std::move(polygon)); });
        }
        if (parts.back.count > 0) work.push_back({&childAt(node->back), parts.back});
        if (parts.front.count > 0) work.push_back({&childAt(node->front), parts.front});
    }
}

} // namespace

void Node::build(PolygonList input) {
    if (input.empty()) return;
    Sifter sifter(std::move(input));
    grow(sifter, *this, sifter.start(), nullptr);
}

void Node::buildIn(Newcomers<double> newcomers) {
    if (newcomers.polygons.empty()) return;
    Sifter sifter(std::move(newcomers.polygons));
    List<Waiting> waiting;
    List<Slot> others;
    sifter.takeAll(sifter.start(), [&](const Slot& slot) {
        Node* place = newcomers.places[slot.rank];
        if (place == nullptr) {
            others.push_back(slot);
        } else {
            waiting.push_back({&childAt(place->front), slot});
        }
    });
    if (!others.empty()) grow(sifter, *this, sifter.put(others.data(), others.data() + others.size()), &waiting);

    // Every list is complete now: all that reach one new node, from here or from there, in the order in which they
    // came.
    std::sort(waiting.begin(), waiting.end(), [](const Waiting& a, const Waiting& b) {
        return a.node != b.node ? std::less<>()(a.node, b.node) : a.slot.rank < b.slot.rank;
    });
    // note: where nodes lie in memory is chance. One after the other by their first polygons, every call does the same.
    struct Run {
        std::size_t begin;
        std::size_t end;
    };
    List<Run> runs;
    for (std::size_t begin = 0, end = 0; begin < waiting.size(); begin = end) {
        while (end < waiting.size() && waiting[end].node == waiting[begin].node) ++end;
        runs.push_back({begin, end});
    }
    std::sort(runs.begin(), runs.end(),
              [&](const Run& a, const Run& b) { return waiting[a.begin].slot.rank < waiting[b.begin].slot.rank; });
    for (const Run& run : runs) {
        others.clear();
        for (std::size_t i = run.begin; i < run.end; ++i) others.push_back(waiting[i].slot);
        grow(sifter, *waiting[run.begin].node, sifter.put(others.data(), others.data() + others.size()), nullptr);
    }
}

} // namespace orva::bspcsg

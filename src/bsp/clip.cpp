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
#include <mutex>

namespace orva::bspcsg {

namespace {

// What falls out of a tree: a polygon of the pool, and the node in front of which it did.
template <typename NodeType> struct Survivor {
    NodeType* place;
    std::uint32_t level;
    std::uint32_t polygon;
    std::uint32_t rank;
};

// Sends all polygons of the sifter down the tree and gives what survives, in the order in which the pieces fall out of
// a breadth-first walk.
template <typename NodeType> List<Survivor<NodeType>> clip(Sifter& sifter, NodeType& tree) {
    List<Survivor<NodeType>> found;
    List<std::uint32_t> begins; // by level: how many before it
    struct Reached {
        NodeType* node;
        Sifter::Part part;
        std::uint32_t level; // the root's is 0
    };
    List<Reached> work;
    work.push_back({&tree, sifter.start(), 0});
    while (!work.empty()) {
        const auto [node, part, level] = work.back();
        work.pop_back();
        // note: only whether a node exists is asked, never whether its plane is set. Against the plane of an empty
        // tree, all zeros, everything is coplanar and goes behind, where there is no child: an empty tree removes
        // everything.
        const Sifter::Parts parts = sifter.divide(node->plane, part, {.dropBack = node->back == nullptr});
        if (parts.back.count > 0) work.push_back({node->back.get(), parts.back, level + 1});
        if (parts.front.count == 0) continue;
        if (node->front != nullptr) {
            work.push_back({node->front.get(), parts.front, level + 1});
            continue;
        }
        // What falls out takes its turn among its level like the rest: that is the order of the result.
        if (begins.size() < level + 2) begins.resize(level + 2);
        begins[level + 1] += parts.front.count;
        sifter.takeAll(parts.front, [&, at = node, on = level](const Slot& slot) {
            found.push_back({at, on, slot.polygon, slot.rank});
        });
    }
    // Both walks visit the nodes of one level in the same order.
    for (std::size_t i = 1; i < begins.size(); ++i) begins[i] += begins[i - 1];
    List<Survivor<NodeType>> survivors;
    survivors.resize(found.size());
    for (const Survivor<NodeType>& survivor : found) survivors[begins[survivor.level]++] = survivor;
    return survivors;
}

// Some nodes of a tree, by their places in the list of all.
using Group = List<std::uint32_t>;

// Polygons as one list, moved out of their nodes, and the place of the node of each.
struct Gathered {
    PolygonList polygons;
    List<std::uint32_t> owners;
};

Gathered gather(const List<Node*>& nodes, const Group& group) {
    std::size_t count = 0;
    for (const std::uint32_t i : group) count += nodes[i]->polygons.size();
    Gathered gathered;
    gathered.polygons.reserve(count);
    gathered.owners.reserve(count);
    for (const std::uint32_t i : group) {
        for (Polygon& polygon : nodes[i]->polygons) {
            gathered.polygons.push_back(std::move(polygon));
            gathered.owners.push_back(i);
        }
        nodes[i]->polygons = PolygonList(); // with its storage
    }
    return gathered;
}

// Clips the polygons of many nodes as one list. Each node's own walk would visit the other tree in the common order,
// restricted to the nodes that it reaches; so what falls out, taken in that order and handed back to its owner, is for
// every node the list that it would have got alone.
void clipNodes(const List<Node*>& nodes, const Group& group, const Node& other) {
    Gathered gathered = gather(nodes, group);
    Sifter sifter(std::move(gathered.polygons));
    for (const auto& survivor : clip(sifter, other)) {
        nodes[gathered.owners[survivor.rank]]->polygons.push_back(std::move(sifter.polygonAt(survivor.polygon)));
    }
}

// A polygon that has been clipped twice.
struct Piece {
    Polygon polygon;
    Node* place; // of which it is certain that it would fall out there again; or null
    std::uint32_t owner;
};

// Clips the polygons of many nodes, turns them around, and clips them again. The lists of different nodes have nothing
// to do with each other, so only those go again of which some polygon would not go the same way.
List<Piece> clipTwice(const List<Node*>& nodes, const Group& group, Node& other, Turn turn) {
    Gathered gathered = gather(nodes, group);
    Sifter sifter(std::move(gathered.polygons));
    const List<Survivor<Node>> survivors = clip(sifter, other);
    List<std::uint8_t> again; // by owner, from the group's first on
    const std::uint32_t first = group.front();
    again.resize(group.back() - first + 1);
    for (const auto& survivor : survivors) {
        if (!sifter.isCertain(survivor.polygon)) again[gathered.owners[survivor.rank] - first] = 1;
    }
    List<Piece> pieces;
    Gathered turned;
    pieces.reserve(survivors.size());
    for (const auto& survivor : survivors) {
        const std::uint32_t owner = gathered.owners[survivor.rank];
        Polygon& polygon = sifter.polygonAt(survivor.polygon);
        const bool goesAgain = again[owner - first] != 0;
        if (goesAgain || turn == Turn::Around) flip(polygon);
        if (goesAgain) {
            ORVA_COUNT(uncertain, 1);
            turned.polygons.push_back(std::move(polygon));
            turned.owners.push_back(owner);
        } else {
            ORVA_COUNT(certain, 1);
            pieces.push_back({std::move(polygon), survivor.place, owner});
        }
    }
    if (turned.polygons.empty()) return pieces;
    Sifter second(std::move(turned.polygons));
    for (const auto& survivor : clip(second, other)) {
        Polygon& polygon = second.polygonAt(survivor.polygon);
        if (turn == Turn::AndBack) flip(polygon);
        Node* const place = second.isCertain(survivor.polygon) ? survivor.place : nullptr;
        pieces.push_back({std::move(polygon), place, turned.owners[survivor.rank]});
    }
    return pieces;
}

// Few long runs of nodes, at most halves of the list, as one group each; nodes with many polygons are taken out of them
// and spread as tasks.
template <typename ClipLight, typename ClipHeavy>
void divideWork(const List<Node*>& nodes, ClipLight clipLight, ClipHeavy clipHeavy) {
    // note: both kinds of work run in contexts of their own. A bound context would let a host that cancels the task in
    // which it called us end the loop early and silently, with half a solid; and heavy tasks are first spawned inside
    // the loop, whose context they must outlive. The threads that help compute with the caller's floating-point
    // settings.
    const auto traits = tbb::task_group_context::default_traits | tbb::task_group_context::fp_settings;
    tbb::task_group_context loopContext(tbb::task_group_context::isolated, traits);
    tbb::task_group_context heavyContext(tbb::task_group_context::isolated, traits);
    tbb::task_group heavyNodes(heavyContext);

    const std::size_t grain = std::max<std::size_t>(nodes.size() / 2, 1);
    try {
        tbb::parallel_for(
            tbb::blocked_range<std::size_t>(0, nodes.size(), grain),
            [&](const tbb::blocked_range<std::size_t>& run) {
                Group light;
                light.reserve(run.size());
                for (std::size_t i = run.begin(); i != run.end(); ++i) {
                    const auto place = static_cast<std::uint32_t>(i);
                    if (nodes[i]->polygons.size() > NODE_TASK_THRESHOLD) {
                        heavyNodes.run([place, &clipHeavy] { clipHeavy(place); });
                    } else {
                        light.push_back(place);
                    }
                }
                if (!light.empty()) clipLight(light);
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

} // namespace

PolygonList Node::clipPolygonList(PolygonList input) const {
    Sifter sifter(std::move(input));
    const auto survivors = clip(sifter, *this);
    PolygonList result;
    result.reserve(survivors.size());
    for (const auto& survivor : survivors) result.push_back(std::move(sifter.polygonAt(survivor.polygon)));
    return result;
}

void clipNodePolygons(Node& node, const Node& other) {
    node.polygons = other.clipPolygonList(std::move(node.polygons));
}

void Node::clipTree(const Node& other) {
    const List<Node*> nodes = collectNodes(0);
    divideWork(
        nodes, [&](const Group& light) { clipNodes(nodes, light, other); },
        [&](std::uint32_t heavy) { clipNodePolygons(*nodes[heavy], other); });
}

Newcomers<double> takeClippedTwice(Node& tree, Node& other, Turn turn) {
    // Breadth-first as the tree is in the end: turned around, its front and back are exchanged.
    const NodePtr Node::*const first = turn == Turn::AndBack ? &Node::front : &Node::back;
    const NodePtr Node::*const second = turn == Turn::AndBack ? &Node::back : &Node::front;
    List<Node*> nodes;
    nodes.push_back(&tree);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        Node* const node = nodes[i];
        if (node->*first != nullptr) nodes.push_back((node->*first).get());
        if (node->*second != nullptr) nodes.push_back((node->*second).get());
    }
    List<List<Piece>> found; // group by group
    std::mutex mutex;
    const auto clipGroup = [&](const Group& group) {
        List<Piece> pieces = clipTwice(nodes, group, other, turn);
        const std::lock_guard<std::mutex> lock(mutex);
        found.push_back(std::move(pieces));
    };
    divideWork(nodes, clipGroup, [&](std::uint32_t heavy) { clipGroup({heavy}); });
    if (turn == Turn::AndBack) { // spent
        tree.front.reset();
        tree.back.reset();
    }

    // Node by node, as they would be taken from the tree. All pieces of a node were made by one thread, in order.
    List<std::uint32_t> begins; // by owner
    begins.resize(nodes.size() + 1);
    for (const List<Piece>& pieces : found) {
        for (const Piece& piece : pieces) ++begins[piece.owner + 1];
    }
    for (std::size_t i = 1; i < begins.size(); ++i) begins[i] += begins[i - 1];
    Newcomers<double> newcomers;
    newcomers.polygons.resize(begins.back());
    newcomers.places.resize(begins.back());
    for (List<Piece>& pieces : found) {
        for (Piece& piece : pieces) {
            const std::uint32_t i = begins[piece.owner]++;
            newcomers.polygons[i] = std::move(piece.polygon);
            newcomers.places[i] = piece.place;
        }
        pieces = {};
    }
    return newcomers;
}

} // namespace orva::bspcsg

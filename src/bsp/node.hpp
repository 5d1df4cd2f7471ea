// The BSP tree of polygons.
//
// A node splits space by its plane. What lies in front belongs to `front`, what lies behind to `back`; where a child is
// missing, space in front is outside the solid and space behind is inside. The polygons at a node are those that lie in
// its plane. A tree is built from the boundary of a solid, polygon by polygon: a node takes the plane of the first one
// that reaches it. There is no search for a good plane and no balancing, so the tree of a convex mesh of n triangles is
// a chain of n nodes.
//
// Every walk over a tree is breadth-first, the front child before the back child, with a queue of its own and never by
// recursion: the walks fix the order of every result, and depth is bounded by memory alone.
//
//     node.cpp    the life of a tree: copying, counting, listing, freeing
//     sift.cpp    polygons on their way down a tree: which of them go where
//     build.cpp   polygons into a tree
//     clip.cpp    one tree's polygons against another tree
//     invert.cpp  inside out, and the polygons back into a list
#pragma once

#include "geometry/records.hpp"

#include <cstdint>
#include <memory>

namespace orva::bspcsg {

/// One node and, through its children, the tree below it; double precision only.
///
/// Thread safety: a tree may be read by many threads at once; while it is changed it belongs to one.
template <typename T> struct CSGNode;

/// Polygons on their way into a tree, and for each of them the node in front of which it is known to end up, one
/// without a front child; null where nothing is known.
template <typename T> struct Newcomers;

template <> struct CSGNode<double> {
    std::unique_ptr<CSGNode> front;
    std::unique_ptr<CSGNode> back;
    PolygonList polygons; ///< in the plane, of either facing, in the order in which they arrived
    Plane plane;          ///< counts as not set while all components of its normal are below EPSILON or NaN

    CSGNode() = default;
    CSGNode(const CSGNode&) = delete;
    CSGNode& operator=(const CSGNode&) = delete;
    /// Frees the whole tree, without recursion and without taking memory.
    ~CSGNode();

    static void* operator new(std::size_t bytes);
    static void operator delete(void* memory) noexcept;

    // ---- node.cpp ----

    /// A deep copy on the heap.
    [[nodiscard]] std::unique_ptr<CSGNode> clone() const;

    /// Writes the number of nodes, of polygons, and of the polygons' vertices; a null pointer is not written. The
    /// counts wrap at 2^32.
    void countElements(std::uint32_t* nodeCount, std::uint32_t* polygonCount, std::uint32_t* vertexCount) const;

    /// Every node, breadth-first from this one. `expectedCount` is the capacity to reserve; below 1 it is counted.
    [[nodiscard]] List<CSGNode*> collectNodes(std::int32_t expectedCount);

    // ---- build.cpp ----

    /// Inserts a polygon list, growing the tree as needed; the list is spent. An empty list changes nothing.
    /// On failure the tree is well formed and keeps what was placed by then.
    void build(PolygonList polygons);

    /// The same, to the last bit, for polygons of which it is known in part where they go.
    void buildIn(Newcomers<double> newcomers);

    // ---- clip.cpp ----

    /// What of the polygons lies outside this tree's solid, in the order in which the pieces fall out of the tree.
    [[nodiscard]] PolygonList clipPolygonList(PolygonList polygons) const;

    /// Clips the polygons of every node of this tree against another tree, on the task scheduler's threads.
    /// On failure every node holds its old list, its clipped list, or nothing.
    void clipTree(const CSGNode& other);

    // ---- invert.cpp ----

    /// Turns the solid inside out, in place. Twice restores every bit.
    void invert();

    /// Copies of all polygons, breadth-first. `expectedCount` is the capacity to reserve; below 1 it is counted.
    [[nodiscard]] PolygonList collectPolygons(std::int32_t expectedCount) const;

    /// The same polygons in the same order, moved out of a tree that is spent: its root is all that is left of it.
    [[nodiscard]] PolygonList takePolygons();
};

template <> struct Newcomers<double> {
    PolygonList polygons;
    List<CSGNode<double>*> places;
};

using Node = CSGNode<double>;
using NodePtr = std::unique_ptr<Node>;

/// Nodes with more polygons than this are clipped as tasks of their own, so that a heavy one does not hold up the run
/// of nodes that it stands in. About a millisecond of work: well above the cost of a task, well below that of a mesh.
inline constexpr std::size_t NODE_TASK_THRESHOLD = 1024;

/// Makes the new, empty node `target` a deep copy of the tree at `source`.
void copyInto(const Node& source, Node& target);

/// How a tree is turned around between two clippings: for good, or back again after the second.
enum class Turn { Around, AndBack };

/// The polygons that tree.clipTree(other), tree.invert(), tree.clipTree(other) and, for Turn::AndBack, tree.invert()
/// would leave in a tree, taken out of it in order. After Turn::Around its planes are as before, after Turn::AndBack
/// its root is all that is left of it. Of almost all polygons it is known after the first clipping where they end up
/// after the second, and in other.buildIn.
Newcomers<double> takeClippedTwice(Node& tree, Node& other, Turn turn);

/// The step of clipTree for one node.
void clipNodePolygons(Node& node, const Node& other);

} // namespace orva::bspcsg

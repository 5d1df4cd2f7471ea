// Polygons on their way down a tree: who goes to which side of a plane, for many polygons and many planes.
//
// The plain way. build and clipPolygonList send a list of polygons down a tree, level by level, and divide it at every
// node. Most of that work moves polygons that lie wholly on one side; a tree of n faces of a convex solid is a chain of
// n nodes, so n polygons make n * n / 2 such steps for a few thousand real cuts. Three things make them cheap here, and
// none of them changes a bit or an order.
//
// Polygons stay where they are. They lie in one pool, and what travels is a slot of 32 bytes: a box around the polygon,
// its place in the pool, and its rank, the place it had in the list that came in. The slots of one level of the tree
// lie behind each other in one array, in the order of the queue; the next level is written into another. Nothing is
// copied and no memory is taken for going whole to one side.
//
// Boxes decide. Rounding is monotone: a <= b gives round(a) <= round(b). So the very expression of the signed distance,
// evaluated at the corner of the box that is farthest along the normal, is an upper bound of the distance computed for
// every vertex inside, without any margin for error; likewise the nearest corner. If even the farthest one is behind
// the plane by more than the tolerance, the polygon is Back; its vertices are read only where the box says nothing. A
// box around anything that is not a number is not a number either, every comparison with it fails, and the vertices
// decide.
//
// Slabs decide where boxes are too thick. A plane that touches a smooth surface passes through the boxes of all patches
// in its neighbourhood, some sqrt(n) of them, but over all except a few of the patches themselves. So a hierarchy also
// knows the extent of what lies below an entry along its mean normal d. A plane's normal n is (n . d) d plus a
// remainder, small where the two are almost parallel: the slab bounds the first part, the box the second. Here the
// argument of monotone rounding does not hold, and a margin far above all rounding errors of the two computations takes
// its place.
//
// Long lists are hierarchies. A list that is still long after a number of planes becomes a binary tree of boxes instead
// of an array of slots. (Making one costs about as much as walking the list past that many planes, so in the worst case
// it costs as much again as it could have saved; a list that falls apart, or meets a small tree, never pays for one.) A
// plane divides it into two of the same kind: an entry whose box lies on one side goes there as a whole, and only
// entries that the plane touches are opened, so a step costs about as much as the plane meets polygons. What is opened
// is joined again on its way back, with tight boxes, and never becomes deeper. A polygon leaves at most one piece on
// either side of a plane, so in any list a rank occurs once, and order is kept by ranks: the first polygon of a list is
// the one of the smallest rank, and a list that has become short is written out as slots sorted by rank.
#pragma once

#include "geometry/split.hpp"

#include <array>
#include <utility>

namespace orva::bspcsg {

/// When a list becomes a hierarchy. A middle way, measured on unions: with 24 polygons instead of 48 spheres take a
/// tenth and the elephant a fifth longer, with 96 spheres a fifth; with 8 planes instead of 16 the elephant takes a
/// third longer and the wall in turn half as much again, with 32 the elephant a third less and spheres a third more.
struct HierarchyThresholds {
    std::uint32_t polygons = 48; ///< it has at least so many
    std::uint32_t planes = 16;   ///< and has been walked past so many planes
};

/// A box around a polygon: low x, y, z, high x, y, z, rounded outward; all NaN around what has no box.
struct Bounds {
    std::array<float, 6> side;
};

Bounds boundsOf(const Polygon& polygon);

/// The extent of polygons along one direction, of about unit length: for a patch of a smooth surface, whose box is as
/// thick as it is wide, a slab along its mean normal is thinner by its size.
struct Slab {
    std::array<float, 3> direction;
    float low;
    float high;
};

/// A polygon of the pool on its way.
struct Slot {
    Bounds box;
    std::uint32_t rank;    ///< its place in the order of the list that came in
    std::uint32_t polygon; ///< its place in the pool
};

/// The pool, the levels, and the division of lists.
class Sifter {
public:
    /// A list of polygons that have reached one node: a run of slots, or a hierarchy.
    struct Part {
        std::uint32_t count = 0;
        std::uint32_t begin = 0;
        std::uint32_t root = NONE;
        std::uint32_t planes = 0; ///< walked past as slots
    };
    struct Parts {
        Part front;
        Part back;
    };
    /// What a division does beside telling front from back.
    struct Rules {
        bool keepFirst = false;    ///< the first polygon stays, unclassified
        bool keepCoplanar = false; ///< coplanar polygons stay; otherwise they go with the side that they face
        bool dropBack = false;     ///< nothing is made of what lies behind
    };

    /// Takes over a list; the thresholds are there for the tests, which force either way.
    explicit Sifter(PolygonList polygons, HierarchyThresholds thresholds = {});

    /// All polygons, as a part of the first level.
    Part start();

    /// The first polygon of a part that is not empty.
    const Polygon& first(const Part& part) const;

    /// Divides a part of the present level into two of the next level. What stays is handed out by `forEachKept`.
    Parts divide(const Plane& plane, const Part& part, Rules rules);

    /// Calls take(polygon, rank) for what stayed in the last division, in order; the polygon may be moved from.
    template <typename Take> void forEachKept(Take take) {
        for (const Slot& slot : kept_) take(pool_[slot.polygon], slot.rank);
    }

    /// Calls take(polygon, rank) for all of a part of the present level, in order; the polygon may be moved from.
    template <typename Take> void forEach(const Part& part, Take take) {
        const std::uint32_t begin = part.root == NONE ? part.begin : appendSorted(part.root, here_);
        for (std::uint32_t i = begin; i < begin + part.count; ++i) take(pool_[here_[i].polygon], here_[i].rank);
    }

    /// The next level becomes the present one.
    void descend();

private:
    static constexpr std::uint32_t NONE = 0xFFFFFFFFU;

    // An inner entry of a hierarchy, or, with a count of 1, one polygon.
    struct Entry {
        Bounds box;
        Slab slab;
        std::uint32_t rank;  // the smallest one below
        std::uint32_t count; // polygons below
        std::uint32_t left;  // of one polygon: its place in the pool
        std::uint32_t right;
    };
    struct Division;
    struct Halves {
        std::uint32_t front = NONE;
        std::uint32_t back = NONE;
    };

    void divideSlots(const Division& division, const Part& part, Parts& parts);
    Halves divideEntry(Division& division, std::uint32_t entry);
    PolygonSide sideOf(const Division& division, std::uint32_t polygon);
    void cut(const Division& division, const Slot& slot, Slot& front, Slot& back);
    Part partOf(std::uint32_t root);

    std::uint32_t makeHierarchy(Slot* begin, Slot* end);
    std::uint32_t newEntry(const Entry& entry);
    void freeEntry(std::uint32_t entry);
    std::uint32_t joined(std::uint32_t left, std::uint32_t right);
    std::uint32_t rejoined(std::uint32_t left, std::uint32_t right, const Slab& slab, bool stillHolds);
    Entry leafOf(const Slot& slot) const;
    std::uint32_t appendSorted(std::uint32_t root, List<Slot>& slots);

    PolygonList pool_;
    HierarchyThresholds thresholds_;
    List<Slot> here_;
    List<Slot> next_;
    List<Slot> behind_; // of the part being divided: what goes to the back, until the front is complete
    List<Slot> kept_;
    List<Entry> entries_;
    std::uint32_t freeEntries_ = NONE; // chained by `left`
    List<std::uint32_t> open_;         // for walking a hierarchy
    List<Vertex> frontPiece_;
    List<Vertex> backPiece_;
    List<PolygonSide> sides_;
};

/// A node and the polygons that have reached it: the entry of the work queues of build and clipPolygonList. A queue is
/// kept as two lists, the level being walked and the next one, which is the same order.
template <typename Node> struct WorkItem {
    Node* node; ///< null in clipPolygonList where a child is missing
    Sifter::Part polygons;
};

} // namespace orva::bspcsg

// Polygons on their way down a tree: who goes to which side of a plane, for many polygons and many planes.
//
// The plain way. build and clipPolygonList send a list of polygons down a tree and divide it at every node. Most of
// that work moves polygons that lie wholly on one side; a tree of n faces of a convex solid is a chain of n nodes, so n
// polygons make n * n / 2 such steps for a few thousand real cuts. Four things make them cheap here, and none of them
// changes a bit or an order.
//
// Polygons stay where they are. They lie in one pool, and what travels is a slot of 32 bytes: a box around the polygon,
// its place in the pool, and its rank, the place it had in the list that came in. The walks go down into the front
// child of a node before its back child, so all slots lie in one stack, the list to be divided next on top: its back
// half stays where it is, its front half goes on top of that. Nothing is copied and no memory is taken for going whole
// to one side, and what is worked on is what was touched last. (Node by node the lists are those of the breadth-first
// walk, and their order with them; where the order between nodes is seen, in clipPolygonList, it is restored by level.)
//
// Boxes decide, in single precision and with a margin. The distance of a box from a plane, less its half extent along
// the normal, bounds the distances of its vertices. All is relative to an origin among the polygons, so that the
// floats resolve the solid and not its place in the world. Let r be the largest sum of |middle| + half extent of any
// component, f the plane's offset at the origin, u = 2^-24, and the normal of length 0.995 to 1.005: a bound is a sum
// of some ten products whose absolute values add up to less than 7.1 r + |f|, each rounded once and added with at most
// nine roundings, so it is off by less than 64 u r + 11 u r for the rounded normals + 10 u |f|, or twice that where the
// caller does not round to the nearest. 2^-16 (r + |f|) is beyond that; 1e-14 times the absolute coordinates is beyond
// the rounding of the distances that the vertices themselves are judged by. Only a bound that clears the tolerance and
// this margin decides; all else is decided by the vertices, in double precision and exactly as for a list of one. A box
// around anything that is not a number, or beyond 1e30, is not a number, every comparison with it fails, and the
// vertices decide; likewise for planes without a normal of about unit length.
//
// Slabs decide where boxes are too thick. A plane that touches a smooth surface passes through the boxes of all patches
// in its neighbourhood, some sqrt(n) of them, but over all except a few of the patches themselves. So a hierarchy also
// knows the extent of what lies below an entry along its mean normal d. A plane's normal n is (n . d) d plus a
// remainder, small where the two are almost parallel: the slab bounds the first part, the box the second.
//
// Long lists are hierarchies. A long list that one plane after the other leaves whole, or nearly so, becomes a tree of
// such bounds, four to an entry, so that one step of vector arithmetic judges four. (Only such a list gains: one that
// is halved by every plane is short before its tree would have paid. Making one costs about as much as walking the list
// past that many planes, so in the worst case it costs as much again as it could have saved.) A plane divides it into
// two of the same kind: what lies on one side as a whole goes there as a whole, and only entries that the plane touches
// are opened, so a step costs about as much as the plane meets polygons. A polygon leaves at most one piece on either
// side of a plane, so in any list a rank occurs once, and order is kept by ranks: the first polygon of a list is the
// one of the smallest rank, and a list that has become short is written out as slots sorted by rank.
//
// What is certain need not be asked again. The recipes send the same polygons through the same tree three times: clip
// them, clip them turned around, and build them in. A plane would do with a polygon what it did before, unless it was
// in the plane, where its facing counts; and with a piece of it likewise, if bounds had sent the whole to one side with
// their margin, for new corners lie between old ones but for some rounding. The few planes of which that cannot be said
// are noted for each polygon; once it has fallen out, its corners are held against them, and only what fails goes
// again.
#pragma once

#include "geometry/split.hpp"

#include <array>
#include <utility>

// Tests build the library with other ones, to send whole operations one way or the other.
#ifndef ORVA_HIERARCHY_POLYGONS
#define ORVA_HIERARCHY_POLYGONS 150
#endif
#ifndef ORVA_HIERARCHY_PLANES
#define ORVA_HIERARCHY_PLANES 24
#endif

// And count with it which ways were taken, and how much was done on them.
#ifdef ORVA_COUNT_PATHS
#include <atomic>
#define ORVA_COUNT(path, by) orva::bspcsg::pathCounts.path += (by)
#else
#define ORVA_COUNT(path, by) static_cast<void>(0)
#endif

namespace orva::bspcsg {

#ifdef ORVA_COUNT_PATHS
struct PathCounts {
    std::atomic<std::uint64_t> slotDivisions{0};
    std::atomic<std::uint64_t> slots{0}; ///< in those
    std::atomic<std::uint64_t> hierarchyDivisions{0};
    std::atomic<std::uint64_t> entries{0};       ///< opened in those
    std::atomic<std::uint64_t> exactSides{0};    ///< polygons of which the corners were asked
    std::atomic<std::uint64_t> inHierarchies{0}; ///< polygons for which a place in one was made
    std::atomic<std::uint64_t> stacked{0};       ///< slots on the stack, at every division
    std::atomic<std::uint64_t> newEntries{0};    ///< entries for which there was no free one
    std::atomic<std::uint64_t> copiedLanes{0};   ///< from one entry to another, or within one
    std::atomic<std::uint64_t> checks{0};        ///< planes noted, to be asked a second time
    std::atomic<std::uint64_t> askedAgain{0};    ///< of those
    std::atomic<std::uint64_t> certain{0};       ///< polygons that did not have to be clipped a second time
    std::atomic<std::uint64_t> uncertain{0};
};
inline PathCounts pathCounts;
#endif

/// When a list becomes a hierarchy. Measured on unions, in one run: from 64 or 250 polygons on, spheres take a
/// twentieth longer; with 8 planes instead of 24 a torus takes a third and the elephant a tenth longer; counting every
/// plane instead of only those in a row that leave the list nearly whole, the elephant takes a third longer.
struct HierarchyThresholds {
    std::uint32_t polygons = ORVA_HIERARCHY_POLYGONS; ///< it has at least so many
    std::uint32_t planes = ORVA_HIERARCHY_PLANES; ///< and so many planes in a row have left it whole but for an eighth
};

/// A box around a polygon, relative to an origin and rounded outward; all NaN around what has no box.
struct Bounds {
    std::array<float, 3> middle;
    std::array<float, 3> half; ///< the extent to either side of the middle
};

Bounds boundsOf(const Polygon& polygon, const Vec3& origin);

/// A polygon of the pool on its way.
struct Slot {
    Bounds box;
    std::uint32_t rank;    ///< its place in the order of the list that came in
    std::uint32_t polygon; ///< its place in the pool
};

/// The pool, the stack of lists, and their division.
class Sifter {
public:
    /// A list of polygons that have reached one node: a run of slots, or a hierarchy.
    struct Part {
        std::uint32_t count = 0;
        std::uint32_t begin = 0;
        std::uint32_t root = NONE;
        std::uint32_t planes = 0; ///< in a row that have left it nearly whole, as slots
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

    /// All polygons, as the only part.
    Part start();

    /// The first polygon of a part that is not empty.
    const Polygon& first(const Part& part) const;

    /// Divides the part on top of the stack; the front part is then on top, the back part below it. Parts without
    /// polygons do not count. What stays is handed out by `forEachKept`.
    Parts divide(const Plane& plane, const Part& part, Rules rules);

    /// How many polygons stayed in the last division.
    std::size_t keptCount() const { return kept_.size(); }

    /// Calls take(polygon) for what stayed in the last division, in order; the polygon may be moved from.
    template <typename Take> void forEachKept(Take take) {
        for (const Slot& slot : kept_) take(pool_[slot.polygon]);
    }

    /// Takes the part on top off the stack: calls take(slot) for all of it, in order.
    template <typename Take> void takeAll(const Part& part, Take take) {
        const std::uint32_t begin = part.root == NONE ? part.begin : appendSorted(part.root);
        for (std::uint32_t i = begin; i < begin + part.count; ++i) take(slots_[i]);
        slots_.resize(begin);
    }

    /// Puts slots of this sifter on top of the stack, as a part.
    Part put(const Slot* begin, const Slot* end);

    /// Whether it is certain that a polygon of the pool, as it is now, is in none of the planes that it has passed
    /// under rules without `keepCoplanar`, and would go the same way again. That those planes have normals is part of
    /// it.
    bool isCertain(std::uint32_t place) const;

    /// A polygon of the pool; may be moved from.
    Polygon& polygonAt(std::uint32_t place) { return pool_[place]; }

private:
    static constexpr std::uint32_t NONE = 0xFFFFFFFFU;
    static constexpr std::uint32_t WHOLE = 0xFFFFFFFEU;     // what was asked about, unchanged
    static constexpr std::uint32_t UNCERTAIN = 0xFFFFFFFEU; // what nothing is known of
    static constexpr std::uint32_t POLYGON = 0x80000000U;
    static constexpr std::uint32_t LANES = 4;

    // The bounds of up to four children, and what they are: a place in the pool with POLYGON set, or another entry.
    // Rows, not columns: one operation works on all four.
    struct Entry {
        using Row = std::array<float, LANES>;
        std::array<Row, 3> middle;
        std::array<Row, 3> half;
        std::array<Row, 3> direction; // of the slab: of about unit length, or zero where there is none
        Row slabMiddle;
        Row slabHalf;
        std::array<std::uint32_t, LANES> rank;  // the smallest one below
        std::array<std::uint32_t, LANES> count; // polygons below
        std::array<std::uint32_t, LANES> child;
        std::uint32_t lanes;
    };
    // A plane that a polygon or what it was cut from has passed close by, and the side on which it was then. Of what
    // bounds have sent to one side every piece lies within those bounds and would go there, too; but all of a piece can
    // lie within the tolerance of a plane by which the whole was cut or decided corner by corner.
    struct Check {
        Plane plane;
        PolygonSide side;
        std::uint32_t before; // the one before it
    };
    // Of a slot that is to go into a hierarchy.
    struct Centre {
        std::array<float, 3> middle;
        std::uint32_t slot;
    };
    struct Division;
    struct Halves {
        std::uint32_t front = NONE;
        std::uint32_t back = NONE;
    };
    struct Sides {
        std::uint32_t front;
        std::uint32_t back;
    };

    Bounds bound(const Polygon& polygon);
    PolygonSide sideOf(const Division& division, std::uint32_t polygon);
    void addCheck(const Division& division, std::uint32_t polygon, PolygonSide side);
    Halves cut(Division& division, std::uint32_t polygon);

    void divideSlots(Division& division, const Part& part, Parts& parts);

    static Sides sidesOf(const Division& division, const Entry& entry);
    Halves divideEntry(Division& division, std::uint32_t index, bool holdsFirst);
    Halves dividePolygon(Division& division, std::uint32_t index, std::uint32_t lane, bool holdsFirst);
    static std::uint32_t firstOf(const Entry& entry);
    static void copyLane(Entry& target, std::uint32_t to, const Entry& source, std::uint32_t from);
    Part partOf(std::uint32_t root);

    std::uint32_t makeHierarchy(const Part& part);
    static Centre* halve(Centre* begin, Centre* end);
    std::uint32_t makeEntry(Centre* begin, Centre* end);
    std::uint32_t newEntry();
    void freeEntry(std::uint32_t entry);
    void setPolygon(std::uint32_t index, std::uint32_t lane, const Slot& slot);
    void setChild(std::uint32_t index, std::uint32_t lane, std::uint32_t child, bool sameBounds);
    void findBounds(Entry& entry, std::uint32_t lane, const Entry& below) const;
    std::uint32_t appendSorted(std::uint32_t root);

    PolygonList pool_;
    List<Check> checks_;
    List<std::uint32_t> courses_; // by place in the pool: the last of its checks; NONE; or UNCERTAIN
    HierarchyThresholds thresholds_;
    Vec3 origin_{};
    double far_ = 0;  // the largest absolute coordinate of the origin
    float reach_ = 0; // the largest |middle| + half of any component of any box
    List<Slot> slots_;
    List<Slot> ahead_; // of the part being divided: what goes to the front, until the back is complete
    List<Slot> kept_;
    List<Centre> centres_;
    List<Entry> entries_;
    std::uint32_t freeEntries_ = NONE; // chained by the first child
    List<std::uint32_t> open_;         // for walking a hierarchy
    List<Vertex> frontPiece_;
    List<Vertex> backPiece_;
    List<PolygonSide> sides_;
};

} // namespace orva::bspcsg

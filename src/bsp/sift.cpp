#include "bsp/sift.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orva::bspcsg {

namespace {

constexpr Bounds NOWHERE{{NAN, NAN, NAN, NAN, NAN, NAN}};

// One unit in the last place and the smallest normal number outward (a caller may have subnormals flushed): never
// inside the rounded value, cheap, and infinite or not a number beyond the reach of floats.
float below(double value) {
    const auto rounded = static_cast<float>(value);
    return rounded - (std::abs(rounded) * 0x1p-23F + std::numeric_limits<float>::min());
}
float above(double value) {
    const auto rounded = static_cast<float>(value);
    return rounded + (std::abs(rounded) * 0x1p-23F + std::numeric_limits<float>::min());
}

bool isNowhere(const Bounds& box) {
    return std::isnan(box.side[0]);
}

Bounds around(const Bounds& a, const Bounds& b) {
    if (isNowhere(a) || isNowhere(b)) return NOWHERE;
    Bounds box;
    for (std::size_t i = 0; i < 3; ++i) box.side[i] = std::min(a.side[i], b.side[i]);
    for (std::size_t i = 3; i < 6; ++i) box.side[i] = std::max(a.side[i], b.side[i]);
    return box;
}

// Far above the rounding errors of any distance computed here or in the exact classification, which stay below 1e-15 of
// the sum of the absolute values of its terms.
constexpr double MARGIN = 1e-12;

struct Interval {
    double low;
    double high;
};

// The extent of a boxed slab along n, with the margin.
Interval extentAlong(const Vec3& n, const Bounds& box, const Slab& slab) {
    const Vec3 d{slab.direction[0], slab.direction[1], slab.direction[2]};
    const double along = dot(n, d);
    const std::array<double, 3> rest{n.x - along * d.x, n.y - along * d.y, n.z - along * d.z};
    const double first = along * slab.low;
    const double second = along * slab.high;
    Interval extent{std::min(first, second), std::max(first, second)};
    double reach = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double low = rest[i] * box.side[i];
        const double high = rest[i] * box.side[i + 3];
        extent.low += std::min(low, high);
        extent.high += std::max(low, high);
        reach += std::max(std::abs(box.side[i]), std::abs(box.side[i + 3]));
    }
    // Neither direction is longer than 2 where this is asked, so no term above is larger than 6 times the reach.
    const double margin = MARGIN * (std::abs(first) + std::abs(second) + 6 * reach);
    return {extent.low - margin, extent.high + margin};
}

// Whether a normal is of about unit length: only then slabs are asked. NaN and infinity are not.
bool isAboutUnit(const Vec3& n) {
    const double square = dot(n, n);
    return square > 0.5 && square < 2;
}

// A direction for what lies along two others; none (all zeros) where they cancel. With none, a slab says no more than
// its box.
std::array<float, 3> between(const std::array<float, 3>& a, const std::array<float, 3>& b) {
    const double x = double{a[0]} + b[0];
    const double y = double{a[1]} + b[1];
    const double z = double{a[2]} + b[2];
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length < 0.1) return {0, 0, 0};
    return {static_cast<float>(x / length), static_cast<float>(y / length), static_cast<float>(z / length)};
}

bool byRank(const Slot& a, const Slot& b) {
    return a.rank < b.rank;
}

} // namespace

Bounds boundsOf(const Polygon& polygon) {
    if (polygon.vertices.empty()) return NOWHERE;
    Vec3 low = polygon.vertices.front().pos;
    Vec3 high = low;
    bool number = true;
    for (const Vertex& vertex : polygon.vertices) {
        const Vec3& p = vertex.pos;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        number = number && !std::isnan(p.x) && !std::isnan(p.y) && !std::isnan(p.z);
    }
    if (!number) return NOWHERE;
    const Bounds box{{below(low.x), below(low.y), below(low.z), above(high.x), above(high.y), above(high.z)}};
    for (const float side : box.side) {
        if (std::isnan(side)) return NOWHERE; // too far out for a float
    }
    return box;
}

// A plane made ready for boxes: which corner is the farthest along its normal.
struct Sifter::Division {
    Division(const Plane& p, Rules r, std::uint32_t keep)
        : plane(p), rules(r), unit(isAboutUnit(p.normal)), keptRank(keep), farX(p.normal.x >= 0 ? 3 : 0),
          farY(p.normal.y >= 0 ? 4 : 1), farZ(p.normal.z >= 0 ? 5 : 2) {}

    // Front or Back for certain, or Spanning for "the vertices have to say".
    PolygonSide sideOf(const Bounds& box) const {
        const auto& side = box.side;
        const Vec3 farthest{side[farX], side[farY], side[farZ]};
        if (signedDistance(plane, farthest) < -EPSILON) return PolygonSide::Back;
        const Vec3 nearest{side[3 - farX], side[5 - farY], side[7 - farZ]};
        if (signedDistance(plane, nearest) > EPSILON) return PolygonSide::Front;
        return PolygonSide::Spanning;
    }

    PolygonSide sideOf(const Entry& entry) const {
        const PolygonSide side = sideOf(entry.box);
        if (side != PolygonSide::Spanning || !unit) return side;
        const Interval extent = extentAlong(plane.normal, entry.box, entry.slab);
        const double margin = MARGIN * std::abs(plane.w);
        if (extent.high - plane.w + margin < -EPSILON) return PolygonSide::Back;
        if (extent.low - plane.w - margin > EPSILON) return PolygonSide::Front;
        return PolygonSide::Spanning;
    }

    Plane plane;
    Rules rules;
    bool unit;
    std::uint32_t cuts = 0; // polygons cut so far
    std::uint32_t keptRank; // the polygon that stays unclassified; NONE if there is none
    std::size_t farX;
    std::size_t farY;
    std::size_t farZ;
};

Sifter::Sifter(PolygonList polygons, HierarchyThresholds thresholds)
    : pool_(std::move(polygons)), thresholds_(thresholds) {
    toCount(pool_.size());
}

Sifter::Part Sifter::start() {
    const auto count = static_cast<std::uint32_t>(pool_.size());
    here_.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) here_.push_back({boundsOf(pool_[i]), i, i});
    return {count, 0, NONE, 0};
}

void Sifter::descend() {
    std::swap(here_, next_);
    next_.clear();
}

const Polygon& Sifter::first(const Part& part) const {
    if (part.root == NONE) return pool_[here_[part.begin].polygon];
    std::uint32_t entry = part.root;
    while (entries_[entry].count > 1) {
        const Entry& inner = entries_[entry];
        entry = entries_[inner.left].rank == inner.rank ? inner.left : inner.right;
    }
    return pool_[entries_[entry].left];
}

Sifter::Parts Sifter::divide(const Plane& plane, const Part& part, Rules rules) {
    kept_.clear();
    Parts parts;
    std::uint32_t root = part.root;
    if (root == NONE) {
        Slot* slots = here_.data() + part.begin;
        if (part.count < thresholds_.polygons || part.planes < thresholds_.planes) {
            const std::uint32_t keep = rules.keepFirst ? slots->rank : NONE;
            divideSlots(Division(plane, rules, keep), part, parts);
            parts.front.planes = parts.back.planes = part.planes + 1;
            return parts;
        }
        root = makeHierarchy(slots, slots + part.count);
    }
    Division division(plane, rules, rules.keepFirst ? entries_[root].rank : NONE);
    const Halves halves = divideEntry(division, root);
    std::sort(kept_.begin(), kept_.end(), byRank);
    parts.front = partOf(halves.front);
    parts.back = partOf(halves.back);
    return parts;
}

// ---- one polygon ----

PolygonSide Sifter::sideOf(const Division& division, std::uint32_t polygon) {
    const Polygon& exact = pool_[polygon];
    const PolygonSide side = bspcsg::sideOf(division.plane, exact);
    if (side != PolygonSide::Coplanar || division.rules.keepCoplanar) return side;
    return facesAlong(division.plane, exact) ? PolygonSide::Front : PolygonSide::Back;
}

// The front piece takes the polygon's place in the pool, the back piece a new one. A piece of too few vertices leaves
// its slot without a polygon.
void Sifter::cut(const Division& division, const Slot& slot, Slot& front, Slot& back) {
    classifyInto(division.plane, pool_[slot.polygon], sides_);
    cutInto(division.plane, pool_[slot.polygon], sides_, frontPiece_, backPiece_);
    front = back = {NOWHERE, slot.rank, NONE};
    if (!division.rules.dropBack && backPiece_.size() >= 3) {
        Polygon piece{backPiece_, pool_[slot.polygon].plane};
        back.box = boundsOf(piece);
        back.polygon = static_cast<std::uint32_t>(toCount(pool_.size()));
        pool_.push_back(std::move(piece));
    }
    if (frontPiece_.size() >= 3) {
        Polygon& polygon = pool_[slot.polygon];
        polygon.vertices.assign(frontPiece_);
        front.box = boundsOf(polygon);
        front.polygon = slot.polygon;
    }
}

// ---- short lists: a run of slots ----

void Sifter::divideSlots(const Division& division, const Part& part, Parts& parts) {
    behind_.clear();
    parts.front.begin = static_cast<std::uint32_t>(next_.size());
    for (std::uint32_t i = part.begin; i < part.begin + part.count; ++i) {
        const Slot slot = here_[i];
        if (slot.rank == division.keptRank) {
            kept_.push_back(slot);
            continue;
        }
        PolygonSide side = division.sideOf(slot.box);
        if (side == PolygonSide::Spanning) side = sideOf(division, slot.polygon);
        if (side == PolygonSide::Front) {
            next_.push_back(slot);
        } else if (side == PolygonSide::Back) {
            if (!division.rules.dropBack) behind_.push_back(slot);
        } else if (side == PolygonSide::Coplanar) {
            kept_.push_back(slot);
        } else {
            Slot front;
            Slot back;
            cut(division, slot, front, back);
            if (front.polygon != NONE) next_.push_back(front);
            if (back.polygon != NONE) behind_.push_back(back);
        }
    }
    parts.front.count = static_cast<std::uint32_t>(next_.size()) - parts.front.begin;
    parts.back.begin = static_cast<std::uint32_t>(next_.size());
    parts.back.count = static_cast<std::uint32_t>(behind_.size());
    next_.append(behind_);
}

// ---- long lists: a hierarchy ----

Sifter::Halves Sifter::divideEntry(Division& division, std::uint32_t index) {
    const Entry entry = entries_[index];
    if (entry.rank != division.keptRank) {
        const PolygonSide side = division.sideOf(entry);
        if (side == PolygonSide::Front) return {index, NONE};
        if (side == PolygonSide::Back) return {NONE, division.rules.dropBack ? NONE : index};
    }

    if (entry.count > 1) {
        freeEntry(index);
        const std::uint32_t cutsBefore = division.cuts;
        const Halves left = divideEntry(division, entry.left);
        const Halves right = divideEntry(division, entry.right);
        // Fewer of the same polygons stay within the same slab; pieces have new vertices, rounded ones.
        const bool stillHolds = division.cuts == cutsBefore;
        return {rejoined(left.front, right.front, entry.slab, stillHolds),
                rejoined(left.back, right.back, entry.slab, stillHolds)};
    }

    const Slot slot{entry.box, entry.rank, entry.left};
    const PolygonSide side = entry.rank == division.keptRank ? PolygonSide::Coplanar : sideOf(division, slot.polygon);
    if (side == PolygonSide::Front) return {index, NONE};
    if (side == PolygonSide::Back) return {NONE, division.rules.dropBack ? NONE : index};
    freeEntry(index);
    if (side == PolygonSide::Coplanar) {
        kept_.push_back(slot);
        return {};
    }
    Slot front;
    Slot back;
    cut(division, slot, front, back);
    ++division.cuts;
    Halves halves;
    if (front.polygon != NONE) halves.front = newEntry(leafOf(front));
    if (back.polygon != NONE) halves.back = newEntry(leafOf(back));
    return halves;
}

Sifter::Part Sifter::partOf(std::uint32_t root) {
    if (root == NONE) return {};
    const std::uint32_t count = entries_[root].count;
    if (count >= thresholds_.polygons) return {count, 0, root, 0};
    return {count, appendSorted(root, next_), NONE, 0};
}

// Halves at the median of the middles along the longer side: good boxes, and a depth of log2(n).
std::uint32_t Sifter::makeHierarchy(Slot* begin, Slot* end) {
    if (end - begin == 1) return newEntry(leafOf(*begin));
    const auto middleOf = [](const Slot& slot, std::size_t axis) {
        const float middle = slot.box.side[axis] + slot.box.side[axis + 3];
        return std::isfinite(middle) ? middle : 0.0F;
    };
    std::size_t longest = 0;
    float extent = -1;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        float low = std::numeric_limits<float>::max();
        float high = -low;
        for (const Slot* slot = begin; slot != end; ++slot) {
            low = std::min(low, middleOf(*slot, axis));
            high = std::max(high, middleOf(*slot, axis));
        }
        if (high - low > extent) {
            extent = high - low;
            longest = axis;
        }
    }
    Slot* middle = begin + (end - begin) / 2;
    std::nth_element(begin, middle, end,
                     [&](const Slot& a, const Slot& b) { return middleOf(a, longest) < middleOf(b, longest); });
    const std::uint32_t left = makeHierarchy(begin, middle);
    return joined(left, makeHierarchy(middle, end));
}

std::uint32_t Sifter::newEntry(const Entry& entry) {
    if (freeEntries_ == NONE) {
        entries_.push_back(entry);
        return static_cast<std::uint32_t>(entries_.size() - 1);
    }
    const std::uint32_t index = freeEntries_;
    freeEntries_ = entries_[index].left;
    entries_[index] = entry;
    return index;
}

void Sifter::freeEntry(std::uint32_t entry) {
    entries_[entry].left = freeEntries_;
    freeEntries_ = entry;
}

Sifter::Entry Sifter::leafOf(const Slot& slot) const {
    const Polygon& polygon = pool_[slot.polygon];
    Slab slab{{0, 0, 0}, 0, 0};
    if (isAboutUnit(polygon.plane.normal) && !isNowhere(slot.box)) {
        const Vec3& n = polygon.plane.normal;
        slab.direction = {static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z)};
        const Vec3 d{slab.direction[0], slab.direction[1], slab.direction[2]};
        Interval extent{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
        double reach = 0;
        for (const Vertex& vertex : polygon.vertices) {
            const double along = dot(d, vertex.pos);
            extent = {std::min(extent.low, along), std::max(extent.high, along)};
            reach = std::max(reach, std::abs(vertex.pos.x) + std::abs(vertex.pos.y) + std::abs(vertex.pos.z));
        }
        slab.low = below(extent.low - MARGIN * reach);
        slab.high = above(extent.high + MARGIN * reach);
    }
    return {slot.box, slab, slot.rank, 1, slot.polygon, NONE};
}

std::uint32_t Sifter::joined(std::uint32_t left, std::uint32_t right) {
    const Slab slab{between(entries_[left].slab.direction, entries_[right].slab.direction), 0, 0};
    return rejoined(left, right, slab, false);
}

// Two hierarchies as one. `slab` is taken as it is where it still holds what is below, otherwise only its direction.
std::uint32_t Sifter::rejoined(std::uint32_t left, std::uint32_t right, const Slab& slab, bool stillHolds) {
    if (left == NONE) return right;
    if (right == NONE) return left;
    const Entry& a = entries_[left];
    const Entry& b = entries_[right];
    Entry entry{around(a.box, b.box), slab, std::min(a.rank, b.rank), a.count + b.count, left, right};
    if (!stillHolds) {
        const Vec3 d{slab.direction[0], slab.direction[1], slab.direction[2]};
        const Interval extentA = extentAlong(d, a.box, a.slab);
        const Interval extentB = extentAlong(d, b.box, b.slab);
        // note: what is not a number on either side has to stay so. A minimum would drop it, and the slab would promise
        // something of polygons that it never saw.
        const bool known = extentA.low <= extentA.high && extentB.low <= extentB.high;
        entry.slab.low = known ? below(std::min(extentA.low, extentB.low)) : NAN;
        entry.slab.high = known ? above(std::max(extentA.high, extentB.high)) : NAN;
    }
    return newEntry(entry);
}

// The polygons of a hierarchy as slots in order, behind what `slots` holds; spends the hierarchy.
std::uint32_t Sifter::appendSorted(std::uint32_t root, List<Slot>& slots) {
    const auto begin = static_cast<std::uint32_t>(slots.size());
    open_.clear();
    open_.push_back(root);
    while (!open_.empty()) {
        const std::uint32_t index = open_.back();
        open_.pop_back();
        const Entry entry = entries_[index];
        freeEntry(index);
        if (entry.count > 1) {
            open_.push_back(entry.left);
            open_.push_back(entry.right);
        } else {
            slots.push_back({entry.box, entry.rank, entry.left});
        }
    }
    std::sort(slots.begin() + begin, slots.end(), byRank);
    return begin;
}

} // namespace orva::bspcsg

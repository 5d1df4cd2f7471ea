#include "bsp/sift.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace orva::bspcsg {

namespace {

constexpr float UNKNOWN = std::numeric_limits<float>::quiet_NaN(); // NAN need not be a constant expression
constexpr Bounds NOWHERE{{UNKNOWN, UNKNOWN, UNKNOWN}, {UNKNOWN, UNKNOWN, UNKNOWN}};

// Coordinates beyond this have no box: far enough inside the range of floats for every sum of products here.
constexpr double FARTHEST = 1e30;

// Larger by a few units in the last place and the smallest normal number: never below a value that is not negative,
// however the caller rounds and whether subnormals are flushed.
float outward(double value) {
    const auto rounded = static_cast<float>(value);
    return rounded + (rounded * 0x1p-21F + std::numeric_limits<float>::min());
}

bool isNowhere(const Bounds& box) {
    return std::isnan(box.middle[0]);
}

float reachOf(const Bounds& box) {
    float reach = 0;
    for (std::size_t i = 0; i < 3; ++i) reach = std::max(reach, std::abs(box.middle[i]) + box.half[i]);
    return reach;
}

// Of unit length but for a few thousandths: what the margins assume of a plane's normal. NaN and infinity are not.
bool isAboutUnit(const Vec3& n) {
    const double square = dot(n, n);
    return square > 0.99 && square < 1.01;
}

struct Interval {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
};

bool byRank(const Slot& a, const Slot& b) {
    return a.rank < b.rank;
}

// How many bits of a mask of four lanes are set.
std::uint32_t countOf(std::uint32_t mask) {
    static constexpr std::array<std::uint8_t, 16> counts{0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4};
    return counts[mask];
}

} // namespace

Bounds boundsOf(const Polygon& polygon, const Vec3& origin) {
    if (polygon.vertices.empty()) return NOWHERE;
    Vec3 low = polygon.vertices.front().pos;
    Vec3 high = low;
    bool within = true;
    for (const Vertex& vertex : polygon.vertices) {
        const Vec3& p = vertex.pos;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        // note: a minimum drops a NaN, so each vertex is asked.
        within = within && std::abs(p.x) < FARTHEST && std::abs(p.y) < FARTHEST && std::abs(p.z) < FARTHEST;
    }
    if (!within) return NOWHERE;
    const std::array<Interval, 3> sides{Interval{low.x - origin.x, high.x - origin.x},
                                        Interval{low.y - origin.y, high.y - origin.y},
                                        Interval{low.z - origin.z, high.z - origin.z}};
    Bounds box;
    for (std::size_t i = 0; i < 3; ++i) {
        box.middle[i] = static_cast<float>((sides[i].low + sides[i].high) / 2);
        box.half[i] = outward(std::max(sides[i].high - box.middle[i], box.middle[i] - sides[i].low));
    }
    return box;
}

// A plane made ready for boxes.
struct Sifter::Division {
    Plane plane;
    Rules rules;
    std::uint32_t cuts = 0; // polygons cut so far
    std::array<float, 3> normal;
    std::array<float, 3> steep; // |normal|
    float offset;               // of the origin from the plane
    float limit;                // beyond it a bound decides; NaN where none does
    bool tame;                  // rounding is far below the tolerance

    Division(const Plane& p, Rules r, const Vec3& origin, double far, float reach) : plane(p), rules(r) {
        const Vec3& n = p.normal;
        normal = {static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z)};
        for (std::size_t i = 0; i < 3; ++i) steep[i] = std::abs(normal[i]);
        const double height = signedDistance(p, origin);
        offset = static_cast<float>(height);
        const double rounding = 1e-14 * (far + reach + std::abs(p.w));
        limit = UNKNOWN;
        if (isAboutUnit(n) && std::abs(height) < FARTHEST) {
            limit = outward(EPSILON + 0x1p-16 * (reach + std::abs(height)) + rounding);
        }
        tame = rounding < EPSILON / 16;
    }

    bool isUsual() const { return !std::isnan(limit); }

    // Whether all vertices of a polygon on one side of the plane are as far from it as a bound would have to be.
    bool clears(const Polygon& polygon) const {
        return std::all_of(polygon.vertices.begin(), polygon.vertices.end(), [this](const Vertex& vertex) {
            return std::abs(signedDistance(plane, vertex.pos)) > limit;
        });
    }

    float distance(const Bounds& box) const {
        return normal[0] * box.middle[0] + normal[1] * box.middle[1] + normal[2] * box.middle[2] + offset;
    }
    float extent(const Bounds& box) const {
        return steep[0] * box.half[0] + steep[1] * box.half[1] + steep[2] * box.half[2] + limit;
    }
};

Sifter::Sifter(PolygonList polygons, HierarchyThresholds thresholds)
    : pool_(std::move(polygons)), thresholds_(thresholds) {}

Sifter::Part Sifter::start() {
    const auto isNear = [](const Vertex& vertex) {
        const Vec3& p = vertex.pos;
        return std::abs(p.x) < FARTHEST && std::abs(p.y) < FARTHEST && std::abs(p.z) < FARTHEST;
    };
    for (const Polygon& polygon : pool_) {
        const auto vertex = std::find_if(polygon.vertices.begin(), polygon.vertices.end(), isNear);
        if (vertex == polygon.vertices.end()) continue;
        origin_ = vertex->pos;
        far_ = std::max({std::abs(origin_.x), std::abs(origin_.y), std::abs(origin_.z)});
        break;
    }
    const auto count = static_cast<std::uint32_t>(toCount(pool_.size()));
    slots_.reserve(count);
    courses_.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        slots_.push_back({bound(pool_[i]), i, i});
        // Of what lies beyond the reach of the bounds nothing is known.
        courses_.push_back(isNowhere(slots_.back().box) ? UNCERTAIN : NONE);
    }
    return {.count = count};
}

Sifter::Part Sifter::put(const Slot* begin, const Slot* end) {
    const Part part{.count = static_cast<std::uint32_t>(end - begin),
                    .begin = static_cast<std::uint32_t>(slots_.size())};
    slots_.append(begin, end);
    return part;
}

const Polygon& Sifter::first(const Part& part) const {
    if (part.root == NONE) return pool_[slots_[part.begin].polygon];
    std::uint32_t index = part.root;
    while ((index & POLYGON) == 0) {
        const Entry& entry = entries_[index];
        index = entry.child[firstOf(entry)];
    }
    return pool_[index & ~POLYGON];
}

// The lane of the smallest rank.
std::uint32_t Sifter::firstOf(const Entry& entry) {
    std::uint32_t first = 0;
    for (std::uint32_t i = 1; i < entry.lanes; ++i) {
        if (entry.rank[i] < entry.rank[first]) first = i;
    }
    return first;
}

Sifter::Parts Sifter::divide(const Plane& plane, const Part& part, Rules rules) {
    kept_.clear();
    ORVA_COUNT(stacked, slots_.size());
    Parts parts;
    std::uint32_t root = part.root;
    if (root == NONE) {
        if (part.count < thresholds_.polygons || part.planes < thresholds_.planes) {
            ORVA_COUNT(slotDivisions, 1);
            ORVA_COUNT(slots, part.count);
            Division division(plane, rules, origin_, far_, reach_);
            divideSlots(division, part, parts);
            for (Part* half : {&parts.front, &parts.back}) {
                half->planes = half->count >= part.count - part.count / 8 ? part.planes + 1 : 0;
            }
            return parts;
        }
        root = makeHierarchy(part);
        slots_.resize(part.begin);
    }
    ORVA_COUNT(hierarchyDivisions, 1);
    Division division(plane, rules, origin_, far_, reach_);
    const Halves halves = divideEntry(division, root, rules.keepFirst);
    std::sort(kept_.begin(), kept_.end(), byRank);
    // The back part first: the front part has to lie on top of it.
    parts.back = partOf(halves.back == WHOLE ? root : halves.back);
    parts.front = partOf(halves.front == WHOLE ? root : halves.front);
    return parts;
}

// ---- one polygon ----

Bounds Sifter::bound(const Polygon& polygon) {
    const Bounds box = boundsOf(polygon, origin_);
    if (!isNowhere(box)) reach_ = std::max(reach_, reachOf(box));
    return box;
}

PolygonSide Sifter::sideOf(const Division& division, std::uint32_t polygon) {
    ORVA_COUNT(exactSides, 1);
    const Polygon& exact = pool_[polygon];
    const PolygonSide side = bspcsg::sideOf(division.plane, exact);
    if (side == PolygonSide::Spanning || division.rules.keepCoplanar) return side;
    if (side == PolygonSide::Coplanar || !division.isUsual()) {
        courses_[polygon] = UNCERTAIN;
    } else if (!division.clears(exact)) {
        addCheck(division, polygon, side);
    }
    if (side != PolygonSide::Coplanar) return side;
    return facesAlong(division.plane, exact) ? PolygonSide::Front : PolygonSide::Back;
}

void Sifter::addCheck(const Division& division, std::uint32_t polygon, PolygonSide side) {
    if (division.rules.keepCoplanar || courses_[polygon] == UNCERTAIN) return;
    ORVA_COUNT(checks, 1);
    checks_.push_back({division.plane, side, courses_[polygon]});
    courses_[polygon] = static_cast<std::uint32_t>(toCount(checks_.size())) - 1;
}

bool Sifter::isCertain(std::uint32_t place) const {
    std::uint32_t check = courses_[place];
    while (check != NONE) {
        ORVA_COUNT(askedAgain, 1);
        if (check == UNCERTAIN || bspcsg::sideOf(checks_[check].plane, pool_[place]) != checks_[check].side)
            return false;
        check = checks_[check].before;
    }
    return true;
}

// The pieces' places in the pool: the front piece takes the polygon's own, the back piece a new one. A piece of too few
// vertices is none.
Sifter::Halves Sifter::cut(Division& division, std::uint32_t polygon) {
    ++division.cuts;
    Halves pieces;
    // Where rounding is small, new vertices lie between the old ones, and bounds hold them, too.
    if (!division.tame || !division.isUsual()) courses_[polygon] = UNCERTAIN;
    classifyInto(division.plane, pool_[polygon], sides_);
    cutInto(division.plane, pool_[polygon], sides_, frontPiece_, backPiece_);
    if (!division.rules.dropBack && backPiece_.size() >= 3) {
        pieces.back = static_cast<std::uint32_t>(toCount(pool_.size()));
        pool_.push_back({backPiece_, pool_[polygon].plane});
        courses_.push_back(courses_[polygon]);
        addCheck(division, pieces.back, PolygonSide::Back);
    }
    if (frontPiece_.size() >= 3) {
        pieces.front = polygon;
        pool_[polygon].vertices.assign(frontPiece_);
        addCheck(division, polygon, PolygonSide::Front);
    }
    return pieces;
}

// ---- short lists: a run of slots ----

void Sifter::divideSlots(Division& division, const Part& part, Parts& parts) {
    // The loop writes every slot to both sides and then keeps what belongs there, which spares it a branch that nobody
    // could foretell.
    ahead_.resize(std::max<std::size_t>(ahead_.size(), part.count));
    Slot* const slots = slots_.data() + part.begin;
    Slot* front = ahead_.data();
    Slot* back = slots;
    std::uint32_t i = 0;
    if (division.rules.keepFirst) kept_.push_back(slots[i++]);
    for (; i < part.count; ++i) {
        const Slot slot = slots[i];
        const float distance = division.distance(slot.box);
        const float extent = division.extent(slot.box);
        const std::uint32_t isFront = distance > extent ? 1 : 0;
        const std::uint32_t isBack = distance < -extent ? 1 : 0;
        if ((isFront | isBack) != 0) {
            *front = slot;
            *back = slot;
            front += isFront;
            back += isBack;
            continue;
        }
        const PolygonSide side = sideOf(division, slot.polygon);
        if (side == PolygonSide::Front) {
            *front++ = slot;
        } else if (side == PolygonSide::Back) {
            *back++ = slot;
        } else if (side == PolygonSide::Coplanar) {
            kept_.push_back(slot);
        } else {
            const Halves pieces = cut(division, slot.polygon);
            if (pieces.front != NONE) *front++ = {bound(pool_[pieces.front]), slot.rank, pieces.front};
            if (pieces.back != NONE) *back++ = {bound(pool_[pieces.back]), slot.rank, pieces.back};
        }
    }
    if (division.rules.dropBack) { // at once: what is cut next takes the memory
        while (back != slots) pool_[(--back)->polygon].vertices = {};
    }
    parts.back.begin = part.begin;
    parts.back.count = static_cast<std::uint32_t>(back - slots);
    parts.front.begin = part.begin + parts.back.count;
    parts.front.count = static_cast<std::uint32_t>(front - ahead_.data());
    slots_.resize(parts.front.begin + parts.front.count);
    std::copy(ahead_.data(), front, slots_.data() + parts.front.begin);
}

// ---- long lists: a hierarchy ----

// Which children lie wholly on one side, as masks.
Sifter::Sides Sifter::sidesOf(const Division& division, const Entry& entry) {
    const auto& [nx, ny, nz] = division.normal;
    const auto& [sx, sy, sz] = division.steep;
    std::array<std::uint32_t, LANES> front;
    std::array<std::uint32_t, LANES> back;
    for (std::size_t i = 0; i < LANES; ++i) {
        const float mx = entry.middle[0][i];
        const float my = entry.middle[1][i];
        const float mz = entry.middle[2][i];
        const float hx = entry.half[0][i];
        const float hy = entry.half[1][i];
        const float hz = entry.half[2][i];
        const float dx = entry.direction[0][i];
        const float dy = entry.direction[1][i];
        const float dz = entry.direction[2][i];
        const float boxDistance = nx * mx + ny * my + nz * mz + division.offset;
        const float boxExtent = sx * hx + sy * hy + sz * hz + division.limit;
        const float along = nx * dx + ny * dy + nz * dz;
        const float rx = nx - along * dx;
        const float ry = ny - along * dy;
        const float rz = nz - along * dz;
        const float distance = along * entry.slabMiddle[i] + (rx * mx + ry * my + rz * mz) + division.offset;
        const float extent = std::abs(along) * entry.slabHalf[i] +
                             (std::abs(rx) * hx + std::abs(ry) * hy + std::abs(rz) * hz) + division.limit;
        front[i] = (boxDistance > boxExtent ? 1U : 0U) | (distance > extent ? 1U : 0U);
        back[i] = (boxDistance < -boxExtent ? 1U : 0U) | (distance < -extent ? 1U : 0U);
    }
    const auto mask = [](const std::array<std::uint32_t, LANES>& lanes) {
        return lanes[0] | lanes[1] << 1 | lanes[2] << 2 | lanes[3] << 3;
    };
    return {mask(front), mask(back)};
}

Sifter::Halves Sifter::dividePolygon(Division& division, std::uint32_t index, std::uint32_t lane, bool holdsFirst) {
    const Entry& entry = entries_[index];
    const Slot slot{NOWHERE, entry.rank[lane], entry.child[lane] & ~POLYGON};
    const PolygonSide side = holdsFirst ? PolygonSide::Coplanar : sideOf(division, slot.polygon);
    if (side == PolygonSide::Front) return {WHOLE, NONE};
    if (side == PolygonSide::Back) return {NONE, division.rules.dropBack ? NONE : WHOLE};
    if (side == PolygonSide::Coplanar) {
        kept_.push_back(slot);
        return {};
    }
    Halves pieces = cut(division, slot.polygon);
    for (std::uint32_t* piece : {&pieces.front, &pieces.back}) {
        if (*piece != NONE) *piece |= POLYGON;
    }
    return pieces;
}

void Sifter::copyLane(Entry& target, std::uint32_t to, const Entry& source, std::uint32_t from) {
    ORVA_COUNT(copiedLanes, 1);
    for (std::size_t k = 0; k < 3; ++k) {
        target.middle[k][to] = source.middle[k][from];
        target.half[k][to] = source.half[k][from];
        target.direction[k][to] = source.direction[k][from];
    }
    target.slabMiddle[to] = source.slabMiddle[from];
    target.slabHalf[to] = source.slabHalf[from];
    target.rank[to] = source.rank[from];
    target.count[to] = source.count[from];
    target.child[to] = source.child[from];
}

// Divides what lies below an entry; `holdsFirst` says that the polygon which stays unclassified is there. The side that
// keeps more of the entry's children keeps the entry.
Sifter::Halves Sifter::divideEntry(Division& division, std::uint32_t index, bool holdsFirst) {
    const std::uint32_t all = (1U << entries_[index].lanes) - 1;
    const std::uint32_t first = holdsFirst ? firstOf(entries_[index]) : LANES;
    ORVA_COUNT(entries, 1);
    const Sides sides = sidesOf(division, entries_[index]);
    std::uint32_t open = all;
    if (holdsFirst) open &= ~(1U << first);
    std::uint32_t front = sides.front & open; // children that go to the front as they are
    std::uint32_t back = sides.back & open;
    std::uint32_t apart = 0; // children of which something else remains:
    std::array<Halves, LANES> halves;
    std::uint32_t cutBelow = 0;
    for (open = all & ~(front | back); open != 0; open &= open - 1) {
        const auto lane = static_cast<std::uint32_t>(std::countr_zero(open));
        const std::uint32_t bit = 1U << lane;
        const std::uint32_t cutsBefore = division.cuts;
        const std::uint32_t child = entries_[index].child[lane];
        const Halves below = (child & POLYGON) != 0 ? dividePolygon(division, index, lane, lane == first)
                                                    : divideEntry(division, child, lane == first);
        if (below.front == WHOLE) {
            front |= bit;
        } else if (below.back == WHOLE) {
            back |= bit;
        } else {
            apart |= bit;
            halves[lane] = below;
            if (division.cuts != cutsBefore) cutBelow |= bit;
        }
    }
    if (front == all) return {WHOLE, NONE};
    if (back == all) return {NONE, division.rules.dropBack ? NONE : WHOLE};
    if (division.rules.dropBack) back = 0;

    std::uint32_t apartFront = 0;
    std::uint32_t apartBack = 0;
    for (std::uint32_t i = 0; i < LANES; ++i) {
        if ((apart & (1U << i)) == 0) continue;
        if (halves[i].front != NONE) apartFront |= 1U << i;
        if (halves[i].back != NONE) apartBack |= 1U << i;
    }
    // A child that only lost something, and without a cut, stays within its bounds; the halves of one are smaller, and
    // pieces have new vertices, rounded ones.
    const std::uint32_t sameBounds = ~(cutBelow | (apartFront & apartBack));

    const bool frontStays = countOf(front | apartFront) > countOf(back | apartBack);
    const std::uint32_t moved = frontStays ? back : front;
    const std::uint32_t movedApart = frontStays ? apartBack : apartFront;
    const std::uint32_t stays = frontStays ? front : back;
    const std::uint32_t staysApart = frontStays ? apartFront : apartBack;
    const auto childOf = [&](std::uint32_t lane, bool inFront) {
        return inFront ? halves[lane].front : halves[lane].back;
    };
    std::uint32_t other = NONE;
    if ((moved | movedApart) != 0) {
        other = newEntry();
        for (std::uint32_t i = 0; i < LANES; ++i) {
            const std::uint32_t bit = 1U << i;
            if (((moved | movedApart) & bit) == 0) continue;
            const std::uint32_t lane = entries_[other].lanes++;
            copyLane(entries_[other], lane, entries_[index], i);
            if ((movedApart & bit) != 0) setChild(other, lane, childOf(i, !frontStays), (sameBounds & bit) != 0);
        }
    }
    std::uint32_t rest = index;
    if ((stays | staysApart) == 0) {
        freeEntry(index);
        rest = NONE;
    } else {
        for (std::uint32_t i = entries_[index].lanes; i-- > 0;) {
            const std::uint32_t bit = 1U << i;
            if ((staysApart & bit) != 0) {
                setChild(index, i, childOf(i, frontStays), (sameBounds & bit) != 0);
            } else if ((stays & bit) == 0) {
                const std::uint32_t last = --entries_[index].lanes;
                if (i != last) copyLane(entries_[index], i, entries_[index], last);
            }
        }
    }
    return frontStays ? Halves{rest, other} : Halves{other, rest};
}

Sifter::Part Sifter::partOf(std::uint32_t root) {
    if (root == NONE) return {};
    const Entry& entry = entries_[root];
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < entry.lanes; ++i) count += entry.count[i];
    if (count >= thresholds_.polygons) return {.count = count, .root = root};
    return {.count = count, .begin = appendSorted(root)};
}

// Halves at the median of the middles along the longest side, and each of them once more: good boxes, and a depth of
// log4(n).
std::uint32_t Sifter::makeHierarchy(const Part& part) {
    centres_.clear();
    centres_.reserve(part.count);
    for (std::uint32_t i = part.begin; i < part.begin + part.count; ++i) {
        const Bounds& box = slots_[i].box;
        centres_.push_back({isNowhere(box) ? std::array<float, 3>{} : box.middle, i});
    }
    entries_.reserve(entries_.size() + part.count / 2 + 1);
    return makeEntry(centres_.data(), centres_.data() + part.count);
}

Sifter::Centre* Sifter::halve(Centre* begin, Centre* end) {
    std::array<float, 3> low = begin->middle;
    std::array<float, 3> high = low;
    for (const Centre* centre = begin; centre != end; ++centre) {
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], centre->middle[k]);
            high[k] = std::max(high[k], centre->middle[k]);
        }
    }
    std::size_t longest = 0;
    for (std::size_t k = 1; k < 3; ++k) {
        if (high[k] - low[k] > high[longest] - low[longest]) longest = k;
    }
    Centre* const middle = begin + (end - begin) / 2;
    std::nth_element(begin, middle, end,
                     [longest](const Centre& a, const Centre& b) { return a.middle[longest] < b.middle[longest]; });
    return middle;
}

std::uint32_t Sifter::makeEntry(Centre* begin, Centre* end) {
    const std::uint32_t index = newEntry();
    if (end - begin <= LANES) {
        entries_[index].lanes = static_cast<std::uint32_t>(end - begin);
        for (std::uint32_t i = 0; begin + i != end; ++i) setPolygon(index, i, slots_[begin[i].slot]);
        return index;
    }
    Centre* const half = halve(begin, end);
    const std::array<Centre*, 5> ends{begin, halve(begin, half), half, halve(half, end), end};
    entries_[index].lanes = LANES;
    for (std::uint32_t i = 0; i < LANES; ++i) {
        if (ends[i + 1] - ends[i] == 1) {
            setPolygon(index, i, slots_[ends[i]->slot]);
            continue;
        }
        const std::uint32_t child = makeEntry(ends[i], ends[i + 1]);
        // The mean direction is found once, here; what becomes of the child keeps it.
        Entry& entry = entries_[index];
        const Entry& below = entries_[child];
        std::array<float, 3> sum{};
        for (std::size_t k = 0; k < 3; ++k) {
            for (std::size_t lane = 0; lane < below.lanes; ++lane) sum[k] += below.direction[k][lane];
        }
        const float size = std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
        for (std::size_t k = 0; k < 3; ++k) entry.direction[k][i] = size < 0.1F ? 0 : sum[k] / size;
        setChild(index, i, child, false);
    }
    return index;
}

std::uint32_t Sifter::newEntry() {
    std::uint32_t index = freeEntries_;
    if (index == NONE) {
        ORVA_COUNT(newEntries, 1);
        index = static_cast<std::uint32_t>(entries_.size());
        entries_.push_back({});
    } else {
        freeEntries_ = entries_[index].child[0];
    }
    entries_[index].lanes = 0;
    return index;
}

void Sifter::freeEntry(std::uint32_t entry) {
    entries_[entry].child[0] = freeEntries_;
    freeEntries_ = entry;
}

// Puts a polygon into a lane; its slab lies along its own normal.
void Sifter::setPolygon(std::uint32_t index, std::uint32_t lane, const Slot& slot) {
    ORVA_COUNT(inHierarchies, 1);
    Entry& entry = entries_[index];
    const Polygon& polygon = pool_[slot.polygon];
    std::array<float, 3> direction{};
    float middle{};
    float half{};
    if (isAboutUnit(polygon.plane.normal) && !isNowhere(slot.box)) {
        const Vec3& n = polygon.plane.normal;
        direction = {static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z)};
        const Vec3 d{direction[0], direction[1], direction[2]};
        Interval extent;
        for (const Vertex& vertex : polygon.vertices) {
            const double along = dot(d, vertex.pos - origin_);
            extent = {std::min(extent.low, along), std::max(extent.high, along)};
        }
        middle = static_cast<float>((extent.low + extent.high) / 2);
        half = outward(std::max(extent.high - middle, middle - extent.low));
    }
    for (std::size_t k = 0; k < 3; ++k) {
        entry.middle[k][lane] = slot.box.middle[k];
        entry.half[k][lane] = slot.box.half[k];
        entry.direction[k][lane] = direction[k];
    }
    entry.slabMiddle[lane] = middle;
    entry.slabHalf[lane] = half;
    entry.rank[lane] = slot.rank;
    entry.count[lane] = 1;
    entry.child[lane] = slot.polygon | POLYGON;
}

// Puts what has become of a child, or a new one, into a lane that has a direction already.
void Sifter::setChild(std::uint32_t index, std::uint32_t lane, std::uint32_t child, bool sameBounds) {
    Entry& entry = entries_[index];
    if ((child & POLYGON) != 0) {
        const std::uint32_t polygon = child & ~POLYGON;
        setPolygon(index, lane, {bound(pool_[polygon]), entry.rank[lane], polygon});
        return;
    }
    const Entry& below = entries_[child];
    if (below.lanes == 1) { // nothing is gained by asking it
        copyLane(entry, lane, below, 0);
        freeEntry(child);
        return;
    }
    entry.child[lane] = child;
    std::uint32_t rank = below.rank[0];
    std::uint32_t count = below.count[0];
    for (std::size_t i = 1; i < below.lanes; ++i) {
        rank = std::min(rank, below.rank[i]);
        count += below.count[i];
    }
    entry.rank[lane] = rank;
    entry.count[lane] = count;
    if (!sameBounds) findBounds(entry, lane, below);
}

// The bounds of what lies below, along the direction that the lane has. In single precision: the margin is that of
// Division, for sums of the same terms.
void Sifter::findBounds(Entry& entry, std::uint32_t lane, const Entry& below) const {
    const float dx = entry.direction[0][lane];
    const float dy = entry.direction[1][lane];
    const float dz = entry.direction[2][lane];
    std::array<Entry::Row, 4> low; // x, y, z, and along the direction
    std::array<Entry::Row, 4> high;
    for (std::size_t i = 0; i < LANES; ++i) {
        const float mx = below.middle[0][i];
        const float my = below.middle[1][i];
        const float mz = below.middle[2][i];
        const float hx = below.half[0][i];
        const float hy = below.half[1][i];
        const float hz = below.half[2][i];
        const float along = dx * below.direction[0][i] + dy * below.direction[1][i] + dz * below.direction[2][i];
        const float rx = dx - along * below.direction[0][i];
        const float ry = dy - along * below.direction[1][i];
        const float rz = dz - along * below.direction[2][i];
        const float boxMiddle = dx * mx + dy * my + dz * mz;
        const float boxHalf = std::abs(dx) * hx + std::abs(dy) * hy + std::abs(dz) * hz;
        const float middle = along * below.slabMiddle[i] + (rx * mx + ry * my + rz * mz);
        const float half =
            std::abs(along) * below.slabHalf[i] + (std::abs(rx) * hx + std::abs(ry) * hy + std::abs(rz) * hz);
        low[0][i] = mx - hx;
        low[1][i] = my - hy;
        low[2][i] = mz - hz;
        low[3][i] = std::max(middle - half, boxMiddle - boxHalf);
        high[0][i] = mx + hx;
        high[1][i] = my + hy;
        high[2][i] = mz + hz;
        high[3][i] = std::min(middle + half, boxMiddle + boxHalf);
    }
    // note: a minimum would drop what is not a number, and the bounds promise something of polygons that they never
    // saw.
    bool known = true;
    for (std::size_t i = 0; i < below.lanes; ++i) known = known && !std::isnan(below.middle[0][i]);
    const float margin = 0x1p-16F * reach_;
    const auto set = [&](Entry::Row& middles, Entry::Row& extents, std::size_t row) {
        float least = low[row][0];
        float most = high[row][0];
        for (std::size_t i = 1; i < below.lanes; ++i) {
            least = std::min(least, low[row][i]);
            most = std::max(most, high[row][i]);
        }
        middles[lane] = known ? (least + most) / 2 : UNKNOWN;
        extents[lane] = known ? (most - least) / 2 + margin : UNKNOWN;
    };
    for (std::size_t k = 0; k < 3; ++k) set(entry.middle[k], entry.half[k], k);
    set(entry.slabMiddle, entry.slabHalf, 3);
}

// The polygons of a hierarchy as slots in order, on top of the stack; spends the hierarchy.
std::uint32_t Sifter::appendSorted(std::uint32_t root) {
    const auto begin = static_cast<std::uint32_t>(slots_.size());
    open_.push_back(root);
    while (!open_.empty()) {
        const std::uint32_t index = open_.back();
        open_.pop_back();
        const Entry& entry = entries_[index];
        for (std::size_t i = 0; i < entry.lanes; ++i) {
            if ((entry.child[i] & POLYGON) == 0) {
                open_.push_back(entry.child[i]);
                continue;
            }
            slots_.push_back({{{entry.middle[0][i], entry.middle[1][i], entry.middle[2][i]},
                               {entry.half[0][i], entry.half[1][i], entry.half[2][i]}},
                              entry.rank[i],
                              entry.child[i] & ~POLYGON});
        }
        freeEntry(index);
    }
    std::sort(slots_.begin() + begin, slots_.end(), byRank);
    return begin;
}

} // namespace orva::bspcsg

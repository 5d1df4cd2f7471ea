#include "tidy/ears.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orva::tidy {

namespace {

constexpr std::uint32_t NO_NODE = 0xFFFFFFFF;

// An outline with so many forced ears crosses itself all over. What is left of it is cut as it comes: to look all
// around it for each ear would take the third power of its corners.
constexpr std::uint64_t MOST_FORCED = 32;
constexpr std::size_t HURRIED = 8;

std::size_t cellOf(double at, double low, double cellsPerUnit, std::size_t cells) {
    const double cell = (at - low) * cellsPerUnit;
    if (!(cell > 0.0)) return 0;
    return cell < static_cast<double>(cells - 1) ? static_cast<std::size_t>(cell) : cells - 1;
}

bool isLeftOf(const EarCutter::Node& a, const EarCutter::Node& b) {
    return a.at.x != b.at.x ? a.at.x < b.at.x : a.at.y < b.at.y;
}

} // namespace

void EarCutter::clear() {
    nodes.clear();
    ears.clear();
    loops.clear();
    wires = 0;
    forced = 0;
    firstOfLoop = 0;
}

void EarCutter::addCorner(const Vec2& at, std::uint32_t point, std::uint32_t label, std::uint32_t side) {
    const auto number = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back({at, point, label, {side, false}, number - 1, number + 1});
}

void EarCutter::endLoop() {
    nodes[firstOfLoop].previous = static_cast<std::uint32_t>(nodes.size() - 1);
    nodes.back().next = firstOfLoop;
    loops.push_back(firstOfLoop);
    firstOfLoop = static_cast<std::uint32_t>(nodes.size());
}

EarCutter::Loop EarCutter::measured(std::uint32_t first) const {
    Loop loop{first, first, 0, 0.0};
    const Vec2& origin = nodes[first].at;
    std::uint32_t at = first;
    do {
        const Node& node = nodes[at];
        const Node& next = nodes[node.next];
        loop.area += (node.at.x - origin.x) * (next.at.y - origin.y) - (node.at.y - origin.y) * (next.at.x - origin.x);
        if (isLeftOf(node, nodes[loop.leftmost])) loop.leftmost = at;
        ++loop.size;
        at = node.next;
    } while (at != first);
    return loop;
}

// By the crossings of a ray; on the outline itself it may say either.
bool EarCutter::contains(const Loop& outline, const Vec2& at) const {
    bool inside = false;
    std::uint32_t i = outline.first;
    do {
        const Node& a = nodes[i];
        const Node& b = nodes[a.next];
        if ((a.at.y > at.y) != (b.at.y > at.y)) {
            const int side = orientation(a.at, b.at, at);
            if (side != 0 && (side > 0) == (b.at.y > a.at.y)) inside = !inside;
        }
        i = a.next;
    } while (i != outline.first);
    return inside;
}

// ---- Holes ----

// Whether the direction from a node to a place goes into the polygon.
bool EarCutter::seesInto(const Node& node, const Vec2& at) const {
    const Vec2& before = nodes[node.previous].at;
    const Vec2& behind = nodes[node.next].at;
    if (orientation(before, node.at, behind) > 0) {
        return orientation(node.at, behind, at) >= 0 && orientation(before, node.at, at) >= 0;
    }
    return orientation(node.at, behind, at) > 0 || orientation(before, node.at, at) > 0;
}

// The node of the outline to which a bridge from the leftmost corner of a hole crosses nothing: an end of the first
// side to the left, or a reflex node before it.
std::uint32_t EarCutter::findBridge(std::uint32_t outline, const Node& hole) const {
    const double x = hole.at.x;
    const double y = hole.at.y;
    double hitX = -std::numeric_limits<double>::infinity();
    std::uint32_t best = NO_NODE;
    std::uint32_t i = outline;
    do {
        const Node& a = nodes[i];
        const Node& b = nodes[a.next];
        if (a.at.y >= y && b.at.y <= y && a.at.y != b.at.y) { // runs down: the polygon is to its right
            const double at = a.at.x + (y - a.at.y) * (b.at.x - a.at.x) / (b.at.y - a.at.y);
            if (at <= x && at > hitX) {
                hitX = at;
                best = a.at.x < b.at.x ? i : a.next;
            }
        }
        i = a.next;
    } while (i != outline);

    if (best == NO_NODE) { // no outline around it: the nearest node will do
        double nearest = std::numeric_limits<double>::infinity();
        i = outline;
        do {
            const double dx = nodes[i].at.x - x;
            const double dy = nodes[i].at.y - y;
            if (best == NO_NODE || dx * dx + dy * dy < nearest) {
                nearest = dx * dx + dy * dy;
                best = i;
            }
            i = nodes[i].next;
        } while (i != outline);
        return best;
    }

    // Of the nodes in the triangle between the hole's corner, the hit and that end, the one with the flattest bridge.
    const Vec2 end = nodes[best].at;
    const Vec2 hit{hitX, y};
    const bool endIsBelow = end.y < y;
    const auto isInTriangle = [&](const Vec2& at) {
        const Vec2& first = endIsBelow ? hole.at : hit;
        const Vec2& second = endIsBelow ? hit : hole.at;
        return orientation(first, second, at) >= 0 && orientation(second, end, at) >= 0 &&
               orientation(end, first, at) >= 0;
    };
    double flattest = std::numeric_limits<double>::infinity();
    std::uint32_t found = best;
    i = outline;
    do {
        const Node& node = nodes[i];
        if (node.point == hole.point) return i;
        if (node.at.x < x && node.at.x >= end.x && isInTriangle(node.at) && seesInto(node, hole.at)) {
            const double slope = std::fabs(y - node.at.y) / (x - node.at.x);
            if (slope < flattest || (slope == flattest && node.at.x > nodes[found].at.x)) {
                flattest = slope;
                found = i;
            }
        }
        i = node.next;
    } while (i != outline);
    return found;
}

// Outline and hole become one loop that runs along a bridge there and back.
void EarCutter::join(std::uint32_t outline, std::uint32_t hole) {
    const std::uint32_t from = findBridge(outline, nodes[hole]);
    if (nodes[from].point == nodes[hole].point) { // they touch: two loops through one point are one
        std::swap(nodes[nodes[from].next].previous, nodes[nodes[hole].next].previous);
        std::swap(nodes[from].next, nodes[hole].next);
        std::swap(nodes[from].across, nodes[hole].across);
        return;
    }
    const auto fromAgain = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back(nodes[from]);
    const auto holeAgain = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back(nodes[hole]);
    const std::uint32_t wire = wires++;
    // from -> hole, all around the hole, holeAgain -> fromAgain, and on.
    nodes[nodes[from].next].previous = fromAgain;
    nodes[from].next = hole;
    nodes[from].across = {wire, true};
    nodes[nodes[hole].previous].next = holeAgain;
    nodes[hole].previous = from;
    nodes[holeAgain].next = fromAgain;
    nodes[holeAgain].across = {wire, true};
    nodes[fromAgain].previous = holeAgain;
}

// ---- Ears ----

int EarCutter::turnAt(std::uint32_t node) const {
    return orientation(nodes[nodes[node].previous].at, nodes[node].at, nodes[nodes[node].next].at);
}

void EarCutter::placeBlockers(std::uint32_t first, std::size_t count) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    low = {inf, inf};
    Vec2 high{-inf, -inf};
    std::uint32_t i = first;
    do {
        const Vec2& at = nodes[i].at;
        low = {std::min(low.x, at.x), std::min(low.y, at.y)};
        high = {std::max(high.x, at.x), std::max(high.y, at.y)};
        i = nodes[i].next;
    } while (i != first);
    // About one node to a cell, cells about square.
    const double width = high.x - low.x;
    const double height = high.y - low.y;
    const double wanted = std::clamp(std::sqrt(static_cast<double>(count)), 1.0, 1024.0);
    columns = rows = count < 32 ? 1 : static_cast<std::size_t>(wanted);
    cellsPerUnitX = width > 0.0 ? static_cast<double>(columns) / width : 0.0;
    cellsPerUnitY = height > 0.0 ? static_cast<double>(rows) / height : 0.0;
    if (cells.size() < columns * rows) cells.resize(columns * rows);
    for (std::size_t c = 0; c < columns * rows; ++c) cells[c].clear();
    i = first;
    do {
        const Node& node = nodes[i];
        if (turnAt(i) <= 0) {
            cells[cellOf(node.at.y, low.y, cellsPerUnitY, rows) * columns +
                  cellOf(node.at.x, low.x, cellsPerUnitX, columns)]
                .push_back(i);
        }
        i = node.next;
    } while (i != first);
}

bool EarCutter::blocks(std::uint32_t node, const Node& a, const Node& b, const Node& c) {
    const Node& other = nodes[node];
    if (other.point == a.point || other.point == b.point || other.point == c.point) return false;
    return orientation(a.at, b.at, other.at) >= 0 && orientation(b.at, c.at, other.at) >= 0 &&
           orientation(c.at, a.at, other.at) >= 0;
}

bool EarCutter::isEar(std::uint32_t node) {
    const Node& b = nodes[node];
    const Node& a = nodes[b.previous];
    const Node& c = nodes[b.next];
    if (orientation(a.at, b.at, c.at) <= 0) return false;
    const auto [lowX, highX] = std::minmax({a.at.x, b.at.x, c.at.x});
    const auto [lowY, highY] = std::minmax({a.at.y, b.at.y, c.at.y});
    const std::size_t lastColumn = cellOf(highX, low.x, cellsPerUnitX, columns);
    const std::size_t lastRow = cellOf(highY, low.y, cellsPerUnitY, rows);
    for (std::size_t row = cellOf(lowY, low.y, cellsPerUnitY, rows); row <= lastRow; ++row) {
        for (std::size_t column = cellOf(lowX, low.x, cellsPerUnitX, columns); column <= lastColumn; ++column) {
            std::vector<std::uint32_t>& cell = cells[row * columns + column];
            for (std::size_t i = 0; i < cell.size();) {
                if (isGone[cell[i]] || turnAt(cell[i]) > 0) { // a node that turned convex blocks nothing any more
                    cell[i] = cell.back();
                    cell.pop_back();
                } else if (blocks(cell[i], a, b, c)) {
                    return false;
                } else {
                    ++i;
                }
            }
        }
    }
    return true;
}

void EarCutter::cutEar(std::uint32_t node) {
    Node& b = nodes[node];
    Node& a = nodes[b.previous];
    Node& c = nodes[b.next];
    const std::uint32_t wire = wires++;
    ears.push_back({{b.previous, node, b.next}, {a.across, b.across, {wire, true}}});
    a.across = {wire, true};
    a.next = b.next;
    c.previous = b.previous;
    isGone[node] = true;
}

void EarCutter::cutOutline(std::uint32_t first) {
    std::size_t count = measured(first).size;
    if (count < 3) return;
    placeBlockers(first, count);
    std::uint32_t at = first;
    std::size_t missed = 0; // since the last ear
    const std::uint64_t most = forced + MOST_FORCED;
    while (count > 3) {
        if (forced < most ? isEar(at) : turnAt(at) > 0) {
            const std::uint32_t next = nodes[at].next;
            cutEar(at);
            --count;
            missed = 0;
            at = nodes[next].next; // the next but one: fewer slivers than a fan
            continue;
        }
        at = nodes[at].next;
        if (++missed < (forced < most ? count : std::min(count, HURRIED))) continue;

        // None is good: the first convex corner, or at least one that is flat.
        std::uint32_t best = at;
        int bestTurn = -2;
        for (std::size_t i = 0; i < missed; ++i, at = nodes[at].next) {
            const int turn = turnAt(at);
            if (turn <= bestTurn) continue;
            bestTurn = turn;
            best = at;
            if (turn > 0) break;
        }
        at = nodes[best].next;
        cutEar(best);
        --count;
        ++forced;
        missed = 0;
    }
    const Node& b = nodes[at];
    if (turnAt(at) <= 0) ++forced;
    ears.push_back({{b.previous, at, b.next}, {nodes[b.previous].across, b.across, nodes[b.next].across}});
}

void EarCutter::cut() {
    std::vector<Loop> outlines;
    std::vector<Loop> holes;
    for (const std::uint32_t first : loops) {
        const Loop loop = measured(first);
        (loop.area > 0.0 || loops.size() == 1 ? outlines : holes).push_back(loop);
    }
    if (outlines.empty()) std::swap(outlines, holes); // inside out: each for itself

    // Each hole goes to the smallest outline around it. Bridges are found from left to right, so that holes already
    // joined lie in the way of those to the right.
    std::vector<std::vector<Loop>> holesOf(outlines.size());
    for (const Loop& hole : holes) {
        std::size_t best = outlines.size();
        for (std::size_t i = 0; i < outlines.size() && outlines.size() > 1; ++i) {
            if ((best == outlines.size() || outlines[i].area < outlines[best].area) &&
                contains(outlines[i], nodes[hole.leftmost].at)) {
                best = i;
            }
        }
        holesOf[best == outlines.size() ? 0 : best].push_back(hole);
    }
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        std::stable_sort(holesOf[i].begin(), holesOf[i].end(), [this](const Loop& a, const Loop& b) {
            return isLeftOf(nodes[a.leftmost], nodes[b.leftmost]);
        });
        for (const Loop& hole : holesOf[i]) join(outlines[i].first, hole.leftmost);
    }
    isGone.assign(nodes.size(), false);
    for (const Loop& outline : outlines) cutOutline(outline.first);
}

} // namespace orva::tidy

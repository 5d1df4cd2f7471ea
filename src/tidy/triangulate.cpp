#include "tidy/triangulate.hpp"

#include "tidy/adjacency.hpp"
#include "tidy/ears.hpp"
#include "tidy/fit.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace orva::tidy {

namespace {

// Flips come to an end where rounding does not deceive; this many a triangle end them anyway.
constexpr std::size_t FLIPS = 20;

// Rounding of the sums that compare two diagonals.
constexpr double UNDECIDED = 1e-12;

class Triangulator {
public:
    Triangulator(const Surface& ofSurface, const std::vector<std::uint32_t>& regions, const types::Mesh<double>& ofSoup)
        : surface(ofSurface), region(regions), soup(ofSoup), corners(result.corners) {}

    Triangles run();

private:
    std::uint32_t addTriangle(std::uint32_t of, std::uint32_t piece);
    void setCorner(std::uint32_t corner, std::uint32_t point, std::uint32_t face, std::uint32_t soupCorner);
    void setBorder(std::uint32_t corner, std::uint32_t edge);
    void matchCorners(std::uint32_t a, std::uint32_t b);

    void listEdges(std::uint32_t of);
    void addPieces(std::uint32_t of);
    void addEars(std::uint32_t of);
    void project(const Vec3& normal);
    Vec2 projected(std::uint32_t point) const;
    void addLoops(std::uint32_t of);
    std::uint32_t edgeBehind(std::uint32_t edge) const;
    void matchAcrossPairs();
    void flipAll(std::uint32_t first);
    bool shouldFlip(std::uint32_t corner) const;
    void flip(std::uint32_t corner);

    const Surface& surface;
    const std::vector<std::uint32_t>& region;
    const types::Mesh<double>& soup;
    Triangles result;
    Corners& corners;
    Adjacency border;                    ///< by region
    std::vector<std::uint32_t> cornerOf; ///< by edge
    std::vector<std::uint32_t> edgeAt;   ///< by corner: the edge that its side is; NONE for an inner side
    std::vector<std::uint32_t> firstOut; ///< by point, of the region at hand
    std::vector<std::uint32_t> nextOut;  ///< by edge: another one out of the same point
    std::vector<std::uint32_t> wire;     ///< the first corner at an inner side, until the second comes
    std::vector<bool> isUsed;            ///< by edge
    std::vector<std::uint32_t> pairs;    ///< edges that run back and forth with nothing between: two by two
    std::vector<std::uint32_t> loop;
    std::vector<std::uint32_t> waiting;
    Fit fit;
    EarCutter cutter;
    int dropped = 2; ///< the axis along which the region is projected
    bool mirrored = false;
};

// ---- Bookkeeping ----

std::uint32_t Triangulator::addTriangle(std::uint32_t of, std::uint32_t piece) {
    const auto first = static_cast<std::uint32_t>(corners.point.size());
    corners.point.resize(first + 3U, NONE);
    corners.face.resize(first + 3U, NONE);
    corners.soup.resize(first + 3U, NONE);
    corners.twin.resize(first + 3U, NONE);
    edgeAt.resize(first + 3U, NONE);
    result.region.push_back(of);
    result.piece.push_back(piece);
    return first;
}

void Triangulator::setCorner(std::uint32_t corner, std::uint32_t point, std::uint32_t face, std::uint32_t soupCorner) {
    corners.point[corner] = point;
    corners.face[corner] = face;
    corners.soup[corner] = soupCorner;
}

// The side behind the corner is an edge of the region.
void Triangulator::setBorder(std::uint32_t corner, std::uint32_t edge) {
    cornerOf[edge] = corner;
    edgeAt[corner] = edge;
    const std::uint32_t twin = surface.edges[edge].twin;
    if (twin != NONE && cornerOf[twin] != NONE) matchCorners(corner, cornerOf[twin]);
}

void Triangulator::matchCorners(std::uint32_t a, std::uint32_t b) {
    corners.twin[a] = b;
    corners.twin[b] = a;
}

// The region's edges by the points that they come from.
void Triangulator::listEdges(std::uint32_t of) {
    const std::size_t first = border.first[of];
    const std::size_t last = border.first[of + 1];
    for (std::size_t i = first; i < last; ++i) firstOut[surface.edges[border.edges[i]].from] = NONE;
    for (std::size_t i = last; i-- > first;) {
        const std::uint32_t edge = border.edges[i];
        nextOut[edge] = std::exchange(firstOut[surface.edges[edge].from], edge);
    }
}

// ---- Pieces that stay ----

void Triangulator::addPieces(std::uint32_t of) {
    const Face& face = surface.faces[of];
    const auto first = static_cast<std::uint32_t>(corners.point.size());
    for (std::uint32_t i = 0; i < face.count; ++i) {
        const std::uint32_t piece = surface.order[face.first + i];
        const std::uint32_t corner = addTriangle(of, piece);
        for (std::uint32_t k = 0; k < 3; ++k) setCorner(corner + k, fit.point[3 * i + k], of, 3 * piece + k);
    }
    for (std::uint32_t i = 0; i < 3 * face.count; ++i) {
        if (fit.edge[i] != NONE) {
            setBorder(first + i, fit.edge[i]);
        } else if (fit.twin[i] < i) {
            matchCorners(first + i, first + fit.twin[i]);
        }
    }
}

// ---- Ears ----

// Along the axis on which the normal is longest, and so that the region is seen from outside.
void Triangulator::project(const Vec3& normal) {
    const double x = std::fabs(normal.x);
    const double y = std::fabs(normal.y);
    const double z = std::fabs(normal.z);
    dropped = x > y && x > z ? 0 : y > z ? 1 : 2;
    mirrored = (dropped == 0 ? normal.x : dropped == 1 ? normal.y : normal.z) < 0.0;
}

Vec2 Triangulator::projected(std::uint32_t point) const {
    const Vec3& at = surface.points[point];
    const Vec2 seen = dropped == 0 ? Vec2{at.y, at.z} : dropped == 1 ? Vec2{at.z, at.x} : Vec2{at.x, at.y};
    return mirrored ? Vec2{-seen.x, seen.y} : seen;
}

// Of several edges out of the point where an edge ends, the first clockwise from the edge as seen from there: between
// the two lies the inside of the region and nothing else.
std::uint32_t Triangulator::edgeBehind(std::uint32_t edge) const {
    const std::uint32_t at = surface.edges[edge].to;
    std::uint32_t only = NONE;
    int count = 0;
    for (std::uint32_t out = firstOut[at]; out != NONE; out = nextOut[out]) {
        if (isUsed[out]) continue;
        only = out;
        ++count;
    }
    if (count <= 1) return only;

    const Vec2 origin = projected(at);
    const Vec2 before = projected(surface.edges[edge].from);
    const Vec2 back{before.x - origin.x, before.y - origin.y};
    double best = 8.0;
    std::uint32_t found = only;
    for (std::uint32_t out = firstOut[at]; out != NONE; out = nextOut[out]) {
        if (isUsed[out]) continue;
        const Vec2 behind = projected(surface.edges[out].to);
        const Vec2 along{behind.x - origin.x, behind.y - origin.y};
        // Grows from 0 to 4 clockwise from `back`; straight back is a full turn.
        const double x = back.x * along.x + back.y * along.y;
        const double y = back.y * along.x - back.x * along.y;
        double angle = y >= 0.0 ? (x >= 0.0 ? y / (x + y) : 1.0 - x / (y - x))
                                : (x < 0.0 ? 2.0 - y / (-x - y) : 3.0 + x / (x - y));
        if (angle == 0.0) angle = 4.0;
        if (!(angle < best)) continue;
        best = angle;
        found = out;
    }
    return found;
}

void Triangulator::addLoops(std::uint32_t of) {
    listEdges(of);
    const std::size_t first = border.first[of];
    const std::size_t last = border.first[of + 1];
    for (std::size_t i = first; i < last; ++i) {
        if (isUsed[border.edges[i]]) continue;
        const std::uint32_t start = surface.edges[border.edges[i]].from;
        loop.clear();
        for (std::uint32_t edge = border.edges[i]; edge != NONE; edge = edgeBehind(edge)) {
            isUsed[edge] = true;
            loop.push_back(edge);
            if (surface.edges[edge].to == start) break;
        }
        if (loop.size() == 2) { // there is no triangle in it that its neighbours could be matched with
            pairs.insert(pairs.end(), loop.begin(), loop.end());
            continue;
        }
        for (const std::uint32_t edge : loop) {
            const std::uint32_t point = surface.edges[edge].from;
            cutter.addCorner(projected(point), point, edge, edge);
        }
        cutter.endLoop();
    }
}

// What lies behind the two edges of a pair becomes neighbours, across as many pairs as lie side by side.
void Triangulator::matchAcrossPairs() {
    if (pairs.empty()) return;
    std::vector<std::uint32_t> other(surface.edges.size(), NONE);
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        other[pairs[i]] = pairs[i + 1];
        other[pairs[i + 1]] = pairs[i];
    }
    for (const std::uint32_t first : pairs) {
        const std::uint32_t behind = surface.edges[first].twin;
        if (behind == NONE || cornerOf[behind] == NONE) continue;
        std::uint32_t across = first;
        while (across != NONE && other[across] != NONE) across = surface.edges[other[across]].twin;
        if (across != NONE && cornerOf[across] != NONE) matchCorners(cornerOf[behind], cornerOf[across]);
    }
}

void Triangulator::addEars(std::uint32_t of) {
    project(surface.faces[of].normal);
    cutter.clear();
    addLoops(of);
    if (cutter.nodes.empty()) return;
    cutter.cut();
    result.forcedEars += cutter.forced;

    wire.assign(cutter.wires, NONE);
    const auto first = static_cast<std::uint32_t>(corners.point.size());
    for (const EarCutter::Ear& ear : cutter.ears) {
        const std::uint32_t corner = addTriangle(of, NONE);
        for (std::uint32_t k = 0; k < 3; ++k) {
            const EarCutter::Node& node = cutter.nodes[ear.node[k]];
            const Edge& edge = surface.edges[node.label];
            setCorner(corner + k, node.point, edge.face, edge.corner);
        }
        for (std::uint32_t k = 0; k < 3; ++k) {
            const auto [number, isWire] = ear.across[k];
            if (!isWire) {
                setBorder(corner + k, number);
            } else if (wire[number] == NONE) {
                wire[number] = corner + k;
            } else {
                matchCorners(corner + k, wire[number]);
            }
        }
    }
    if (corners.point.size() - first > 3) flipAll(first);
}

// ---- Flips ----

bool Triangulator::shouldFlip(std::uint32_t corner) const {
    const std::uint32_t other = corners.twin[corner];
    const std::uint32_t a = corners.point[corner];
    const std::uint32_t b = corners.point[other];
    const std::uint32_t c = corners.point[previousCorner(corner)];
    const std::uint32_t d = corners.point[previousCorner(other)];
    if (c == d) return false;
    const Vec2 seenA = projected(a);
    const Vec2 seenB = projected(b);
    const Vec2 seenC = projected(c);
    const Vec2 seenD = projected(d);
    if (orientation(seenA, seenD, seenC) <= 0 || orientation(seenD, seenB, seenC) <= 0) return false;
    if (orientation(seenA, seenB, seenC) <= 0 || orientation(seenB, seenA, seenD) <= 0) return true;

    // Whether the angles at c and d together are more than half a turn: the sine of their sum, in space.
    const Vec3 ca = surface.points[a] - surface.points[c];
    const Vec3 cb = surface.points[b] - surface.points[c];
    const Vec3 da = surface.points[a] - surface.points[d];
    const Vec3 db = surface.points[b] - surface.points[d];
    const double first = squareRoot(squaredLength(cross(ca, cb))) * dot(da, db);
    const double second = squareRoot(squaredLength(cross(da, db))) * dot(ca, cb);
    return first + second < -UNDECIDED * (std::fabs(first) + std::fabs(second));
}

// The side between the triangles (a, b, c) and (b, a, d) goes from c to d instead: they become (a, d, c) and (b, c, d).
void Triangulator::flip(std::uint32_t corner) {
    const std::uint32_t other = corners.twin[corner];
    const std::uint32_t afterCorner = nextCorner(corner);
    const std::uint32_t afterOther = nextCorner(other);
    const auto copyCorner = [this](std::uint32_t from, std::uint32_t to) {
        setCorner(to, corners.point[from], corners.face[from], corners.soup[from]);
    };
    copyCorner(previousCorner(other), afterCorner);
    copyCorner(previousCorner(corner), afterOther);
    const auto moveSide = [this](std::uint32_t from, std::uint32_t to) {
        const std::uint32_t edge = std::exchange(edgeAt[from], NONE);
        const std::uint32_t twin = corners.twin[from];
        edgeAt[to] = edge;
        corners.twin[to] = twin;
        if (edge != NONE) cornerOf[edge] = to;
        if (twin != NONE) corners.twin[twin] = to;
    };
    moveSide(afterOther, corner); // a to d
    moveSide(afterCorner, other); // b to c
    matchCorners(afterCorner, afterOther);
}

void Triangulator::flipAll(std::uint32_t first) {
    const auto isInner = [&](std::uint32_t corner) { return edgeAt[corner] == NONE && corners.twin[corner] != NONE; };
    waiting.clear();
    for (auto corner = first; corner < corners.point.size(); ++corner) waiting.push_back(corner);
    std::size_t left = FLIPS * (corners.point.size() - first);
    while (!waiting.empty() && left > 0) {
        const std::uint32_t corner = waiting.back();
        waiting.pop_back();
        if (!isInner(corner) || !shouldFlip(corner)) continue;
        const std::uint32_t other = corners.twin[corner];
        flip(corner);
        --left;
        for (const std::uint32_t side : {corner, previousCorner(corner), other, previousCorner(other)})
            waiting.push_back(side);
    }
}

Triangles Triangulator::run() {
    collect(border, surface, surface.faces.size(), [this](const Edge& edge) { return region[edge.face]; });
    cornerOf.assign(surface.edges.size(), NONE);
    firstOut.assign(surface.points.size(), NONE);
    nextOut.assign(surface.edges.size(), NONE);
    isUsed.assign(surface.edges.size(), false);
    for (std::size_t i = 0; i < surface.faces.size(); ++i) {
        const auto of = static_cast<std::uint32_t>(i);
        if (region[i] != of || border.first[i] == border.first[i + 1]) continue;
        const std::span edges(border.edges.data() + border.first[i], border.first[i + 1] - border.first[i]);
        if (fit.test(surface, soup, surface.faces[i], edges)) {
            addPieces(of);
        } else {
            addEars(of);
        }
    }
    matchAcrossPairs();
    return std::move(result);
}

} // namespace

Triangles triangulate(const Surface& surface, const std::vector<std::uint32_t>& region,
                      const types::Mesh<double>& soup) {
    return Triangulator(surface, region, soup).run();
}

} // namespace orva::tidy

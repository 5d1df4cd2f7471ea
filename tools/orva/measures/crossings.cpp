// A tree of boxes finds the pairs of triangles that are near each other. Of most of them one lies on one side of the
// other's plane, which takes three signs to know; what the rest have in common is a part of the line in which their
// planes meet, and whether their parts of it overlap takes two signs more (P. Guigue and O. Devillers, "Fast and Robust
// Triangle-Triangle Overlap Test Using Orientation Predicates", 2003).
#include "measures/crossings.hpp"

#include "measures/box_tree.hpp"
#include "measures/orientation.hpp"
#include "mesh/vectors.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace orva::program {

namespace {

using types::Vec3;

constexpr std::size_t most = 1000000; // pairs

struct Triangle {
    std::array<std::size_t, 3> vertices{};
    std::array<Vec3, 3> corners;
    Projection projection; // in which it is no line
    int turns = 0;         // there, 1 counter-clockwise, -1 clockwise
};

using Signs = std::array<int, 3>;

// ---- in one plane ----

// That in which the triangle is largest. A triangle without area does not have one.
bool findProjection(Triangle& t) {
    const Vec3 normal = cross(t.corners[1] - t.corners[0], t.corners[2] - t.corners[0]);
    std::array<std::pair<double, Projection>, 3> choices{{{std::abs(normal.x), {&Vec3::y, &Vec3::z}},
                                                          {std::abs(normal.y), {&Vec3::z, &Vec3::x}},
                                                          {std::abs(normal.z), {&Vec3::x, &Vec3::y}}}};
    std::stable_sort(choices.begin(), choices.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    for (const auto& [size, choice] : choices) {
        t.projection = choice;
        t.turns = orientation(t.corners[0], t.corners[1], t.corners[2], choice);
        if (t.turns != 0) return true;
    }
    return false;
}

// Whether, seen so that the triangle is no line, one of its sides has the points beyond it: some may lie on its line,
// but not all.
template <typename Points> bool sidePartsFrom(const Triangle& t, const Points& points) {
    for (std::size_t k = 0; k < 3; ++k) {
        bool within = false;
        bool beyond = false;
        for (const Vec3& point : points) {
            const int side = t.turns * orientation(t.corners[k], t.corners[(k + 1) % 3], point, t.projection);
            within = within || side > 0;
            beyond = beyond || side < 0;
            if (within) break;
        }
        if (beyond && !within) return true;
    }
    return false;
}

// Whether a segment in the triangle's plane passes through its inside.
bool passesThrough(const std::array<Vec3, 2>& segment, const Triangle& t) {
    if (sidePartsFrom(t, segment)) return false;
    bool left = false;
    bool right = false;
    for (const Vec3& corner : t.corners) {
        const int side = orientation(segment[0], segment[1], corner, t.projection);
        left = left || side > 0;
        right = right || side < 0;
    }
    return left && right;
}

// ---- in two planes ----

bool straddles(const Signs& signs) {
    return std::max({signs[0], signs[1], signs[2]}) > 0 && std::min({signs[0], signs[1], signs[2]}) < 0;
}

// The sides of a plane on which the corners of s lie. A corner that both have lies in it.
Signs sidesOf(const Triangle& s, const Triangle& plane) {
    Signs signs{};
    for (std::size_t k = 0; k < 3; ++k) {
        const bool shared =
            std::find(plane.vertices.begin(), plane.vertices.end(), s.vertices[k]) != plane.vertices.end();
        signs[k] = shared ? 0 : orientation(plane.corners[0], plane.corners[1], plane.corners[2], s.corners[k]);
    }
    return signs;
}

// Turns the triangle so that its first corner is alone on its side. Gives whether that is the side in front.
bool turnLoneCornerFirst(std::array<Vec3, 3>& corners, const Signs& signs) {
    const auto inFront = std::count(signs.begin(), signs.end(), 1);
    const int lone = inFront == 1 ? 1 : -1;
    const auto first = std::find(signs.begin(), signs.end(), lone) - signs.begin();
    std::rotate(corners.begin(), corners.begin() + first, corners.end());
    return lone > 0;
}

// Of two triangles that each have corners on both sides of the other's plane: whether they have a segment in common.
bool segmentsOverlap(const Triangle& s, const Signs& ofS, const Triangle& t, const Signs& ofT) {
    std::array<Vec3, 3> a = s.corners;
    std::array<Vec3, 3> b = t.corners;
    // The lone corners shall lie in front: where one lies behind, the other triangle is seen from its back.
    const bool aInFront = turnLoneCornerFirst(a, ofS);
    const bool bInFront = turnLoneCornerFirst(b, ofT);
    if (!aInFront) std::swap(b[1], b[2]);
    if (!bInFront) std::swap(a[1], a[2]);
    // Along the line, a reaches from its side 01 to its side 02, and b from its side 02 to its side 01.
    return orientation(a[0], a[1], b[0], b[1]) < 0 && orientation(a[0], a[2], b[0], b[2]) > 0;
}

// ---- how deep ----

// How far the triangles reach into each other in that direction, in which they have to part.
double overlapAlong(const Vec3& axis, const Triangle& s, const Triangle& t) {
    const double length = std::sqrt(dot(axis, axis));
    double lowS = std::numeric_limits<double>::infinity();
    double highS = -lowS;
    double lowT = lowS;
    double highT = highS;
    const Vec3& origin = s.corners[0];
    for (std::size_t k = 0; k < 3; ++k) {
        const double ofS = dot(s.corners[k] - origin, axis) / length;
        const double ofT = dot(t.corners[k] - origin, axis) / length;
        lowS = std::min(lowS, ofS);
        highS = std::max(highS, ofS);
        lowT = std::min(lowT, ofT);
        highT = std::max(highT, ofT);
    }
    return std::min(highS - lowT, highT - lowS);
}

Vec3 normalOf(const Triangle& t) {
    return cross(t.corners[1] - t.corners[0], t.corners[2] - t.corners[0]);
}

// The most that a corner of s is off the plane of t.
double farthestFrom(const Triangle& t, const Triangle& s) {
    const Vec3 normal = normalOf(t);
    const double length = std::sqrt(dot(normal, normal));
    double farthest = 0.0;
    for (const Vec3& corner : s.corners) {
        farthest = std::max(farthest, std::abs(dot(corner - t.corners[0], normal)) / length);
    }
    return farthest;
}

// Convex things are clear of each other once they are along one of a few directions: the normals of their faces, and
// those of two edges. note: triangles in one plane would be clear at once if one rose from it. Of them it is asked how
// far they overlap in it.
bool isDeeperThan(double tolerance, const Triangle& s, const Triangle& t) {
    const bool flat = farthestFrom(s, t) <= tolerance && farthestFrom(t, s) <= tolerance;
    const auto clears = [&](const Vec3& axis, double size) {
        constexpr double parallel = 1e-20; // edges with less of an angle, squared, have no direction of their own
        if (!(dot(axis, axis) > parallel * size)) return false;
        return overlapAlong(axis, s, t) <= tolerance;
    };
    const Vec3 normalS = normalOf(s);
    const Vec3 normalT = normalOf(t);
    if (!flat && (clears(normalS, 0.0) || clears(normalT, 0.0))) return false;
    for (std::size_t i = 0; i < 3; ++i) {
        const Vec3 ofS = s.corners[(i + 1) % 3] - s.corners[i];
        const Vec3 ofT = t.corners[(i + 1) % 3] - t.corners[i];
        if (clears(cross(normalS, ofS), 0.0) || clears(cross(normalT, ofT), 0.0)) return false;
        for (std::size_t j = 0; j < 3 && !flat; ++j) {
            const Vec3 other = t.corners[(j + 1) % 3] - t.corners[j];
            if (clears(cross(ofS, other), dot(ofS, ofS) * dot(other, other))) return false;
        }
    }
    return true;
}

// ---- all pairs ----

Box boxOf(const Triangle& t) {
    const auto& [a, b, c] = t.corners;
    return {{std::min({a.x, b.x, c.x}), std::min({a.y, b.y, c.y}), std::min({a.z, b.z, c.z})},
            {std::max({a.x, b.x, c.x}), std::max({a.y, b.y, c.y}), std::max({a.z, b.z, c.z})}};
}

bool overlap(const Box& a, const Box& b) {
    return a.low.x <= b.high.x && b.low.x <= a.high.x && a.low.y <= b.high.y && b.low.y <= a.high.y &&
           a.low.z <= b.high.z && b.low.z <= a.high.z;
}

std::size_t countShared(const Triangle& s, const Triangle& t) {
    std::size_t count = 0;
    for (const std::size_t vertex : s.vertices) {
        count += vertex == t.vertices[0] || vertex == t.vertices[1] || vertex == t.vertices[2] ? 1 : 0;
    }
    return count;
}

// An edge that lies in a triangle, and on which side of it its own triangle goes on.
struct Touch {
    std::array<std::size_t, 2> edge{};
    std::size_t triangle = 0;
    bool inFront = false;
    std::size_t own = 0;

    bool operator<(const Touch& touch) const {
        return std::tie(edge, triangle, inFront) < std::tie(touch.edge, touch.triangle, touch.inFront);
    }
};

class Search {
public:
    Search(std::vector<Triangle> all, double theTolerance) : triangles(std::move(all)), tolerance(theTolerance) {}

    void run();
    Crossings found;

private:
    void look(std::size_t i, std::size_t j);
    void rememberTouch(std::size_t own, const Signs& signs, std::size_t other);
    void lookAtTouches();
    void count(bool deep, std::size_t i, std::size_t j);

    std::vector<Triangle> triangles;
    double tolerance;
    std::vector<Box> boxes;
    std::vector<Touch> touches;
};

void Search::run() {
    boxes.reserve(triangles.size());
    for (const Triangle& t : triangles) boxes.push_back(boxOf(t));
    const BoxTree tree = makeBoxTree(boxes);
    for (std::size_t i = 0; i < triangles.size() && found.complete; ++i) {
        const Box& box = boxes[i];
        visit(
            tree, [&](const Box& other) { return overlap(other, box); },
            [&](std::size_t j) {
                if (j > i && found.complete && overlap(boxes[j], box)) look(i, j);
            });
    }
    lookAtTouches();
}

void Search::count(bool deep, std::size_t i, std::size_t j) {
    if (deep && found.pairs == 0) {
        const Box& a = boxes[i];
        const Box& b = boxes[j];
        const Vec3 low{std::max(a.low.x, b.low.x), std::max(a.low.y, b.low.y), std::max(a.low.z, b.low.z)};
        const Vec3 high{std::min(a.high.x, b.high.x), std::min(a.high.y, b.high.y), std::min(a.high.z, b.high.z)};
        found.place = 0.5 * low + 0.5 * high;
    }
    ++(deep ? found.pairs : found.shallow);
    if (found.pairs + found.shallow >= most) found.complete = false;
}

void Search::look(std::size_t i, std::size_t j) {
    const Triangle& s = triangles[i];
    const Triangle& t = triangles[j];
    // Most neighbours lie side by side, seen from where one of them is widest. Then they have nothing in common but
    // what they share, in one plane or in two.
    if (sidePartsFrom(s, t.corners) || sidePartsFrom(t, s.corners)) return;
    const Signs ofS = sidesOf(s, t);
    if (ofS == Signs{}) {
        count(isDeeperThan(tolerance, s, t), i, j); // in one plane, and not side by side
        return;
    }
    if (countShared(s, t) == 2) return; // in two planes that meet in their edge
    if (!straddles(ofS)) return rememberTouch(i, ofS, j);
    const Signs ofT = sidesOf(t, s);
    if (!straddles(ofT)) return rememberTouch(j, ofT, i);
    if (segmentsOverlap(s, ofS, t, ofT)) count(isDeeperThan(tolerance, s, t), i, j);
}

void Search::rememberTouch(std::size_t own, const Signs& signs, std::size_t other) {
    if (std::count(signs.begin(), signs.end(), 0) != 2) return;
    const Triangle& s = triangles[own];
    const auto off = static_cast<std::size_t>(
        std::find_if(signs.begin(), signs.end(), [](int sign) { return sign != 0; }) - signs.begin());
    const std::size_t from = (off + 1) % 3;
    const std::size_t to = (off + 2) % 3;
    if (!passesThrough({s.corners[from], s.corners[to]}, triangles[other])) return;
    const auto [low, high] = std::minmax(s.vertices[from], s.vertices[to]);
    touches.push_back({{low, high}, other, signs[off] > 0, own});
}

void Search::lookAtTouches() {
    std::sort(touches.begin(), touches.end());
    for (std::size_t first = 0; first < touches.size();) {
        std::size_t end = first;
        const Touch& touch = touches[first];
        while (end < touches.size() && touches[end].edge == touch.edge && touches[end].triangle == touch.triangle) {
            ++end;
        }
        const Touch& last = touches[end - 1];
        if (touch.inFront != last.inFront) { // behind it first, in front of it last
            const Triangle& t = triangles[touch.triangle];
            const bool deep =
                std::min(farthestFrom(t, triangles[touch.own]), farthestFrom(t, triangles[last.own])) > tolerance;
            count(deep, last.own, touch.triangle);
        }
        first = end;
    }
}

// A power of two times the largest coordinate is near 1, so that no product leaves the range of a double.
int exponentOf(const SharedVertices& mesh) {
    double largest = 0.0;
    for (const Vec3& p : mesh.positions) largest = std::max({largest, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
    int exponent = 0;
    std::frexp(largest, &exponent);
    return exponent;
}

} // namespace

Crossings findCrossings(const SharedVertices& mesh, const std::vector<bool>& leftOut, double tolerance) {
    const int exponent = exponentOf(mesh);
    const auto scaled = [exponent](const Vec3& p) {
        return Vec3{std::ldexp(p.x, -exponent), std::ldexp(p.y, -exponent), std::ldexp(p.z, -exponent)};
    };
    std::vector<Vec3> positions;
    positions.reserve(mesh.positions.size());
    for (const Vec3& p : mesh.positions) positions.push_back(scaled(p));

    std::vector<Triangle> triangles;
    triangles.reserve(mesh.corners.size() / 3);
    for (std::size_t i = 0; i < mesh.corners.size(); i += 3) {
        if (leftOut[i / 3]) continue;
        Triangle triangle;
        triangle.vertices = {mesh.corners[i], mesh.corners[i + 1], mesh.corners[i + 2]};
        for (std::size_t k = 0; k < 3; ++k) triangle.corners[k] = positions[triangle.vertices[k]];
        if (findProjection(triangle)) triangles.push_back(triangle);
    }

    Search search(std::move(triangles), std::ldexp(tolerance, -exponent));
    search.run();
    const Vec3& place = search.found.place;
    search.found.place = {std::ldexp(place.x, exponent), std::ldexp(place.y, exponent), std::ldexp(place.z, exponent)};
    return search.found;
}

} // namespace orva::program

// Bytes to solids on a grid of integers from 0 to 4: boxes, whole or with divided faces, tetrahedra and prisms. Faces
// in one plane, edges that meet and corners on faces are the rule there, not the exception. A solid may be moved, or
// each of its corners, by multiples of half the tolerance, stand inside out, or come together with others as one
// operand.
//
// Where all operands are single solids exactly on the grid, the laws of solids hold, too, and are asked for: a corner
// of such a result is where three planes of the grid meet, and lies either in a fourth one or at least 1.7e-6 from it.
// (Planes through three points of the grid have integer normals of length 28 at most. So the determinant of three is
// 28^3 at most, and the distance at least 1 / (28^3 * 28).) The tolerance then never takes one thing for another.
#include "bytes.hpp"
#include "compare.hpp"
#include "measures.hpp"
#include "targets.hpp"

#include <cmath>
#include <string>
#include <utility>

namespace orva::fuzz {

namespace {

using test::Vec3;
using test::Vertex;

constexpr int GRID = 4;

struct Operand {
    Mesh mesh;
    bool exact = true; ///< a single solid, exactly on the grid
};

Vec3 gridPoint(Bytes& bytes) {
    const double x = bytes.integer(0, GRID);
    const double y = bytes.integer(0, GRID);
    const double z = bytes.integer(0, GRID);
    return {x, y, z};
}

Mesh box(Bytes& bytes, int steps) {
    Vec3 low{};
    Vec3 high{};
    for (double Vec3::*axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        const int corners = bytes.next();
        const int from = corners % GRID;
        low.*axis = from;
        high.*axis = from + 1 + corners / GRID % (GRID - from);
    }
    return test::griddedBox(low, high, steps);
}

Mesh prism(Bytes& bytes) {
    const int axis = bytes.integer(0, 2);
    std::array<Vec3, 3> corners{gridPoint(bytes), gridPoint(bytes), gridPoint(bytes)};
    const double height = bytes.integer(1, GRID);
    double Vec3::*up = axis == 0 ? &Vec3::x : axis == 1 ? &Vec3::y : &Vec3::z;
    const double foot = corners[0].*up <= GRID - height ? corners[0].*up : GRID - height;
    for (Vec3& corner : corners) corner.*up = foot;
    Vec3 by{};
    by.*up = height;
    return test::prism(corners[0], corners[1], corners[2], by);
}

Mesh insideOut(Mesh mesh) {
    for (std::size_t i = 0; i < mesh.vertices.size(); i += 3) std::swap(mesh.vertices[i], mesh.vertices[i + 2]);
    return mesh;
}

// Off the grid by up to four tolerances, in halves.
Vec3 nudge(Bytes& bytes) {
    const double x = bytes.integer(-8, 8) * 0.5e-6;
    const double y = bytes.integer(-8, 8) * 0.5e-6;
    const double z = bytes.integer(-8, 8) * 0.5e-6;
    return {x, y, z};
}

// Corners that were one stay one.
Mesh withCornersNudged(Mesh mesh, Bytes& bytes) {
    std::vector<std::pair<Vec3, Vec3>> moved;
    const auto find = [&moved](const Vec3& p) {
        auto at = moved.begin();
        while (at != moved.end() && (at->first.x != p.x || at->first.y != p.y || at->first.z != p.z)) ++at;
        return at;
    };
    for (Vertex& vertex : mesh.vertices) {
        auto at = find(vertex.pos);
        if (at == moved.end()) {
            const Vec3 by = nudge(bytes);
            moved.push_back({vertex.pos, {vertex.pos.x + by.x, vertex.pos.y + by.y, vertex.pos.z + by.z}});
            at = moved.end() - 1;
        }
        vertex.pos = at->second;
    }
    return mesh;
}

Operand solid(Bytes& bytes) {
    const int form = bytes.next();
    Operand operand;
    switch (form % 8) {
    case 0:
    case 1:
    case 2:
    case 3: // with divided faces now and then: they are four times as many
        operand.mesh = box(bytes, form / 8 == 3 ? 2 : 1);
        break;
    case 4:
    case 5: {
        const Vec3 a = gridPoint(bytes);
        const Vec3 b = gridPoint(bytes);
        const Vec3 c = gridPoint(bytes);
        const Vec3 d = gridPoint(bytes);
        operand.mesh = test::tetrahedron(a, b, c, d);
        break;
    }
    default:
        operand.mesh = prism(bytes);
        break;
    }

    // A flat one is no solid; one that came out turned around is turned back.
    const double volume = test::volume(operand.mesh);
    if (std::abs(volume) < 0.1) operand.exact = false;
    if (volume < 0) operand.mesh = insideOut(std::move(operand.mesh));

    switch (form / 8 % 8) {
    case 4:
        operand.mesh = test::moved(std::move(operand.mesh), nudge(bytes));
        operand.exact = false;
        break;
    case 5:
    case 6:
        operand.mesh = withCornersNudged(std::move(operand.mesh), bytes);
        operand.exact = false;
        break;
    case 7:
        operand.mesh = insideOut(std::move(operand.mesh));
        operand.exact = false;
        break;
    default:
        break;
    }

    // What the corners carry has to arrive as well.
    const double carried = form;
    for (std::size_t i = 0; i < operand.mesh.vertices.size(); ++i) {
        operand.mesh.vertices[i].normal = {carried, static_cast<double>(i), -0.0};
        operand.mesh.vertices[i].aux = {static_cast<double>(i % 3), carried};
    }
    return operand;
}

// One solid, or some as one list of triangles.
Operand operand(Bytes& bytes, std::size_t mostTriangles) {
    Operand all = solid(bytes);
    for (int more = bytes.integer(0, 15) - 11; more > 0; --more) {
        const Operand another = solid(bytes);
        if (all.mesh.vertices.size() + another.mesh.vertices.size() > 3 * mostTriangles) break;
        all.mesh = test::joined(std::move(all.mesh), another.mesh);
        all.exact = false;
    }
    return all;
}

// ---- laws ----

// Distances and products of numbers below 10: rounding stays far below this.
constexpr double SMALL = 1e-6;

void requireEqual(const char* law, double actual, double expected) {
    if (std::abs(actual - expected) <= SMALL) return;
    throw Difference(std::string(law) + ": " + std::to_string(actual) + " against " + std::to_string(expected));
}

bool within(const Mesh& mesh, const Vec3& p) {
    return test::windingNumber(mesh, p) > 0.5;
}

// Two points that lie in no plane of the grid; asked only where they are clear of every surface.
std::array<Vec3, 2> points(Bytes& bytes) {
    std::array<Vec3, 2> points{gridPoint(bytes), gridPoint(bytes)};
    for (Vec3& p : points) p = {p.x + 0.3183, p.y + 0.2718, p.z + 0.4142};
    return points;
}

void requireWithin(const char* law, const Mesh& result, const Vec3& p, bool expected) {
    const double winding = test::windingNumber(result, p);
    if (std::abs(winding - (expected ? 1 : 0)) <= SMALL) return;
    throw Difference(std::string(law) + ": the result winds " + std::to_string(winding) + " times around " +
                     std::to_string(p.x) + " " + std::to_string(p.y) + " " + std::to_string(p.z));
}

void lawsOfPairs(const Mesh& a, const Mesh& b, const std::array<Mesh, 3>& results, Bytes& bytes) {
    const auto& [united, subtracted, common] = results;
    const double both = test::volume(common);
    requireEqual("volume of a union and an intersection", test::volume(united) + both,
                 test::volume(a) + test::volume(b));
    requireEqual("volume of a difference", test::volume(subtracted), test::volume(a) - both);
    for (const Vec3& p : points(bytes)) {
        if (test::distanceTo(a, p) < 1e-3 || test::distanceTo(b, p) < 1e-3) continue;
        requireWithin("union", united, p, within(a, p) || within(b, p));
        requireWithin("difference", subtracted, p, within(a, p) && !within(b, p));
        requireWithin("intersection", common, p, within(a, p) && within(b, p));
    }
}

void lawsOfBatches(const Mesh& base, const std::vector<Mesh>& cutters, const std::vector<Mesh>& results, Bytes& bytes) {
    for (const Mesh& result : results) {
        requireEqual("volume in turn and as a union", test::volume(result), test::volume(results[0]));
    }
    for (const Vec3& p : points(bytes)) {
        bool expected = within(base, p);
        bool clear = test::distanceTo(base, p) > 1e-3;
        for (const Mesh& cutter : cutters) {
            expected = expected && !within(cutter, p);
            clear = clear && test::distanceTo(cutter, p) > 1e-3;
        }
        if (!clear) continue;
        for (const Mesh& result : results) requireWithin("base minus cutters", result, p, expected);
    }
}

} // namespace

void solids(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const int program = bytes.next();
    const Interface door = program / 4 % 8 == 7 ? Interface::C : Interface::Cpp;
    switch (program % 4) {
    case 0:
    case 1: { // two operands, every operation
        const Operand a = operand(bytes, 48);
        const Operand b = operand(bytes, 24);
        const std::array<Mesh, 3> results = allThree(a.mesh, b.mesh, door);
        if (a.exact && b.exact) lawsOfPairs(a.mesh, b.mesh, results, bytes);
        break;
    }
    case 2: { // a base and cutters
        const Operand base = operand(bytes, 32);
        bool exact = base.exact;
        std::vector<Mesh> cutters;
        for (int count = bytes.integer(0, 3); count > 0; --count) {
            Operand cutter = solid(bytes);
            exact = exact && cutter.exact;
            cutters.push_back(std::move(cutter.mesh));
        }
        const std::vector<Mesh> results = allBatches(base.mesh, cutters, door);
        if (exact && !cutters.empty()) lawsOfBatches(base.mesh, cutters, results, bytes);
        break;
    }
    default: { // results as operands: planes computed from corners that were cut
        Mesh result = solid(bytes).mesh;
        for (int steps = bytes.integer(1, 3); steps > 0 && result.vertices.size() < std::size_t{3} * 60; --steps) {
            const int operation = bytes.next();
            const Mesh other = solid(bytes).mesh;
            const bool swapped = operation / 3 % 2 == 1;
            result =
                one(static_cast<std::size_t>(operation % 3), swapped ? other : result, swapped ? result : other, door);
        }
        break;
    }
    }
}

} // namespace orva::fuzz

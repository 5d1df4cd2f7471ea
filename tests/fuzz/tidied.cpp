// Bytes to soups of triangles on a coarse grid, off it by about the tolerance, or of any doubles, and to solids for the
// whole chain. Whatever comes in: indices in range, no face with equal corners, closed where the report says so, and no
// more open edges than came in; tidied solids on the grid have the volume of their soup.
#include "bytes.hpp"
#include "indexed.hpp"
#include "measures.hpp"
#include "memory.hpp"
#include "orva/tidy.hpp"
#include "targets.hpp"

#include "orva/bspcsg.hpp"

#include <array>
#include <cmath>
#include <limits>

namespace orva::fuzz {

namespace {

using test::Mesh;
using test::Vec3;

void require(const char* law, bool holds) {
    if (!holds) throw Difference(law);
}

tidy::Options options(Bytes& bytes) {
    static constexpr std::array<double, 8> lengths{0, 0, 0, 0, 1e-6, 1e-3, 0.5, 1e9};
    tidy::Options options;
    options.merge = static_cast<tidy::Merge>(bytes.integer(0, 2));
    options.tolerance = lengths[static_cast<std::size_t>(bytes.integer(0, 7))];
    options.gapWidth = lengths[static_cast<std::size_t>(bytes.integer(0, 7))];
    return options;
}

double coordinate(Bytes& bytes) {
    const int kind = bytes.next();
    if (kind < 192) return kind % 5;
    if (kind < 224) return kind % 5 + bytes.integer(-8, 8) * 0.5e-6;
    if (kind < 248) return bytes.integer(-127, 128) / 16.0;
    return bytes.any();
}

Mesh triangles(Bytes& bytes, int most) {
    Mesh mesh;
    const int corners = bytes.integer(0, 3 * most + 2);
    for (int i = 0; i < corners; ++i) {
        const int again = mesh.vertices.empty() ? 255 : bytes.next();
        if (again < 160) {
            const Vec3 p = mesh.vertices[static_cast<std::size_t>(again) % mesh.vertices.size()].pos;
            mesh.vertices.push_back({p, {}, {}});
        } else {
            Vec3 p;
            p.x = coordinate(bytes);
            p.y = coordinate(bytes);
            p.z = coordinate(bytes);
            mesh.vertices.push_back({p, {}, {static_cast<double>(again % 2), 0}});
        }
    }
    return mesh;
}

void requireSound(const tidy::Solid& solid, const tidy::Report& report) {
    require("corners and origins for each face",
            solid.corners.size() == solid.faces.size() && solid.origins.size() == solid.faces.size());
    const test::Counted counted = test::count(solid);
    require("no face with equal corners", counted.badFaces == 0);
    require("no vertex in no face", counted.unusedVertices == 0);
    require("one umbrella a vertex", counted.dividedVertices == 0);
    require("open edges are counted", counted.openEdges <= report.openEdges);
    require("closed where the report says so",
            !report.closed || (counted.openEdges == 0 && counted.repeatedEdges == 0));
}

Mesh box(Bytes& bytes) {
    Vec3 low{};
    Vec3 high{};
    for (double Vec3::*axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        const int corners = bytes.next();
        low.*axis = corners % 4;
        high.*axis = corners % 4 + 1 + corners / 4 % (4 - corners % 4);
    }
    return test::griddedBox(low, high, bytes.integer(0, 7) == 7 ? 2 : 1);
}

void soupOfBytes(Bytes& bytes) {
    const tidy::Options how = options(bytes);
    const int marks = bytes.integer(0, 3);
    const Mesh soup = triangles(bytes, 24);
    std::vector<tidy::Origin> origins;
    for (std::size_t i = 0; marks > 0 && i < soup.vertices.size() / 3; ++i) {
        const auto face = static_cast<std::uint32_t>(marks == 1 ? static_cast<int>(i) : bytes.integer(0, marks));
        origins.push_back({face % 2, face});
    }
    tidy::Solid solid;
    const tidy::Report report = tidy::tidySoup(solid, soup, origins, how);
    requireSound(solid, report);
    require("all triangles are counted", report.soupTriangles == soup.vertices.size() / 3);
}

void solidsOfBytes(Bytes& bytes) {
    const int operation = bytes.integer(0, 2);
    tidy::Options how;
    how.merge = static_cast<tidy::Merge>(bytes.integer(0, 2));
    how.scale = false;
    const Mesh a = box(bytes);
    const Mesh b = box(bytes);
    tidy::Solid solid;
    tidy::Report report;
    Mesh soup;
    if (operation == 0) {
        report = tidy::unionSolid(solid, std::vector<Mesh>{a, b}, how);
        bspcsg::unionMesh(soup, a, b);
    } else if (operation == 1) {
        report = tidy::subtractSolid(solid, a, std::vector<Mesh>{b}, tidy::Cutting::InTurn, how);
        bspcsg::subtractMesh(soup, a, b);
    } else {
        report = tidy::intersectSolid(solid, std::vector<Mesh>{a, b}, how);
        bspcsg::intersectMesh(soup, a, b);
    }
    requireSound(solid, report);
    require("closed", report.closed);
    require("the volume of the soup", std::abs(test::volume(solid) - test::volume(soup)) <= 1e-3);
}

} // namespace

void tidied(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    allowWorkingMemory(std::numeric_limits<std::size_t>::max());
    if (bytes.integer(0, 3) == 3) {
        solidsOfBytes(bytes);
    } else {
        soupOfBytes(bytes);
    }
}

} // namespace orva::fuzz

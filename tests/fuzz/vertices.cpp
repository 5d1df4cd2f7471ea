// Bytes to triangles whose corners are any doubles at all: NaN, infinities, subnormals, values that overflow or vanish
// in products, and among them plain small numbers, without which nothing would ever meet. No laws hold here; the bits
// of the reference are all there is to ask for.
#include "bytes.hpp"
#include "compare.hpp"
#include "targets.hpp"

#include <cmath>
#include <limits>

namespace orva::fuzz {

namespace {

using test::Vertex;

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double UNKNOWN = std::numeric_limits<double>::quiet_NaN();

constexpr double SPECIAL[]{
    UNKNOWN,
    INF,
    -INF,
    -0.0,
    0x1p-1074,
    -0x1p-1074,
    0x1p-1030,
    0x1p-1022, // none, and the smallest
    0x1.fffffffffffffp1023,
    -0x1.fffffffffffffp1023,
    1e308,
    -1e300,
    1e200,
    1e155, // products overflow
    -1e154,
    1e103,
    1e102,
    1e39,
    -3.5e38,
    3.4028235e38, // cubes; and beyond floats
    1e-200,
    -1e-162,
    1e-154,
    1e-108,
    1e-45,
    1.2e-38,
    1e-39, // products vanish; beneath floats
    1e-6,
    -1e-6,
    0x1.0c6f7a0b5ed8dp-20,
    0x1.0c6f7a0b5ed8ep-20,
    0.5e-6,
    2e-6, // the tolerance and beside it
    1e9,
    -3e9,
    4503599627370496.0,
    9007199254740993.0, // rounding as coarse as that
};

double coordinate(Bytes& bytes) {
    constexpr int specials = static_cast<int>(std::size(SPECIAL));
    const int kind = bytes.next();
    if (kind < 96) return kind % 8;                                   // on a grid
    if (kind < 128) return kind % 4 + bytes.integer(-8, 8) * 0.25e-6; // about a tolerance off it
    if (kind < 160) return bytes.integer(-127, 128) / 16.0;           // anywhere
    if (kind < 160 + specials) return SPECIAL[kind - 160];
    return bytes.any();
}

Vertex vertex(Bytes& bytes, bool carries) {
    Vertex vertex;
    vertex.pos.x = coordinate(bytes);
    vertex.pos.y = coordinate(bytes);
    vertex.pos.z = coordinate(bytes);
    if (carries) {
        vertex.normal.x = coordinate(bytes);
        vertex.aux[1] = coordinate(bytes);
    }
    return vertex;
}

Mesh mesh(Bytes& bytes, int mostTriangles, bool carries) {
    Mesh mesh;
    const int form = bytes.next();
    // Now and then one or two vertices that make no triangle.
    const int vertices = 3 * (form % (mostTriangles + 1)) + (form >= 240 ? form % 3 : 0);
    for (int i = 0; i < vertices; ++i) {
        // A corner that was there already, so that triangles hang together.
        const int again = mesh.vertices.empty() ? 255 : bytes.next();
        if (again < 128) {
            mesh.vertices.push_back(mesh.vertices[static_cast<std::size_t>(again) % mesh.vertices.size()]);
        } else {
            mesh.vertices.push_back(vertex(bytes, carries));
        }
    }
    return mesh;
}

} // namespace

void vertices(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const int program = bytes.next();
    const Interface door = program / 4 % 8 == 7 ? Interface::C : Interface::Cpp;
    const bool carries = program / 32 % 4 == 3;
    switch (program % 4) {
    case 0:
    case 1: {
        const Mesh a = mesh(bytes, 12, carries);
        const Mesh b = mesh(bytes, 8, carries);
        allThree(a, b, door);
        break;
    }
    case 2: {
        const Mesh base = mesh(bytes, 8, carries);
        std::vector<Mesh> cutters;
        for (int count = bytes.integer(0, 3); count > 0; --count) cutters.push_back(mesh(bytes, 4, carries));
        allBatches(base, cutters, door);
        break;
    }
    default: {
        const Mesh a = mesh(bytes, 8, carries);
        allThree(a, a, door);
        break;
    }
    }
}

} // namespace orva::fuzz

/// @file
/// The mesh that the operations in orva/bspcsg.hpp take and give: a plain list of triangles, three vertices each.
///
/// One triangle of the plane z = 0, seen counter-clockwise from above, spelled out in memory:
///
///     vertices[0]   pos 0 0 0   normal 0 0 1   aux 0 0
///     vertices[1]   pos 1 0 0   normal 0 0 1   aux 1 0
///     vertices[2]   pos 0 1 0   normal 0 0 1   aux 0 1
///
/// The next triangle starts at vertices[3]. There is no index array and no sharing: all that a corner carries is inside
/// its own vertex, 64 bytes of eight doubles.
#ifndef ORVA_TYPES_HPP
#define ORVA_TYPES_HPP

#include <array>
#include <type_traits>
#include <vector>

namespace orva::types {

/// Three doubles: a position or a direction.
struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A corner of a triangle. The geometry reads `pos` alone; the other five values travel with it.
struct Vertex {
    /// Position, in the unit of the host's choice. The tolerance of every operation is 1e-6 of that unit.
    Vec3 pos{};
    /// Carried through; interpolated linearly where a triangle is cut (never made unit length again), negated where an
    /// operation turns a surface inside out.
    Vec3 normal{};
    /// Two values of the host's own, texture coordinates for instance: carried through, interpolated linearly where a
    /// triangle is cut. A value that is equal at the three corners of a triangle thus marks every piece of it.
    std::array<double, 2> aux{};
};

static_assert(sizeof(Vertex) == 8 * sizeof(double), "a vertex is eight doubles and nothing else");

/// A list of triangles. The outside of a triangle is the side from which its corners run counter-clockwise.
///
/// One or two vertices behind the last whole triangle belong to no triangle and are ignored on input. The storage is
/// the standard allocator's: the host may fill, move and drop a mesh like any other vector.
template <typename T> struct Mesh {
    static_assert(std::is_same_v<T, double>, "meshes are double precision: use Mesh<double>");

    std::vector<Vertex> vertices;
};

} // namespace orva::types

#endif

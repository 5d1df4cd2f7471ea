// Meshes to test with, and the numbers to make them from: only additions, products, divisions and square roots, so that
// every platform makes the same bits.
#pragma once

#include "orva/types.hpp"

#include <cstdint>
#include <vector>

namespace orva::test {

using types::Vec3;
using types::Vertex;
using Mesh = types::Mesh<double>;

/// A source of numbers that is the same on every platform (splitmix64; S. Vigna's constants).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    std::uint64_t bits();
    double uniform(double low, double high);
    int integer(int low, int high); ///< both ends included

private:
    std::uint64_t state_;
};

Vertex at(double x, double y, double z);
Mesh triangle(const Vec3& a, const Vec3& b, const Vec3& c);

/// The box between two corners, 12 triangles, outward normals, `aux` running over each face.
Mesh box(const Vec3& low, const Vec3& high);
Mesh unitCube();

/// The same box with every face divided into steps x steps squares.
Mesh griddedBox(const Vec3& low, const Vec3& high, int steps);

/// Outward where d lies above a, b, c, the side from which those run counter-clockwise.
Mesh tetrahedron(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d);

/// The triangle a, b, c, the same one moved, and the sides; outward where `by` goes to the side of d above.
Mesh prism(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& by);

/// 20 * 4^level triangles around a centre.
Mesh icosphere(int level, const Vec3& centre, double radius);

/// `count` triangles with corners anywhere in the unit cube: a mesh of nothing in particular.
Mesh soup(Random& random, int count);

Mesh moved(Mesh mesh, const Vec3& by);
Mesh scaled(Mesh mesh, double by);
/// Turned about a random axis, by rational numbers alone.
Mesh turned(Mesh mesh, Random& random);
Mesh joined(Mesh a, const Mesh& b);

} // namespace orva::test

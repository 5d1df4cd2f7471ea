// Polygons, lists and trees for the tests of the internals, and their comparison bit for bit.
#pragma once

#include "bits.hpp"
#include "bsp/node.hpp"
#include "geometry/split.hpp"
#include "geometry/triangles.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

namespace orva::bspcsg {

inline constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// A polygon whose plane is that of its first three corners.
inline Polygon polygon(std::initializer_list<Vec3> corners) {
    Polygon result;
    for (const Vec3& corner : corners) result.vertices.push_back({corner, {}, {}});
    if (corners.size() >= 3) {
        result.plane = planeFromPoints(result.vertices[0].pos, result.vertices[1].pos, result.vertices[2].pos);
    }
    return result;
}

/// A small triangle in the plane z = height, facing up, that can be told from others by `x`.
inline Polygon level(double height, double x = 0) {
    return polygon({{x, 0, height}, {x + 1, 0, height}, {x, 1, height}});
}

inline PolygonList listOf(std::initializer_list<Polygon> polygons) {
    PolygonList list;
    for (const Polygon& each : polygons) list.push_back(each);
    return list;
}

inline PolygonList polygonsOf(const test::Mesh& mesh) {
    PolygonList list;
    trianglesToPolygons(
        toCount(mesh.vertices.size()), [&mesh](std::size_t i) { return mesh.vertices[i]; }, list);
    return list;
}

inline bool sameBits(const Plane& a, const Plane& b) {
    return test::sameBits(a.normal.x, b.normal.x) && test::sameBits(a.normal.y, b.normal.y) &&
           test::sameBits(a.normal.z, b.normal.z) && test::sameBits(a.w, b.w);
}

inline bool sameBits(const Polygon& a, const Polygon& b) {
    if (!sameBits(a.plane, b.plane) || a.vertices.size() != b.vertices.size()) return false;
    for (std::size_t i = 0; i < a.vertices.size(); ++i) {
        if (!test::sameBits(a.vertices[i], b.vertices[i])) return false;
    }
    return true;
}

inline testing::AssertionResult sameBits(const PolygonList& a, const PolygonList& b) {
    if (a.size() != b.size()) return testing::AssertionFailure() << a.size() << " polygons against " << b.size();
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!sameBits(a[i], b[i])) return testing::AssertionFailure() << "polygon " << i << " differs";
    }
    return testing::AssertionSuccess();
}

inline bool sameTree(const Node* a, const Node* b) {
    if (a == nullptr || b == nullptr) return a == b;
    return sameBits(a->plane, b->plane) && sameBits(a->polygons, b->polygons) &&
           sameTree(a->front.get(), b->front.get()) && sameTree(a->back.get(), b->back.get());
}

} // namespace orva::bspcsg

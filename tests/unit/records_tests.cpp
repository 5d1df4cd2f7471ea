#include "polygons.hpp"

#include <cmath>

namespace orva::bspcsg {

TEST(Plane, OfCollinearPointsIsNaNAndEveryPointLiesInIt) {
    const Plane plane = planeFromPoints({0, 0, 0}, {1, 1, 1}, {2, 2, 2});
    EXPECT_TRUE(std::isnan(plane.normal.x) && std::isnan(plane.normal.y) && std::isnan(plane.normal.z));
    EXPECT_TRUE(std::isnan(plane.w));
    const Polygon far = polygon({{1e9, 0, 0}, {0, -1e9, 0}, {0, 0, 1}});
    for (const PolygonSide side : classifyVertices(plane, far)) EXPECT_EQ(side, PolygonSide::Coplanar);
}

TEST(Plane, OfCoincidingPointsIsNaN) {
    EXPECT_TRUE(std::isnan(planeFromPoints({1, 2, 3}, {1, 2, 3}, {4, 5, 6}).w));
}

TEST(Plane, OfAlmostCollinearPointsIsNormalisedLikeAnyOther) {
    const Plane plane = planeFromPoints({0, 0, 0}, {1, 1e-12, 0}, {2, 0, 0});
    EXPECT_TRUE(sameBits(plane, {{0, 0, -1}, 0}));

    // Collinear but for rounding: 0.1, 0.2, 0.3 do not cancel.
    const Plane rounded = planeFromPoints({0.1, 0.7, 0.3}, {0.2, 1.4, 0.6}, {0.3, 2.1, 0.9});
    EXPECT_NEAR(length(rounded.normal), 1.0, 1e-12);
}

TEST(Plane, FacesTheSideFromWhichThePointsRunCounterClockwise) {
    EXPECT_TRUE(sameBits(planeFromPoints({0, 0, 0}, {1, 0, 0}, {0, 1, 0}), {{0, 0, 1}, 0}));
    const Plane reversed = planeFromPoints({0, 0, 0}, {0, 1, 0}, {1, 0, 0});
    EXPECT_EQ(reversed.normal.z, -1.0);
}

TEST(Plane, OffTheOriginHasItsDistanceAsW) {
    EXPECT_EQ(planeFromPoints({0, 0, 5}, {1, 0, 5}, {0, 1, 5}).w, 5.0);
}

TEST(Plane, OfOverflowingOrVanishingTrianglesFollowsTheArithmetic) {
    const Plane infinite = planeFromPoints({0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0}); // cross product overflows
    EXPECT_TRUE(std::isnan(infinite.normal.z));
    const Plane zero = planeFromPoints({0, 0, 0}, {1e100, 0, 0}, {0, 1e100, 0}); // its square overflows
    EXPECT_EQ(zero.normal.z, 0.0);
    const Plane tiny = planeFromPoints({0, 0, 0}, {1e-100, 0, 0}, {0, 1e-100, 0}); // its square vanishes
    EXPECT_TRUE(std::isinf(tiny.normal.z));
}

TEST(Plane, DistanceIsPositiveInFront) {
    const Plane plane{{0, 0, 1}, 5};
    EXPECT_EQ(signedDistance(plane, {7, 8, 6}), 1.0);
    EXPECT_EQ(signedDistance(plane, {7, 8, 4}), -1.0);
}

TEST(Plane, DistanceSumsXAndYFirst) {
    // 1 + 1e-16 + 1e-16: from the left both are lost, from the right they would count.
    EXPECT_EQ(signedDistance({{1, 1, 1}, 0}, {1, 1e-16, 1e-16}), 1.0);
    EXPECT_NE(1.0 + (1e-16 + 1e-16), 1.0);
}

TEST(Vertex, InterpolatedHalfwayKeepsItsShortNormal) {
    const Vertex a{{0, 0, 0}, {1, 0, 0}, {2, 4}};
    const Vertex b{{2, 4, 6}, {0, 1, 0}, {4, 8}};
    const Vertex middle = interpolate(a, b, 0.5);
    EXPECT_TRUE(test::sameBits(middle, Vertex{{1, 2, 3}, {0.5, 0.5, 0}, {3, 6}}));
    EXPECT_NEAR(length(middle.normal), 0.707, 1e-3);
}

TEST(Vertex, MadeByDefaultIsAllZeros) {
    List<Vertex> grown;
    grown.resize(2);
    EXPECT_TRUE(test::sameBits(grown[1], Vertex{{0, 0, 0}, {0, 0, 0}, {0, 0}}));
}

TEST(Polygon, FlippedRunsBackwardsWithNegatedNormals) {
    Polygon flippedOnce = polygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    for (Vertex& vertex : flippedOnce.vertices) {
        vertex.normal = {0, -0.0, 1};
        vertex.aux = {vertex.pos.x, 3};
    }
    const Polygon original = flippedOnce;
    flip(flippedOnce);
    for (std::size_t i = 0; i < 3; ++i) {
        const Vertex& before = original.vertices[2 - i];
        const Vertex after{before.pos, {-0.0, 0.0, -1}, before.aux};
        EXPECT_TRUE(test::sameBits(flippedOnce.vertices[i], after));
    }
    EXPECT_TRUE(sameBits(flippedOnce.plane, {{-0.0, -0.0, -1}, -0.0}));

    flip(flippedOnce);
    EXPECT_TRUE(sameBits(flippedOnce, original)) << "twice restores every bit, signed zeros included";
}

TEST(Polygon, MadeByDefaultHasNoVerticesAndAZeroPlane) {
    const Polygon empty;
    EXPECT_TRUE(empty.vertices.empty());
    EXPECT_TRUE(sameBits(empty.plane, {{0, 0, 0}, 0}));
}

TEST(Polygon, CopiedHasStorageOfExactlyItsVertices) {
    Polygon original = level(0);
    original.vertices.reserve(100);
    const Polygon copy = original;
    EXPECT_EQ(copy.vertices.capacity(), 3U);
    EXPECT_NE(copy.vertices.data(), original.vertices.data());
    EXPECT_TRUE(sameBits(copy, original));
}

TEST(PolygonSide, OfAPolygonIsTheOrOfItsVertices) {
    EXPECT_EQ(PolygonSide::Front | PolygonSide::Back, PolygonSide::Spanning);
    EXPECT_EQ(PolygonSide::Coplanar | PolygonSide::Back, PolygonSide::Back);
    EXPECT_EQ(static_cast<int>(PolygonSide::Coplanar), 0);
    EXPECT_EQ(static_cast<int>(PolygonSide::Front), 1);
    EXPECT_EQ(static_cast<int>(PolygonSide::Back), 2);
    EXPECT_EQ(static_cast<int>(PolygonSide::Spanning), 3);
    EXPECT_EQ(sizeof(PolygonSide), 4U);
}

} // namespace orva::bspcsg

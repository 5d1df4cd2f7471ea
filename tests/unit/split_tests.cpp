#include "polygons.hpp"

#include <cmath>

namespace orva::bspcsg {

namespace {

struct Sides {
    PolygonList coplanarFront;
    PolygonList coplanarBack;
    PolygonList front;
    PolygonList back;

    std::vector<std::size_t> sizes() const {
        return {coplanarFront.size(), coplanarBack.size(), front.size(), back.size()};
    }
};

Sides split(const Plane& plane, const Polygon& polygon) {
    Sides sides;
    splitPolygon(plane, polygon, sides.coplanarFront, sides.coplanarBack, sides.front, sides.back);
    return sides;
}

using Sizes = std::vector<std::size_t>;

void expectCorners(const Polygon& polygon, std::initializer_list<Vec3> corners) {
    ASSERT_EQ(polygon.vertices.size(), corners.size());
    std::size_t i = 0;
    for (const Vec3& corner : corners) {
        const Vec3& pos = polygon.vertices[i++].pos;
        EXPECT_TRUE(pos.x == corner.x && pos.y == corner.y && pos.z == corner.z)
            << "corner " << i - 1 << " is " << pos.x << " " << pos.y << " " << pos.z;
    }
}

const Polygon triangle = polygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});

} // namespace

TEST(Split, TriangleAcrossThePlaneGivesAQuadrilateralAndATriangle) {
    const Sides sides = split({{1, 0, 0}, 0.5}, triangle);
    ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 1}));
    expectCorners(sides.back[0], {{0, 0, 0}, {0.5, 0, 0}, {0.5, 0.5, 0}, {0, 1, 0}});
    expectCorners(sides.front[0], {{0.5, 0, 0}, {1, 0, 0}, {0.5, 0.5, 0}});
    EXPECT_TRUE(sameBits(sides.back[0].plane, triangle.plane));
    EXPECT_TRUE(sameBits(sides.front[0].plane, triangle.plane));
    EXPECT_TRUE(sameBits(triangle.plane, {{0, 0, 1}, 0}));
}

TEST(Split, VertexOnThePlaneBelongsToBothPieces) {
    const Sides sides = split({{1, 0, 0}, 0}, polygon({{0, 1, 0}, {-1, 0, 0}, {1, 0, 0}}));
    ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 1}));
    expectCorners(sides.front[0], {{0, 1, 0}, {0, 0, 0}, {1, 0, 0}});
    expectCorners(sides.back[0], {{0, 1, 0}, {-1, 0, 0}, {0, 0, 0}});
}

TEST(Split, AlmostCoplanarGoesWithTheSideItFaces) {
    Polygon near = triangle;
    near.vertices[0].pos.z = 1e-6;
    near.vertices[1].pos.z = -1e-6;
    EXPECT_EQ(split({{0, 0, 1}, 0}, near).sizes(), (Sizes{1, 0, 0, 0}));
    EXPECT_EQ(split({{0, 0, -1}, 0}, near).sizes(), (Sizes{0, 1, 0, 0}));
}

TEST(Split, CoplanarButPerpendicularGoesToTheBack) {
    Polygon odd = triangle;
    odd.plane = {{1, 0, 0}, 0};
    EXPECT_EQ(split({{0, 0, 1}, 0}, odd).sizes(), (Sizes{0, 1, 0, 0}));
}

TEST(Split, CoplanarWithoutAnyNormalGoesToTheBack) {
    Polygon odd = triangle;
    odd.plane = {{NaN, NaN, NaN}, NaN};
    EXPECT_EQ(split({{0, 0, 1}, 0}, odd).sizes(), (Sizes{0, 1, 0, 0}));
    EXPECT_EQ(split(odd.plane, triangle).sizes(), (Sizes{0, 1, 0, 0})) << "against a plane that is not a number";
}

TEST(Split, NaNVertexCountsAsCoplanar) {
    Polygon odd = triangle;
    odd.vertices[2].pos.y = NaN;
    EXPECT_EQ(split({{1, 0, 0}, -1}, odd).sizes(), (Sizes{0, 0, 1, 0}));
    EXPECT_EQ(split({{0, 0, 1}, 0}, odd).sizes(), (Sizes{1, 0, 0, 0}));
}

TEST(Split, DistanceOfExactlyTheToleranceIsCoplanar) {
    const Plane plane{{1, 0, 0}, 0};
    const auto sideAt = [&](double x) { return classifyVertices(plane, polygon({{x, 0, 0}}))[0]; };
    EXPECT_EQ(sideAt(1e-6), PolygonSide::Coplanar);
    EXPECT_EQ(sideAt(-1e-6), PolygonSide::Coplanar);
    EXPECT_EQ(sideAt(std::nextafter(1e-6, 1)), PolygonSide::Front);
    EXPECT_EQ(sideAt(std::nextafter(-1e-6, -1)), PolygonSide::Back);
    EXPECT_EQ(sideAt(NaN), PolygonSide::Coplanar);
}

TEST(Split, CoplanarAndFrontVerticesGoToTheFrontWhole) {
    const Sides sides = split({{1, 0, 0}, 0}, triangle);
    ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 0}));
    EXPECT_TRUE(sameBits(sides.front[0], triangle));
}

TEST(Split, PolygonWithoutVerticesIsCoplanar) {
    Polygon empty;
    empty.plane = {{0, 0, 1}, 3};
    EXPECT_EQ(split({{0, 0, 1}, 0}, empty).sizes(), (Sizes{1, 0, 0, 0}));
    EXPECT_EQ(split({{0, 0, -1}, 0}, empty).sizes(), (Sizes{0, 1, 0, 0}));
    EXPECT_EQ(split({{0, 0, 1}, 0}, Polygon()).sizes(), (Sizes{0, 1, 0, 0}));
}

TEST(Split, WholePolygonsPassWhateverTheirVertexCount) {
    EXPECT_EQ(split({{1, 0, 0}, -1}, polygon({{0, 0, 0}, {1, 0, 0}})).sizes(), (Sizes{0, 0, 1, 0}));
    EXPECT_EQ(split({{1, 0, 0}, 2}, polygon({{0, 0, 0}})).sizes(), (Sizes{0, 0, 0, 1}));
}

TEST(Split, EveryPieceHasAtLeastThreeVertices) {
    // The way from a front vertex to a back one and home leads through two vertices in the plane, found or made: the
    // test for pieces of fewer than three is never met, down to polygons that are none.
    const Plane plane{{1, 0, 0}, 0};
    for (const Polygon& odd : {polygon({{-1, 0, 0}, {1, 0, 0}}), polygon({{-1, 0, 0}, {0, 0, 0}, {1, 0, 0}}),
                               polygon({{-1, 0, 0}, {NaN, 0, 0}, {1, 0, 0}, {NaN, 1, 0}})}) {
        const Sides sides = split(plane, odd);
        ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 1}));
        EXPECT_GE(sides.front[0].vertices.size(), 3U);
        EXPECT_GE(sides.back[0].vertices.size(), 3U);
    }
}

TEST(Split, BothCoplanarListsMayBeOne) {
    PolygonList own;
    PolygonList front;
    PolygonList back;
    for (const double z : {1.0, -1.0}) splitPolygon({{0, 0, z}, 0}, triangle, own, own, front, back);
    EXPECT_EQ(own.size(), 2U);
    EXPECT_TRUE(front.empty() && back.empty());
}

TEST(Split, CutVertexIsInterpolatedInAllItsValues) {
    Polygon carrying = triangle;
    carrying.vertices[0].normal = {0, 0, 1};
    carrying.vertices[1].normal = {1, 0, 0};
    carrying.vertices[0].aux = {0, 10};
    carrying.vertices[1].aux = {1, 20};
    const Sides sides = split({{1, 0, 0}, 0.25}, carrying);
    ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 1}));
    EXPECT_TRUE(test::sameBits(sides.front[0].vertices[0], Vertex{{0.25, 0, 0}, {0.25, 0, 0.75}, {0.25, 12.5}}));
    EXPECT_TRUE(test::sameBits(sides.back[0].vertices[1], sides.front[0].vertices[0])) << "one vertex, in both pieces";
}

TEST(Split, PiecesKeepThePlaneOfTheirParent) {
    // Cut so close to a corner that the piece's own vertices would give another plane.
    const Polygon slanted = polygon({{0.1, 0.2, 0.3}, {1.7, 0.4, 0.9}, {0.3, 1.9, 1.1}});
    const Sides sides = split({{1, 0, 0}, 0.1 + 2e-6}, slanted);
    ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 1}));
    const Polygon& piece = sides.back[0];
    EXPECT_TRUE(sameBits(piece.plane, slanted.plane));
    const Plane own = planeFromPoints(piece.vertices[0].pos, piece.vertices[1].pos, piece.vertices[2].pos);
    EXPECT_FALSE(sameBits(own, slanted.plane)) << "the case would show nothing";
}

TEST(Split, PiecesAreStoredInExactlyTheirVertices) {
    const Sides sides = split({{1, 0, 0}, 0.5}, triangle);
    EXPECT_EQ(sides.front[0].vertices.capacity(), 3U);
    EXPECT_EQ(sides.back[0].vertices.capacity(), 4U);
}

TEST(Split, BentPolygonCrossingAtEveryEdgeKeepsAllItsCrossings) {
    const Polygon zigzag = polygon({{-1, 0, 0}, {1, 1, 0}, {-1, 2, 0}, {1, 3, 0}});
    const Sides sides = split({{1, 0, 0}, 0}, zigzag);
    ASSERT_EQ(sides.sizes(), (Sizes{0, 0, 1, 1}));
    EXPECT_EQ(sides.front[0].vertices.size(), 6U);
    EXPECT_EQ(sides.back[0].vertices.size(), 6U);
}

TEST(Split, ListIsSplitInOrder) {
    const PolygonList list = listOf({level(1, 0), level(-1, 1), level(1, 2), level(0, 3)});
    Sides sides;
    splitPolygons({{0, 0, 1}, 0}, list, sides.coplanarFront, sides.coplanarBack, sides.front, sides.back);
    EXPECT_TRUE(sameBits(sides.front, listOf({level(1, 0), level(1, 2)})));
    EXPECT_TRUE(sameBits(sides.back, listOf({level(-1, 1)})));
    EXPECT_TRUE(sameBits(sides.coplanarFront, listOf({level(0, 3)})));
}

} // namespace orva::bspcsg

#include "polygons.hpp"

namespace orva::bspcsg {

TEST(Build, EmptyListLeavesTheNodeAsItWas) {
    Node node;
    node.build({});
    EXPECT_TRUE(sameBits(node.plane, Plane{}));
    EXPECT_TRUE(node.polygons.empty() && !node.front && !node.back);
}

TEST(Build, OnePolygonGivesItsPlaneAndStays) {
    Node node;
    PolygonList list = listOf({level(3)});
    node.build(std::move(list));
    EXPECT_TRUE(sameBits(node.plane, {{0, 0, 1}, 3}));
    EXPECT_TRUE(sameBits(node.polygons, listOf({level(3)})));
    EXPECT_TRUE(!node.front && !node.back);
    EXPECT_TRUE(list.empty()); // NOLINT(bugprone-use-after-move): that it is spent is the point
}

TEST(Build, CoplanarPolygonsOfBothFacingsStayInOrder) {
    Polygon facingDown = level(0, 5);
    flip(facingDown);
    Node node;
    node.build(listOf({level(0), facingDown, level(0, 9)}));
    EXPECT_TRUE(sameBits(node.polygons, listOf({level(0), facingDown, level(0, 9)})));
    EXPECT_TRUE(!node.front && !node.back);
}

TEST(Build, OntoATreeKeepsItsPlanes) {
    Node node;
    node.build(listOf({level(0)}));
    node.build(listOf({level(2), level(0, 4), level(-1)}));
    EXPECT_TRUE(sameBits(node.plane, {{0, 0, 1}, 0}));
    EXPECT_TRUE(sameBits(node.polygons, listOf({level(0), level(0, 4)})));
    ASSERT_TRUE(node.front && node.back);
    EXPECT_TRUE(sameBits(node.front->polygons, listOf({level(2)})));
    EXPECT_TRUE(sameBits(node.back->polygons, listOf({level(-1)})));
}

TEST(Build, ZeroNormalIsTakenAndReplacedByTheNextBuild) {
    Polygon vanishing = level(0);
    vanishing.plane = {{0, 0, 9e-7}, 4};
    Node node;
    node.build(listOf({vanishing}));
    EXPECT_TRUE(sameBits(node.plane, vanishing.plane));
    node.build(listOf({level(1)}));
    EXPECT_TRUE(sameBits(node.plane, {{0, 0, 1}, 1}));
    EXPECT_EQ(node.polygons.size(), 2U);
}

TEST(Build, PlaneComponentOfExactlyTheToleranceCountsAsSet) {
    for (const Vec3& normal : {Vec3{1e-6, 0, 0}, {0, -1e-6, 0}, {0, 0, 1e-6}}) {
        Polygon barely = level(0);
        barely.plane = {normal, 4};
        Node node;
        node.build(listOf({barely}));
        node.build(listOf({level(1)}));
        EXPECT_TRUE(sameBits(node.plane, barely.plane));
    }
}

TEST(Build, PlaneWithOneNumberAmongNaNsCountsAsSet) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [plane, set] : {std::pair{Plane{{infinity, NaN, NaN}, NaN}, true},
                                     {Plane{{NaN, NaN, -1}, 0}, true},
                                     {Plane{{NaN, NaN, NaN}, NaN}, false},
                                     {Plane{{NaN, 1e-7, NaN}, 0}, false}}) {
        Node node;
        node.plane = plane;
        node.build(listOf({level(1)}));
        EXPECT_EQ(sameBits(node.plane, plane), set) << plane.normal.x << " " << plane.normal.y;
    }
}

TEST(Build, DegenerateFirstPolygonKeepsAllOthersAtItsNode) {
    const Polygon degenerate = polygon({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}});
    Node node;
    node.build(listOf({degenerate, level(1), level(-1)}));
    EXPECT_EQ(node.polygons.size(), 3U);
    EXPECT_TRUE(!node.front && !node.back);
}

TEST(Build, GrowsLevelByLevel) {
    Node node;
    node.build(listOf({level(0), level(2), level(1), level(-1), level(3), level(-2)}));
    ASSERT_TRUE(node.front && node.front->front && node.front->back && node.back && node.back->back);
    EXPECT_EQ(node.front->plane.w, 2.0);
    EXPECT_EQ(node.front->front->plane.w, 3.0);
    EXPECT_EQ(node.front->back->plane.w, 1.0);
    EXPECT_EQ(node.back->plane.w, -1.0);
    EXPECT_EQ(node.back->back->plane.w, -2.0);
}

TEST(Build, SliverOffItsOwnPlaneStaysAtTheNodeThatTookIt) {
    // Collinear up to rounding: the plane of such a triangle points anywhere.
    test::Random random(20);
    int off = 0;
    for (int i = 0; i < 200; ++i) {
        const Vec3 a{random.uniform(-1, 1), random.uniform(-1, 1), random.uniform(-1, 1)};
        const Vec3 d{random.uniform(-1, 1), random.uniform(-1, 1), random.uniform(-1, 1)};
        const auto along = [&](double t) { return Vec3{a.x + d.x * t, a.y + d.y * t, a.z + d.z * t}; };
        const Polygon sliver = polygon({a, along(0.3), along(random.uniform(0.4, 1))});
        PolygonSide side = PolygonSide::Coplanar;
        for (const PolygonSide each : classifyVertices(sliver.plane, sliver)) side = side | each;
        if (side != PolygonSide::Coplanar) ++off;

        Node node;
        node.build(listOf({sliver, level(5)}));
        ASSERT_FALSE(node.polygons.empty());
        EXPECT_TRUE(sameBits(node.polygons[0], sliver));
        std::uint32_t polygons = 0;
        node.countElements(nullptr, &polygons, nullptr);
        EXPECT_GE(polygons, 2U);
    }
    EXPECT_GT(off, 20) << "the case would show nothing";
}

TEST(Build, HugeTriangleOffItsOwnPlaneEnds) {
    const Polygon huge = polygon({{3.1e12, 1.7e12, 0.3}, {-2.9e12, 1.1e12, 7e11}, {1.3e12, -2.3e12, -9e11}});
    PolygonSide side = PolygonSide::Coplanar;
    for (const PolygonSide each : classifyVertices(huge.plane, huge)) side = side | each;
    ASSERT_NE(side, PolygonSide::Coplanar) << "the case would show nothing";
    Node node;
    node.build(listOf({huge}));
    EXPECT_TRUE(sameBits(node.polygons, listOf({huge})));
    EXPECT_TRUE(!node.front && !node.back);
}

TEST(Build, OnlyThePolygonThatGivesThePlaneStaysUnclassified) {
    // The sliver reaches a node that has its plane already: there it is classified and goes on.
    const Polygon huge = polygon({{3.1e12, 1.7e12, 0.3}, {-2.9e12, 1.1e12, 7e11}, {1.3e12, -2.3e12, -9e11}});
    Node node;
    node.build(listOf({huge, huge}));
    EXPECT_EQ(node.polygons.size(), 1U);
    EXPECT_TRUE(node.front || node.back);
}

} // namespace orva::bspcsg

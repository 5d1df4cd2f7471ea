// The steps by themselves, on surfaces of a few edges.
#include "shapes.hpp"
#include "tidy/carried.hpp"
#include "tidy/gaps.hpp"
#include "tidy/open_edges.hpp"
#include "tidy/point_table.hpp"
#include "tidy/straighten.hpp"
#include "tidy/umbrellas.hpp"
#include "tidy/weld.hpp"
#include "tidy/zip.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <map>
#include <utility>

namespace orva::tidy {

namespace {

// Faces are loops of points; all of them lie in some plane that is of no matter here.
struct Built : Surface {
    explicit Built(std::vector<Vec3> at) { points = std::move(at); }

    void addFace(std::initializer_list<std::uint32_t> loop) {
        const auto face = static_cast<std::uint32_t>(faces.size());
        faces.push_back({});
        faces.back().normal = {0, 0, 1};
        for (const std::uint32_t* p = loop.begin(); p != loop.end(); ++p) {
            edges.push_back({*p, p + 1 == loop.end() ? *loop.begin() : p[1], face, NONE, NONE});
        }
    }
};

std::size_t countOpen(const Surface& surface) {
    return static_cast<std::size_t>(std::count_if(surface.edges.begin(), surface.edges.end(),
                                                  [](const Edge& edge) { return isAlive(edge) && edge.twin == NONE; }));
}

std::size_t countAlive(const Surface& surface) {
    return static_cast<std::size_t>(std::count_if(surface.edges.begin(), surface.edges.end(), isAlive));
}

// Twins run back, and are each other's.
void expectSound(const Surface& surface) {
    for (std::size_t i = 0; i < surface.edges.size(); ++i) {
        const Edge& edge = surface.edges[i];
        if (!isAlive(edge)) continue;
        EXPECT_NE(edge.from, edge.to);
        if (edge.twin == NONE) continue;
        const Edge& twin = surface.edges[edge.twin];
        EXPECT_EQ(twin.twin, i);
        EXPECT_EQ(twin.from, edge.to);
        EXPECT_EQ(twin.to, edge.from);
    }
}

// What every step keeps: each point has as many edges into it as out of it, for each face.
void expectLoops(const Surface& surface) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> balance;
    for (const Edge& edge : surface.edges) {
        if (!isAlive(edge)) continue;
        ++balance[{edge.face, edge.from}];
        --balance[{edge.face, edge.to}];
    }
    for (const auto& [at, sum] : balance) EXPECT_EQ(sum, 0) << "face " << at.first << ", point " << at.second;
}

void matchAll(Surface& surface) {
    Matcher matcher;
    matcher.matchOpposite(surface);
}

} // namespace

// ---- points ----

TEST(PointTable, GivesEqualPositionsOneNumberHoweverManyThereAre) {
    PointTable table;
    for (const std::size_t expected : {std::size_t{0}, std::size_t{5000}}) {
        table.clear(expected);
        test::Random random(1);
        std::vector<Vec3> points;
        for (int i = 0; i < 5000; ++i) points.push_back({random.uniform(-1, 1), random.uniform(-1, 1), 0.0});
        for (std::uint32_t i = 0; i < 5000; ++i) ASSERT_EQ(table.numberOf(points[i]), i);
        for (std::uint32_t i = 5000; i-- > 0;) ASSERT_EQ(table.numberOf(points[i]), i);
        EXPECT_EQ(table.numberOf({points[7].x, points[7].y, -0.0}), 7U);
        EXPECT_EQ(table.points().size(), 5000U);
    }
}

// ---- straighten ----

TEST(Straighten, TakesOutWhatALineDoesNotNeedOnBothSides) {
    Built surface({{0, 0, 0}, {1, 0, 0}, {2, 1e-7, 0}, {3, 0, 0}, {1, 2, 0}, {1, -2, 0}});
    surface.addFace({0, 1, 2, 3, 4});
    surface.addFace({3, 2, 1, 0, 5});
    matchAll(surface);
    std::vector<std::uint32_t> next(surface.edges.size(), NONE);
    next[0] = 1;
    next[1] = 2;
    Straightener straightener;
    EXPECT_NEAR(straightener.straighten(surface, next, 1e-6), 1e-7, 1e-12);
    EXPECT_EQ(countAlive(surface), 6U);
    EXPECT_EQ(countOpen(surface), 4U);
    expectSound(surface);
    expectLoops(surface);
}

TEST(Straighten, KeepsWhatIsFartherThanTheRadiusFromWhatStays) {
    Built surface({{0, 0, 0}, {1, 1e-3, 0}, {2, 0, 0}, {1, 2, 0}});
    surface.addFace({0, 1, 2, 3});
    std::vector<std::uint32_t> next(surface.edges.size(), NONE);
    next[0] = 1;
    Straightener straightener;
    EXPECT_EQ(straightener.straighten(surface, next, 1e-4), 0.0);
    EXPECT_EQ(countAlive(surface), 4U);
    EXPECT_GT(straightener.straighten(surface, next, 1e-2), 0.0);
    EXPECT_EQ(countAlive(surface), 3U);
}

// A run that drifts away a little with each point: where each is on the line of its neighbours, none is on the whole's.
TEST(Straighten, OfACurveNeverGoesFartherThanTheRadius) {
    std::vector<Vec3> curve;
    for (int i = 0; i <= 100; ++i) curve.push_back({i * 0.01, i * 0.01 * (i * 0.01), 0});
    curve.push_back({0, 1, 0});
    Built surface(curve);
    surface.faces.resize(1);
    std::vector<std::uint32_t> next;
    for (std::uint32_t i = 0; i < curve.size(); ++i) {
        surface.edges.push_back({i, static_cast<std::uint32_t>((i + 1) % curve.size()), 0, NONE, NONE});
        next.push_back(i + 1 < 100 ? i + 1 : NONE);
    }
    Straightener straightener;
    const double moved = straightener.straighten(surface, next, 1e-3);
    EXPECT_GT(moved, 0.0);
    EXPECT_LE(moved, 1e-3);
    EXPECT_LT(countAlive(surface), 30U);
    expectLoops(surface);
    for (const Vec3& p : curve) {
        double nearest = 1;
        for (const Edge& edge : surface.edges) {
            if (isAlive(edge)) nearest = std::min(nearest, squaredDistance(p, curve[edge.from], curve[edge.to]));
        }
        EXPECT_LE(nearest, 1e-6);
    }
}

TEST(Straighten, OfALoopWithoutAPointThatHasToStayKeepsItsCorners) {
    std::vector<Vec3> ring;
    for (int i = 0; i < 10; ++i) ring.push_back({0.1 * i, 0, 0});
    for (int i = 0; i < 10; ++i) ring.push_back({1, 0.1 * i, 0});
    for (int i = 0; i < 10; ++i) ring.push_back({1 - 0.1 * i, 1 - 0.1 * i, 0});
    Built surface(ring);
    surface.faces.resize(1);
    std::vector<std::uint32_t> next;
    for (std::uint32_t i = 0; i < 30; ++i) {
        surface.edges.push_back({i, (i + 1) % 30, 0, NONE, NONE});
        next.push_back((i + 1) % 30);
    }
    Straightener straightener;
    straightener.straighten(surface, next, 1e-6);
    EXPECT_EQ(countAlive(surface), 3U);
    expectLoops(surface);
}

// ---- match ----

TEST(Match, PutsOppositeEdgesTogether) {
    Built surface({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}});
    surface.addFace({0, 1, 2});
    surface.addFace({2, 1, 3});
    matchAll(surface);
    EXPECT_EQ(countOpen(surface), 4U);
    expectSound(surface);
}

TEST(Match, LeavesEdgesInTheSameDirectionAlone) {
    Built surface({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    surface.addFace({0, 1, 2});
    surface.addFace({0, 1, 2});
    matchAll(surface);
    EXPECT_EQ(countOpen(surface), 6U);
}

// Four half-planes at the z axis, with solid between the first two and between the others.
TEST(Match, OfFourFacesAtAnEdgeKeepsTwoSolidsApart) {
    for (int turn = 0; turn < 4; ++turn) {
        const Vec3 ways[4]{{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
        const auto way = [&](int i) { return ways[(i + turn) % 4]; };
        Built surface({{0, 0, 0}, {0, 0, 1}, way(0), way(1), way(2), way(3)});
        surface.addFace({1, 0, 2});
        surface.addFace({0, 1, 3});
        surface.addFace({1, 0, 4});
        surface.addFace({0, 1, 5});
        for (std::size_t i = 0; i < 4; ++i) {
            const Vec3& a = surface.points[surface.edges[3 * i].from];
            const Vec3& b = surface.points[surface.edges[3 * i].to];
            const Vec3& c = surface.points[surface.edges[3 * i + 1].to];
            surface.faces[i].normal = cross(b - a, c - a);
        }
        matchAll(surface);
        expectSound(surface);
        EXPECT_EQ(surface.edges[surface.edges[0].twin].face + surface.edges[surface.edges[6].twin].face, 4U);
        // The solid is behind the faces: between the two whose normals look away from each other's side.
        const Vec3 into = surface.points[surface.edges[surface.edges[surface.edges[0].twin].face * 3 + 1].to];
        EXPECT_LT(dot(surface.faces[0].normal, into), 0.0);
    }
}

TEST(Match, OfManyEdgesBetweenTwoPointsMatchesAllThatItCan) {
    Built surface({{0, 0, 0}, {0, 0, 1}, {1, 0, 0}});
    for (int i = 0; i < 200; ++i) surface.addFace({0, 1, 2});
    for (int i = 0; i < 150; ++i) surface.addFace({2, 1, 0});
    matchAll(surface);
    expectSound(surface);
    EXPECT_EQ(countOpen(surface), 150U);
}

// ---- weld ----

TEST(Weld, MovesPointsOntoTheFirstWithinTheRadiusAndNoFarther) {
    Built surface({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1e-4, 0, 0}, {1, 1e-4, 0}, {1, 1, 0}});
    surface.addFace({0, 1, 2});
    surface.addFace({4, 3, 5});
    EXPECT_EQ(weldOpen(surface, 1e-5), 0.0);
    EXPECT_NEAR(weldOpen(surface, 2e-4), 1e-4, 1e-9);
    EXPECT_EQ(surface.edges[3].from, 1U);
    EXPECT_EQ(surface.edges[3].to, 0U);
    matchAll(surface);
    EXPECT_EQ(countOpen(surface), 4U);
    EXPECT_EQ(surface.points[0].x, 0.0);
}

TEST(Weld, OfARowOfPointsNeverAddsUp) {
    std::vector<Vec3> row;
    for (int i = 0; i < 300; ++i) row.push_back({i * 0.6, 0, 0});
    for (int i = 0; i < 300; ++i) row.push_back({i * 0.6, 50, 0});
    Built surface(row);
    for (std::uint32_t i = 0; i < 299; ++i) surface.addFace({i, i + 1, 300 + i});
    EXPECT_LE(weldOpen(surface, 1.0), 1.0);
    for (const Edge& edge : surface.edges) {
        if (!isAlive(edge)) continue;
        EXPECT_NE(edge.from, edge.to);
    }
    expectLoops(surface);
}

TEST(Weld, FindsNeighboursInWhateverCellsTheyLie) {
    test::Random random(4);
    std::vector<Vec3> points;
    for (int i = 0; i < 2000; ++i) {
        const double x = random.uniform(-40, 40);
        const double y = random.uniform(-40, 40);
        const double z = random.uniform(-40, 40);
        points.push_back({x, y, z});
        points.push_back({x + random.uniform(-0.5, 0.5), y + random.uniform(-0.5, 0.5), z + random.uniform(-0.5, 0.5)});
    }
    Built surface(points);
    for (std::uint32_t i = 0; i + 2 < points.size(); ++i) surface.addFace({i, i + 1, i + 2});
    const double moved = weldOpen(surface, 1.0);
    EXPECT_LE(moved, 1.0);
    std::vector<std::uint32_t> left;
    for (const Edge& edge : surface.edges) {
        if (isAlive(edge)) left.push_back(edge.from);
    }
    std::sort(left.begin(), left.end());
    left.erase(std::unique(left.begin(), left.end()), left.end());
    EXPECT_LE(left.size(), 2000U);
    for (std::size_t i = 0; i < left.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            ASSERT_GT(squaredLength(points[left[i]] - points[left[j]]), 1.0);
        }
    }
}

// ---- zip ----

TEST(Zip, PutsAPointIntoTheEdgeThatItLiesIn) {
    Built surface({{0, 0, 0}, {2, 0, 0}, {1, 2, 0}, {1, 1e-7, 0}, {1, -2, 0}});
    surface.addFace({0, 1, 2});
    surface.addFace({3, 0, 4});
    surface.addFace({1, 3, 4});
    matchAll(surface);
    Zipper zipper;
    EXPECT_EQ(zipper.zip(surface, 1e-8), 0.0);
    EXPECT_EQ(countOpen(surface), 7U);
    EXPECT_NEAR(zipper.zip(surface, 1e-6), 1e-7, 1e-12);
    EXPECT_EQ(countOpen(surface), 4U);
    expectSound(surface);
    expectLoops(surface);
}

TEST(Zip, ClosesASeamWhoseSidesAreDividedDifferently) {
    std::vector<Vec3> points;
    for (int i = 0; i <= 300; ++i) points.push_back({i / 300.0, 0, 0});
    for (int i = 1; i < 201; ++i) points.push_back({(i + 0.003) / 201.0, 0, 0});
    points.push_back({0.5, 1, 0});
    points.push_back({0.5, -1, 0});
    Built surface(points);
    surface.faces.resize(2);
    const auto top = static_cast<std::uint32_t>(points.size() - 2);
    const auto add = [&surface](std::uint32_t from, std::uint32_t to, std::uint32_t face) {
        surface.edges.push_back({from, to, face, NONE, NONE});
    };
    for (std::uint32_t i = 0; i < 300; ++i) add(i, i + 1, 0);
    add(300, top, 0);
    add(top, 0, 0);
    add(300, 500, 1);
    for (std::uint32_t i = 500; i > 301; --i) add(i, i - 1, 1);
    add(301, 0, 1);
    add(0, top + 1, 1);
    add(top + 1, 300, 1);
    matchAll(surface);
    Zipper zipper;
    EXPECT_LE(zipper.zip(surface, 1e-9), 1e-9);
    EXPECT_EQ(countOpen(surface), 4U);
    expectSound(surface);
    expectLoops(surface);
}

TEST(Zip, LeavesOpenWhatRunsApart) {
    Built surface({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}});
    surface.addFace({0, 1, 2});
    surface.addFace({0, 3, 4});
    Zipper zipper;
    zipper.zip(surface, 1e-3);
    EXPECT_EQ(countOpen(surface), 6U);
    EXPECT_EQ(surface.edges.size(), 6U);
}

// ---- umbrellas ----

namespace {

// A closed surface of triangles over points, matched as its sides come.
Triangles trianglesOf(std::initializer_list<std::array<std::uint32_t, 3>> list) {
    Triangles triangles;
    for (const std::array<std::uint32_t, 3>& triangle : list) {
        for (const std::uint32_t point : triangle) {
            triangles.corners.point.push_back(point);
            triangles.corners.face.push_back(0);
            triangles.corners.soup.push_back(NONE);
            triangles.corners.twin.push_back(NONE);
        }
        triangles.region.push_back(static_cast<std::uint32_t>(triangles.region.size()));
        triangles.piece.push_back(NONE);
    }
    Corners& corners = triangles.corners;
    for (std::uint32_t i = 0; i < corners.point.size(); ++i) {
        for (std::uint32_t k = 0; k < i; ++k) {
            if (corners.twin[i] != NONE || corners.twin[k] != NONE) continue;
            if (corners.point[i] != corners.point[nextCorner(k)] || corners.point[k] != corners.point[nextCorner(i)]) {
                continue;
            }
            corners.twin[i] = k;
            corners.twin[k] = i;
        }
    }
    return triangles;
}

} // namespace

TEST(Umbrellas, OfTwoTetrahedraThatShareAPointAreTwoThere) {
    Triangles triangles = trianglesOf({{0, 2, 1},
                                       {0, 1, 3},
                                       {1, 2, 3},
                                       {2, 0, 3}, //
                                       {0, 5, 4},
                                       {0, 4, 6},
                                       {4, 5, 6},
                                       {5, 0, 6}});
    Surface surface;
    surface.points.resize(7);
    std::vector<std::uint32_t> vertex;
    EXPECT_EQ(splitUmbrellas(triangles, surface, vertex), 8U);
    EXPECT_NE(vertex[0], vertex[12]);
    EXPECT_EQ(vertex[0], vertex[3]);
    EXPECT_EQ(surface.points.size(), 7U);
}

TEST(Umbrellas, OfMirroredTrianglesAreNone) {
    Triangles triangles = trianglesOf({{0, 1, 2}, {2, 1, 0}});
    cancelMirrored(triangles);
    EXPECT_EQ(countTriangles(triangles), 0U);
    EXPECT_TRUE(triangles.corners.point.empty());
}

TEST(Umbrellas, OfAFinOnATetrahedronAreThoseOfTheTetrahedron) {
    // Face {1, 2, 3} is three, two of them on each other's back.
    Triangles triangles = trianglesOf({{0, 2, 1}, {0, 1, 3}, {2, 0, 3}, {1, 2, 3}});
    const std::size_t before = triangles.corners.point.size();
    // Between triangles 0 and 3, at the side 1-2, a fin of two triangles to point 4.
    Corners& corners = triangles.corners;
    for (const std::array<std::uint32_t, 3>& fin :
         {std::array<std::uint32_t, 3>{1, 2, 4}, std::array<std::uint32_t, 3>{2, 1, 4}}) {
        for (const std::uint32_t point : fin) {
            corners.point.push_back(point);
            corners.face.push_back(0);
            corners.soup.push_back(NONE);
            corners.twin.push_back(NONE);
        }
        triangles.region.push_back(0);
        triangles.piece.push_back(NONE);
    }
    const auto connect = [&corners](std::uint32_t a, std::uint32_t b) {
        corners.twin[a] = b;
        corners.twin[b] = a;
    };
    connect(1, 12);  // 2 -> 1 with 1 -> 2
    connect(9, 15);  // 1 -> 2 with 2 -> 1
    connect(13, 17); // 2 -> 4 with 4 -> 2
    connect(14, 16); // 4 -> 1 with 1 -> 4
    cancelMirrored(triangles);
    ASSERT_EQ(corners.point.size(), before);
    EXPECT_EQ(corners.twin[1], 9U);
    EXPECT_EQ(corners.twin[9], 1U);
    for (std::size_t i = 0; i < before; ++i) EXPECT_NE(corners.twin[i], NONE);
}

// ---- gaps ----

TEST(Gaps, AreWhatIsFarthestFromItsNearest) {
    EXPECT_EQ(largestGap({}), 0.0);
    EXPECT_EQ(largestGap({{{{0, 0, 0}, {1, 0, 0}}}}), 0.0);
    EXPECT_DOUBLE_EQ(largestGap({{{{0, 0, 0}, {1, 0, 0}}}, {{{0, 3, 0}, {1, 3, 0}}}}), 3.0);
}

TEST(Gaps, OfManySegmentsAreThoseOfAllAgainstAll) {
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        std::vector<Segment> segments;
        for (int count = random.integer(2, 200); count > 0; --count) {
            Segment segment;
            for (Vec3& p : segment) {
                p.x = random.uniform(0, 1);
                p.y = random.uniform(0, 1);
                p.z = seed % 2 == 0 ? 0.0 : random.uniform(0, 1);
            }
            segments.push_back(segment);
        }
        double expected = 0;
        for (std::size_t i = 0; i < segments.size(); ++i) {
            const Vec3 middle = 0.5 * segments[i][0] + 0.5 * segments[i][1];
            double nearest = 1e9;
            for (std::size_t k = 0; k < segments.size(); ++k) {
                if (k != i) nearest = std::min(nearest, squaredDistance(middle, segments[k][0], segments[k][1]));
            }
            expected = std::max(expected, nearest);
        }
        EXPECT_DOUBLE_EQ(largestGap(segments), std::sqrt(expected));
    }
}

// ---- what corners carry ----

TEST(Carried, IsWhatStandsAtACornerBitForBitAndLinearElsewhere) {
    const test::Vertex triangle[3]{
        {{0, 0, 0}, {0.1, 0.2, -0.0}, {7, 1}}, {{4, 0, 0}, {0.3, 0.2, 1}, {9, 1}}, {{0, 4, 0}, {0.1, 0.6, 1}, {7, 3}}};
    EXPECT_EQ(carriedAt(triangle, {4, 0, 0}).normal.x, 0.3);
    EXPECT_TRUE(std::signbit(carriedAt(triangle, {0, 0, 0}).normal.z));
    const Corner middle = carriedAt(triangle, {1, 2, 0});
    EXPECT_DOUBLE_EQ(middle.normal.x, 0.15);
    EXPECT_DOUBLE_EQ(middle.normal.y, 0.4);
    EXPECT_DOUBLE_EQ(middle.aux[0], 7.5);
    EXPECT_DOUBLE_EQ(middle.aux[1], 2.0);
    EXPECT_DOUBLE_EQ(carriedAt(triangle, {8, -4, 0}).aux[0], 11.0); // also outside
}

TEST(Carried, ByATriangleWithoutAreaIsThatOfItsNearestCorner) {
    const test::Vertex triangle[3]{{{0, 0, 0}, {}, {1, 0}}, {{2, 0, 0}, {}, {2, 0}}, {{6, 0, 0}, {}, {3, 0}}};
    EXPECT_EQ(carriedAt(triangle, {1.9, 0, 0}).aux[0], 2.0);
    EXPECT_EQ(carriedAt(triangle, {9, 0, 0}).aux[0], 3.0);
}

TEST(Carried, IsTheSameUpToRoundingOrIsNot) {
    test::Vertex a[3]{{{0, 0, 0}, {}, {0, 0}}, {{1, 0, 0}, {}, {1, 0}}, {{0, 1, 0}, {}, {0, 1}}};
    test::Vertex b[3]{{{1, 0, 0}, {}, {1, 0}}, {{3, 0, 0}, {}, {3, 0}}, {{0, 1, 0}, {}, {0, 1}}};
    EXPECT_TRUE(carryTheSame(a, b));
    b[1].aux[0] = 3 + 1e-10;
    EXPECT_TRUE(carryTheSame(a, b));
    b[1].aux[0] = 3 + 1e-6;
    EXPECT_FALSE(carryTheSame(a, b));
    for (const double wild : {std::nan(""), HUGE_VAL}) {
        b[1].aux[0] = wild;
        EXPECT_FALSE(carryTheSame(a, b));
        EXPECT_FALSE(carryTheSame(b, a));
    }
}

} // namespace orva::tidy

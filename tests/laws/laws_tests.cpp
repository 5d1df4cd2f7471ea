// The laws of solids on thousands of random ones: what holds whatever the triangles are.
//
// Two kinds of solids, on the grid and anywhere: see support/solids.hpp.
//
// A failure names the seed of its case. ORVA_LONG in the environment makes it twenty times as many.
#include "figures.hpp"
#include "measures.hpp"
#include "measures/closedness.hpp"
#include "operations.hpp"
#include "solids.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace orva::test {

namespace {

// ---- cases ----

constexpr std::pair<const char*, DrawSolid> kinds[]{{"on the grid", solidOnGrid}, {"anywhere", solidAnywhere}};

int failures() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

// Calls check(random, draw) for so many seeds and each kind of solid; stops after three cases that failed.
void forCases(const char* name, int count, const std::function<void(Random&, DrawSolid)>& check) {
    if (longForm()) count *= 20;
    int failed = 0;
    for (const auto& [kind, draw] : kinds) {
        for (int seed = 0; seed < count && failed < 3; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", solids " << kind);
            Random random(static_cast<std::uint64_t>(seed));
            const int before = failures();
            check(random, draw);
            if (failures() != before) ++failed;
        }
    }
    figure(std::string("laws.") + name, 2 * static_cast<std::uint64_t>(count));
}

// ---- measures ----

// Of coordinates below 10, volumes below 1000 and a few hundred triangles: far above the rounding of any of them.
constexpr double SMALL = 1e-8;

bool within(const Mesh& mesh, const Vec3& p) {
    return windingNumber(mesh, p) > 0.5;
}

// A point clear of the surfaces of all of them, by ten thousand tolerances.
Vec3 pointClearOf(Random& random, std::initializer_list<const Mesh*> meshes) {
    for (;;) {
        const Vec3 p = randomPoint(random, -2, 6);
        if (std::all_of(meshes.begin(), meshes.end(), [&](const Mesh* mesh) { return distanceTo(*mesh, p) > 0.01; })) {
            return p;
        }
    }
}

void expectWithin(const Mesh& result, const Vec3& p, bool expected, const char* what) {
    EXPECT_NEAR(windingNumber(result, p), expected ? 1 : 0, SMALL) << what << " at " << p.x << " " << p.y << " " << p.z;
}

// Every edge has, piece by piece, its match in the opposite direction.
void expectClosed(const Mesh& result, const char* what) {
    const program::Closedness closedness = program::measureClosedness(result, program::CLOSING_TOLERANCE);
    EXPECT_EQ(closedness.openEdges, 0U) << what << ", gap " << closedness.largestGap;
}

// The same triangles in the same order, corner by corner, within rounding.
void expectNearlySame(const Mesh& a, const Mesh& b, const char* what) {
    ASSERT_EQ(a.vertices.size(), b.vertices.size()) << what;
    double largest = 0;
    for (std::size_t i = 0; i < a.vertices.size(); ++i) {
        const Vec3& p = a.vertices[i].pos;
        const Vec3& q = b.vertices[i].pos;
        largest = std::max({largest, std::abs(p.x - q.x), std::abs(p.y - q.y), std::abs(p.z - q.z)});
    }
    EXPECT_LT(largest, SMALL) << what;
}

// Without the sign of zeros, which differs between -(a - a) and b - b.
Mesh withPlainZeros(Mesh mesh) {
    for (Vertex& vertex : mesh.vertices) {
        for (Vec3* v : {&vertex.pos, &vertex.normal}) *v = {v->x + 0.0, v->y + 0.0, v->z + 0.0};
    }
    return mesh;
}

Mesh aboutX(Mesh mesh) {
    for (Vertex& vertex : mesh.vertices) {
        for (Vec3* v : {&vertex.pos, &vertex.normal}) *v = {v->x, -v->z, v->y};
    }
    return mesh;
}
Mesh aboutY(Mesh mesh) {
    for (Vertex& vertex : mesh.vertices) {
        for (Vec3* v : {&vertex.pos, &vertex.normal}) *v = {v->z, v->y, -v->x};
    }
    return mesh;
}
Mesh aboutZ(Mesh mesh) {
    for (Vertex& vertex : mesh.vertices) {
        for (Vec3* v : {&vertex.pos, &vertex.normal}) *v = {-v->y, v->x, v->z};
    }
    return mesh;
}

} // namespace

TEST(Laws, VolumesPointsAndEdgesOfTwoSolids) {
    forCases("pairs", 700, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        const Mesh united = unite(a, b);
        const Mesh subtracted = subtract(a, b);
        const Mesh common = intersect(a, b);

        const double both = volume(common);
        EXPECT_NEAR(volume(united) + both, volume(a) + volume(b), SMALL);
        EXPECT_NEAR(volume(subtracted), volume(a) - both, SMALL);

        for (int i = 0; i < 5; ++i) {
            const Vec3 p = pointClearOf(random, {&a, &b});
            expectWithin(united, p, within(a, p) || within(b, p), "union");
            expectWithin(subtracted, p, within(a, p) && !within(b, p), "difference");
            expectWithin(common, p, within(a, p) && within(b, p), "intersection");
        }

        expectClosed(united, "union");
        expectClosed(subtracted, "difference");
        expectClosed(common, "intersection");
    });
}

TEST(Laws, SwappedOperandsOfUnionAndIntersectionGiveTheSameSolid) {
    forCases("swapped", 400, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        for (const TwoMeshOperation& operation : {unite, intersect}) {
            const Mesh one = operation(a, b);
            const Mesh other = operation(b, a);
            EXPECT_NEAR(volume(one), volume(other), SMALL) << operation.name;
            for (int i = 0; i < 5; ++i) {
                const Vec3 p = pointClearOf(random, {&a, &b});
                EXPECT_NEAR(windingNumber(one, p), windingNumber(other, p), SMALL) << operation.name;
            }
        }
    });
}

TEST(Laws, ASolidWithItselfIsItselfAndWithoutItselfNothing) {
    forCases("itself", 700, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh united = unite(a, a);
        const Mesh common = intersect(a, a);
        EXPECT_NEAR(volume(united), volume(a), SMALL);
        EXPECT_NEAR(volume(common), volume(a), SMALL);
        EXPECT_EQ(subtract(a, a).vertices.size(), 0U);
        for (int i = 0; i < 5; ++i) {
            const Vec3 p = pointClearOf(random, {&a});
            expectWithin(united, p, within(a, p), "union");
            expectWithin(common, p, within(a, p), "intersection");
        }
        expectClosed(united, "union");
        expectClosed(common, "intersection");
    });
}

// note: where that law ends. Of a mesh that crosses itself, each part cuts off what of the other lies inside it. And
// where rounding is coarser than the tolerance, triangles do not lie in their own planes.
TEST(Laws, AMeshWithoutItselfIsNotNothingWhereItCrossesItselfOrIsTooLargeForTheTolerance) {
    Random random(3);
    const Mesh crossing = joined(box({0, 0, 0}, {2, 2, 2}), box({1, 1, 1}, {3, 3, 3}));
    const Mesh sphere = turned(icosphere(1, {0.1, 0.2, 0.3}, 1), random);
    EXPECT_GT(subtract(crossing, crossing).vertices.size(), 0U);
    EXPECT_EQ(subtract(scaled(sphere, 1e8), scaled(sphere, 1e8)).vertices.size(), 0U);
    EXPECT_GT(subtract(scaled(sphere, 1e10), scaled(sphere, 1e10)).vertices.size(), 0U);
}

TEST(Laws, OneSolidAfterTheOtherIsBothAtOnce) {
    forCases("cutters", 400, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const std::vector<Mesh> cutters{draw(random), draw(random)};
        const Mesh inTurn = subtract(subtract(a, cutters[0]), cutters[1]);
        std::vector<Mesh> results{inTurn, subtract(a, unite(cutters[0], cutters[1]))};
        for (const BatchOperation& operation : batchOperations) results.push_back(operation(a, cutters));

        const double expected = volume(inTurn);
        for (std::size_t i = 0; i < results.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "way " << i);
            EXPECT_NEAR(volume(results[i]), expected, SMALL);
            expectClosed(results[i], "difference");
        }
        for (int i = 0; i < 3; ++i) {
            const Vec3 p = pointClearOf(random, {&a, &cutters[0], &cutters[1]});
            const bool left = within(a, p) && !within(cutters[0], p) && !within(cutters[1], p);
            for (const Mesh& result : results) expectWithin(result, p, left, "difference");
        }
    });
}

// About z the sums of products are the same, for x * y + y * x is; so are the bits. About x and y they are taken in
// another order, and the results differ by rounding, nowhere near the tolerance.
TEST(Laws, AQuarterTurnTurnsTheResult) {
    forCases("turned", 400, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        for (const TwoMeshOperation& operation : twoMeshOperations) {
            SCOPED_TRACE(operation.name);
            const Mesh result = operation(a, b);
            EXPECT_TRUE(sameBits(withPlainZeros(operation(aboutZ(a), aboutZ(b))), withPlainZeros(aboutZ(result))));
            expectNearlySame(operation(aboutX(a), aboutX(b)), aboutX(result), "about x");
            expectNearlySame(operation(aboutY(a), aboutY(b)), aboutY(result), "about y");
        }
    });
}

// The tolerance does not grow along: this holds where nothing lies so near a plane that it decides.
TEST(Laws, TwiceOrManyTimesTheSizeGivesTheBitsOfTheResultAtThatSize) {
    forCases("scaled", 400, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        for (const TwoMeshOperation& operation : twoMeshOperations) {
            SCOPED_TRACE(operation.name);
            const Mesh result = operation(a, b);
            for (const double by : {2.0, 64.0, 4096.0}) {
                EXPECT_TRUE(sameBits(operation(scaled(a, by), scaled(b, by)), scaled(result, by))) << by;
            }
        }
    });
}

} // namespace orva::test

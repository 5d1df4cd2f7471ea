// The five operations against the reference, on meshes of many kinds.
#include "cases.hpp"
#include "operations.hpp"
#include "reference.hpp"
#include "seeds.hpp"

#include <tbb/global_control.h>

#include <xmmintrin.h>

namespace orva::equivalence {

namespace {

constexpr std::array<Mesh (*)(const Mesh&, const Mesh&), 3> references{reference::unite, reference::subtract,
                                                                       reference::intersect};

// All three operations on one pair; now and then through the C records, which are converted by code of their own.
void compare(Random& random, const MeshPair& pair) {
    const bool throughC = chance(random, 10);
    for (std::size_t i = 0; i < references.size(); ++i) {
        const test::TwoMeshOperation& operation = test::twoMeshOperations[i];
        SCOPED_TRACE(testing::Message() << operation.name << (throughC ? " in C" : "") << " of "
                                        << pair.a.vertices.size() / 3 << " and " << pair.b.vertices.size() / 3
                                        << " triangles");
        const Mesh result = throughC ? operation.throughC(pair.a, pair.b) : operation(pair.a, pair.b);
        EXPECT_TRUE(test::sameBits(result, references[i](pair.a, pair.b))) << "(library against reference)";
    }
}

void comparePairs(int count, MeshPair (*draw)(Random&)) {
    forSeeds(count, [draw](Random& random) {
        const MeshPair pair = draw(random);
        compare(random, pair);
    });
}

} // namespace

TEST(Operations, BoxesOnACoarseGrid) {
    comparePairs(1500, boxesOnCoarseGrid);
}
TEST(Operations, TheSameSolidTwice) {
    comparePairs(500, sameSolidTwice);
}
TEST(Operations, CornersAboutTheToleranceOffPlanes) {
    comparePairs(1000, nearTolerance);
}
TEST(Operations, TurnedBoxesAndSpheres) {
    comparePairs(200, turnedSolids);
}
TEST(Operations, Soups) {
    comparePairs(300, soups);
}
TEST(Operations, SliversAndDegenerateTriangles) {
    comparePairs(500, slivers);
}
TEST(Operations, NaNAndInfiniteCoordinates) {
    comparePairs(500, withoutNumbers);
}
TEST(Operations, CoordinatesThatOverflow) {
    comparePairs(500, overflowing);
}
TEST(Operations, CoordinatesThatVanish) {
    comparePairs(500, vanishing);
}
TEST(Operations, SizesAroundPowersOfTwo) {
    comparePairs(500, aroundPowersOfTwo);
}
TEST(Operations, SizesAroundAThousand) {
    comparePairs(30, aroundAThousand);
}
TEST(Operations, SmallLargeAndFarFromTheOrigin) {
    comparePairs(400, placedAnywhere);
}
TEST(Operations, FineSpheres) {
    comparePairs(5, fineSpheres);
}

TEST(Operations, NodesHeavyEnoughForTasksWithOneTwoAndEightThreads) {
    forSeeds(18, [](Random& random) {
        const MeshPair pair = griddedBoxes(random);
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, oneOf(random, {1U, 2U, 8U}));
        compare(random, pair);
    });
}

TEST(Operations, RoundingAndSubnormalsAsTheCallerSetsThem) {
    forSeeds(300, [](Random& random) {
        const MeshPair pair = chance(random, 50) ? turnedSolids(random) : vanishing(random);
        const unsigned mode = oneOf(random, {_MM_ROUND_UP, _MM_ROUND_DOWN, _MM_ROUND_TOWARD_ZERO});
        const unsigned before = _mm_getcsr();
        _mm_setcsr((before & ~_MM_ROUND_MASK) | mode | (chance(random, 50) ? _MM_FLUSH_ZERO_ON : 0U));
        compare(random, pair);
        _mm_setcsr(before);
    });
}

TEST(Operations, CutterSetsInTurnAndAsOneUnion) {
    forSeeds(800, [](Random& random) {
        const std::vector<Mesh> meshes = baseAndCutters(random);
        const std::vector<Mesh> cutters(meshes.begin() + 1, meshes.end());
        const bool throughC = chance(random, 10);
        const auto compareWith = [&](const test::BatchOperation& operation, const Mesh& expected) {
            SCOPED_TRACE(testing::Message()
                         << operation.name << (throughC ? " in C" : "") << ", " << cutters.size() << " cutters");
            const Mesh result =
                throughC ? operation.throughC(meshes.front(), cutters) : operation(meshes.front(), cutters);
            EXPECT_TRUE(test::sameBits(result, expected)) << "(library against reference)";
        };
        compareWith(test::subtractInTurn, reference::subtractInTurn(meshes.front(), cutters));
        compareWith(test::subtractUnion, reference::subtractUnion(meshes.front(), cutters));
    });
}

} // namespace orva::equivalence

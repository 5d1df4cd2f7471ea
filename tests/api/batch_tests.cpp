#include "golden.hpp"
#include "measures.hpp"
#include "operations.hpp"

#include <thread>

namespace orva::test {

namespace {

const Mesh block = box({0, 0, 0}, {10, 1, 3});

std::vector<Mesh> windows(int count) {
    std::vector<Mesh> cutters;
    for (int i = 0; i < count; ++i) {
        const double x = 10.0 * i / count + 0.1;
        cutters.push_back(box({x, -1, 1}, {x + 6.0 / count, 2, 2}));
    }
    return cutters;
}

} // namespace

TEST(Batch, GoldenResultsMeetEveryBitInBothInterfaces) {
    int compared = 0;
    int index = -1;
    for (const GoldenCase& golden : readGoldenCases()) {
        ++index;
        const bool inTurn = golden.operation == GoldenOperation::SubtractInTurn;
        if (!inTurn && golden.operation != GoldenOperation::SubtractUnion) continue;
        SCOPED_TRACE(testing::Message() << "case " << index);
        ASSERT_FALSE(golden.inputs.empty());
        const Mesh& base = golden.inputs.front();
        const std::vector<Mesh> cutters(golden.inputs.begin() + 1, golden.inputs.end());
        const BatchOperation& operation = inTurn ? subtractInTurn : subtractUnion;
        EXPECT_TRUE(sameBits(operation(base, cutters), golden.result));
        EXPECT_TRUE(sameBits(operation.throughC(base, cutters), golden.result));
        if (!inTurn && cutters.size() <= 2) {
            EXPECT_TRUE(sameBits(subtractUnionParallel(base, cutters), golden.result));
            EXPECT_TRUE(sameBits(subtractUnionParallel.throughC(base, cutters), golden.result));
        }
        ++compared;
    }
    EXPECT_EQ(compared, 20);
}

TEST(Batch, WithoutCuttersLeavesTheOutputAlone) {
    for (const BatchOperation& operation : batchOperations) {
        SCOPED_TRACE(operation.name);
        Mesh output = triangle({1, 2, 3}, {4, 5, 6}, {7, 8, 0});
        const Mesh before = output;
        operation.cpp(output, block, {});
        EXPECT_TRUE(sameBits(output, before));
    }
}

TEST(Batch, OfOneCutterIsTheDifference) {
    const Mesh cutter = box({1, -1, 1}, {2, 2, 2});
    for (const BatchOperation& operation : batchOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_TRUE(sameBits(operation(block, {cutter}), subtract(block, cutter)));
        EXPECT_TRUE(sameBits(operation.throughC(block, {cutter}), subtract(block, cutter)));
    }
}

TEST(Batch, InTurnIsTheDifferenceOfTheDifference) {
    const std::vector<Mesh> cutters = windows(5);
    double expected = volume(block);
    for (const Mesh& cutter : cutters) expected -= volume(intersect(block, cutter));
    EXPECT_NEAR(volume(subtractInTurn(block, cutters)), expected, 1e-9);
}

TEST(Batch, WithAnEmptyCutterHasNoTriangles) {
    Mesh twoPoints;
    twoPoints.vertices.resize(2);
    for (const Mesh& empty : {Mesh{}, twoPoints}) {
        for (std::size_t place = 0; place < 3; ++place) {
            std::vector<Mesh> cutters = windows(2);
            cutters.insert(cutters.begin() + static_cast<std::ptrdiff_t>(place), empty);
            for (const BatchOperation& operation : batchOperations) {
                SCOPED_TRACE(operation.name);
                EXPECT_TRUE(operation(block, cutters).vertices.empty());
                EXPECT_TRUE(operation.throughC(block, cutters).vertices.empty());
            }
        }
    }
}

TEST(Batch, OfAnEmptyBaseHasNoTriangles) {
    for (const BatchOperation& operation : batchOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_TRUE(operation({}, windows(3)).vertices.empty());
        EXPECT_TRUE(operation.throughC({}, windows(3)).vertices.empty());
    }
}

TEST(Batch, OfDistantCuttersKeepsTheBase) {
    const std::vector<Mesh> distant{moved(unitCube(), {20, 0, 0}), moved(unitCube(), {0, 20, 0}),
                                    moved(unitCube(), {0, 0, 20})};
    for (const BatchOperation& operation : batchOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_NEAR(volume(operation(block, distant)), volume(block), 1e-9);
    }
}

TEST(Batch, InAnotherOrderOfCuttersGivesTheSameSolid) {
    std::vector<Mesh> cutters = windows(4);
    cutters.push_back(icosphere(1, {5, 0.5, 1.5}, 0.8));
    std::vector<Mesh> reversed(cutters.rbegin(), cutters.rend());
    for (const BatchOperation& operation : batchOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_NEAR(volume(operation(block, cutters)), volume(operation(block, reversed)), 1e-9);
    }
}

TEST(Batch, AppendsBehindWhatTheOutputHolds) {
    for (const BatchOperation& operation : {subtractInTurn, subtractUnion}) {
        SCOPED_TRACE(operation.name);
        const Mesh before = triangle({1, 2, 3}, {4, 5, 6}, {7, 8, 0});
        Mesh output = before;
        operation.cpp(output, block, windows(3));
        EXPECT_TRUE(sameBits(output, joined(before, operation(block, windows(3)))));
    }
}

TEST(Batch, IntoItsOwnBase) {
    for (const BatchOperation& operation : {subtractInTurn, subtractUnion}) {
        SCOPED_TRACE(operation.name);
        Mesh output = block;
        operation.cpp(output, output, windows(3));
        EXPECT_TRUE(sameBits(output, joined(block, operation(block, windows(3)))));
    }
}

TEST(CBatch, WithANullPointerOrNoCuttersWritesNothing) {
    const MeshD base = viewOf(block);
    const Mesh window = windows(1)[0];
    const MeshD cutter = viewOf(window);
    VertexD vertex{};
    for (const BatchOperation& operation : batchOperations) {
        SCOPED_TRACE(operation.name);
        MeshD output{77, &vertex};
        operation.c(nullptr, &base, &cutter, 1);
        operation.c(&output, nullptr, &cutter, 1);
        operation.c(&output, &base, nullptr, 1);
        operation.c(&output, &base, &cutter, 0);
        operation.c(&output, &base, &cutter, -1);
        EXPECT_EQ(output.count, 77);
        EXPECT_EQ(output.vertices, &vertex);
    }
}

TEST(CBatch, GivesTheBitsOfTheNamespacedOnes) {
    for (const int count : {2, 3, 9}) {
        for (const BatchOperation& operation : {subtractInTurn, subtractUnion}) {
            SCOPED_TRACE(operation.name);
            EXPECT_TRUE(sameBits(operation(block, windows(count)), operation.throughC(block, windows(count))));
        }
    }
}

#ifndef ORVA_TEST_SETS
#define ORVA_TEST_SETS 200 // fewer where every step is watched (tests/thread)
#endif

// Everything that is to be known of the result follows from the inputs: a point is in it exactly if it is in the base
// and in no cutter.
TEST(Batch, OfRandomOverlappingCuttersIsTheBaseWithoutThemEveryWay) {
    constexpr int SETS = ORVA_TEST_SETS;
    constexpr int POINTS = 2000;
    constexpr std::uint64_t SEED = 31;
    std::cout << "seed " << SEED << "\n";
    Random random(SEED);
    int asked = 0;
    int inside = 0;
    for (int set = 0; set < SETS; ++set) {
        SCOPED_TRACE(testing::Message() << "set " << set);
        const Mesh base = set % 2 == 0 ? box({-1, -1, -1}, {1, 1, 1}) : icosphere(1, {0, 0, 0}, 1.2);
        std::vector<Mesh> cutters;
        const int count = random.integer(2, 12);
        for (int i = 0; i < count; ++i) {
            const double size = random.uniform(0.2, 0.7);
            const bool round = random.integer(0, 3) == 0;
            Mesh cutter =
                turned(round ? icosphere(0, {0, 0, 0}, size) : box({-size, -size, -size}, {size, size, size}), random);
            const double x = random.uniform(-1, 1);
            const double y = random.uniform(-1, 1);
            const double z = random.uniform(-1, 1);
            cutters.push_back(moved(std::move(cutter), {x, y, z}));
        }

        std::vector<Mesh> results;
        for (const BatchOperation& operation : batchOperations) results.push_back(operation(base, cutters));
        const double expected = volume(results[0]);
        for (const Mesh& result : results) EXPECT_NEAR(volume(result), expected, 1e-9 * volume(base));

        // One way for each set takes all the points; the volumes tie the others to it.
        const Mesh& result = results[static_cast<std::size_t>(set) % results.size()];
        for (int i = 0; i < POINTS; ++i) {
            const double x = random.uniform(-1.2, 1.2);
            const double y = random.uniform(-1.2, 1.2);
            const double z = random.uniform(-1.2, 1.2);
            const Vec3 point{x, y, z};
            double nearest = distanceTo(base, point);
            bool within = windingNumber(base, point) > 0.5;
            for (const Mesh& cutter : cutters) {
                nearest = std::min(nearest, distanceTo(cutter, point));
                within = within && windingNumber(cutter, point) < 0.5;
            }
            if (nearest < 1e-4) continue;
            ++asked;
            inside += within ? 1 : 0;
            ASSERT_EQ(crossingNumber(result, point), within ? 1 : 0) << x << " " << y << " " << z;
        }
    }
    EXPECT_GT(asked, SETS * POINTS * 9 / 10);
    EXPECT_GT(inside, asked / 20) << "the case would show nothing";
}

TEST(Batch, InParallelFromFourThreadsAtOnceOnSharedInputs) {
    const Mesh base = icosphere(1, {0, 0, 0}, 1);
    std::vector<Mesh> cutters;
    for (int i = 0; i < 4; ++i) cutters.push_back(moved(unitCube(), {0.3 * i - 0.7, 0.2 * i - 0.5, 0.1 * i}));
    const double expected = volume(subtractUnion(base, cutters));
    const std::vector<Mesh> pair(cutters.begin(), cutters.begin() + 2);
    const Mesh expectedOfPair = subtractUnion(base, pair);
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    for (int& each : wrong) {
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i) {
                if (std::abs(volume(subtractUnionParallel(base, cutters)) - expected) > 1e-9) ++each;
                if (i % 5 == 0 && !sameBits(subtractUnionParallel(base, pair), expectedOfPair)) ++each;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, (std::array<int, 4>{}));
}

} // namespace orva::test

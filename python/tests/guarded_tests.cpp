// What stands between the interpreter and the library, without an interpreter.
#include "bits.hpp"
#include "guarded.h"

#include <tbb/global_control.h>
#include <tbb/task_arena.h>

#include <string>

namespace orva::test {

namespace {

struct Outcome {
    std::int32_t code;
    Mesh mesh;
    std::string text;
};

Outcome call(std::int32_t operation, std::size_t textSize = 256) {
    const Mesh base = box({0, 0, 0}, {10, 0.3, 3});
    const Mesh cutter = box({1, -1, 1}, {2, 1, 2});
    const MeshD record = viewOf(base);
    const std::vector<MeshD> cutters(4, viewOf(cutter));
    Outcome outcome{0, {}, std::string(textSize, '#')};
    MeshD output{7, nullptr};
    outcome.code = orva_guarded_call(operation, &output, &record, cutters.data(), 4, outcome.text.data(), textSize);
    outcome.mesh = meshOf(output);
    orva_guarded_free(output.vertices);
    return outcome;
}

void expectThatParallelReturns() {
    const Outcome parallel = call(OrvaGuardedSubtractUnionParallel);
    EXPECT_EQ(parallel.code, OrvaGuardedDone);
    EXPECT_FALSE(parallel.mesh.vertices.empty());
    EXPECT_TRUE(sameBits(parallel.mesh, call(OrvaGuardedSubtractUnion).mesh));
}

} // namespace

TEST(Guarded, ParallelReturnsWhereTheSchedulerHasOneThread) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
    expectThatParallelReturns();
}

TEST(Guarded, ParallelReturnsInAnArenaOfOne) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 4);
    tbb::task_arena arena(1);
    arena.execute(expectThatParallelReturns);
}

TEST(Guarded, AnExceptionIsACodeAndAText) {
    const Outcome outcome = call(99);
    EXPECT_EQ(outcome.code, OrvaGuardedOther);
    EXPECT_STREQ(outcome.text.c_str(), "no such operation");
    EXPECT_TRUE(outcome.mesh.vertices.empty());
}

TEST(Guarded, ALongTextIsCutShort) {
    EXPECT_STREQ(call(99, 8).text.c_str(), "no such");
    EXPECT_STREQ(call(99, 1).text.c_str(), "");
    EXPECT_EQ(call(99, 0).code, OrvaGuardedOther);
}

} // namespace orva::test

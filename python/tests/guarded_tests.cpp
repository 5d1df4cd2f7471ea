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

struct Tidied {
    OrvaTidyStatus status;
    std::int32_t faces;
};

Tidied tidy(std::int32_t operation, std::int32_t count = 5) {
    const Mesh base = box({0, 0, 0}, {10, 0.3, 3});
    const Mesh cutter = box({1, -1, 1}, {2, 1, 2});
    std::vector<MeshD> meshes(static_cast<std::size_t>(count), viewOf(cutter));
    meshes.at(0) = viewOf(base);
    OrvaTidyOptions options;
    orva_tidy_default_options(&options);
    OrvaSolid output{7, 7, nullptr, nullptr, nullptr, nullptr};
    OrvaTidyReport report{};
    const OrvaTidyStatus status = orva_guarded_tidy(operation, &output, &report, meshes.data(), count, &options);
    const std::int32_t faces = output.face_count;
    orva_guarded_tidy_free(&output);
    EXPECT_EQ(output.face_count, 0);
    return {status, faces};
}

void expectThatParallelReturns() {
    const Outcome parallel = call(OrvaGuardedSubtractUnionParallel);
    EXPECT_EQ(parallel.code, OrvaGuardedDone);
    EXPECT_FALSE(parallel.mesh.vertices.empty());
    EXPECT_TRUE(sameBits(parallel.mesh, call(OrvaGuardedSubtractUnion).mesh));
    EXPECT_EQ(tidy(OrvaGuardedSubtractUnionParallel).faces, tidy(OrvaGuardedSubtractUnion).faces);
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

TEST(Guarded, TidiesEachOperation) {
    for (const std::int32_t operation :
         {OrvaGuardedUnion, OrvaGuardedSubtract, OrvaGuardedIntersect, OrvaGuardedSubtractInTurn,
          OrvaGuardedSubtractUnion, OrvaGuardedSubtractUnionParallel}) {
        const Tidied tidied = tidy(operation);
        EXPECT_EQ(tidied.status, ORVA_TIDY_DONE) << operation;
        EXPECT_GT(tidied.faces, 0) << operation;
    }
    EXPECT_EQ(tidy(OrvaGuardedTidy, 1).faces, 12);
}

TEST(Guarded, NoSuchOperationIsAStatus) {
    const Tidied tidied = tidy(99);
    EXPECT_EQ(tidied.status, ORVA_TIDY_BAD_ARGUMENT);
    EXPECT_EQ(tidied.faces, 0);
}

} // namespace orva::test

#include "compare.hpp"

#include "memory.hpp"
#include "operations.hpp"
#include "reference.hpp"
#include "targets.hpp"

#include <tbb/task_arena.h>

#include <limits>
#include <string>

namespace orva::fuzz {

namespace {

constexpr std::array<Mesh (*)(const Mesh&, const Mesh&), 3> references{reference::unite, reference::subtract,
                                                                       reference::intersect};

void requireSame(const char* operation, const Mesh& actual, const Mesh& expected) {
    const testing::AssertionResult same = test::sameBits(actual, expected);
    if (!same) throw Difference(std::string(operation) + " differs from the reference: " + same.message());
}

// What a call may take; ordinary cases need a tenth of it.
constexpr std::size_t BUDGET = 4U << 20;

// On this thread alone: tasks handed to others cost more than cases as small as these.
template <typename Call> Mesh alone(Call call) {
    static tbb::task_arena arena(1);
    allowWorkingMemory(BUDGET);
    return arena.execute(call);
}

} // namespace

Mesh one(std::size_t operation, const Mesh& a, const Mesh& b, Interface door) {
    const test::TwoMeshOperation& library = test::twoMeshOperations[operation];
    Mesh result = alone([&] { return door == Interface::C ? library.throughC(a, b) : library(a, b); });
    requireSame(library.name, result, references[operation](a, b));
    return result;
}

std::array<Mesh, 3> allThree(const Mesh& a, const Mesh& b, Interface door) {
    return {one(0, a, b, door), one(1, a, b, door), one(2, a, b, door)};
}

std::vector<Mesh> allBatches(const Mesh& base, const std::vector<Mesh>& cutters, Interface door) {
    const auto call = [&](const test::BatchOperation& operation) {
        return door == Interface::C ? operation.throughC(base, cutters) : operation(base, cutters);
    };
    std::vector<Mesh> results{alone([&] { return call(test::subtractInTurn); }),
                              alone([&] { return call(test::subtractUnion); })};
    requireSame("in turn", results[0], reference::subtractInTurn(base, cutters));
    requireSame("as one union", results[1], reference::subtractUnion(base, cutters));
    if (cutters.size() <= 2) {
        // Without a limit: memory that runs out inside a merge is documented to leave the call waiting without end.
        allowWorkingMemory(std::numeric_limits<std::size_t>::max());
        results.push_back(call(test::subtractUnionParallel));
        requireSame("as one union, in parallel", results[2], results[1]);
    }
    return results;
}

} // namespace orva::fuzz

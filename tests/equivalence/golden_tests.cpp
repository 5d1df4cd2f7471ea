// The reference against recorded results: what the library is held against is itself held against something.
#include "bits.hpp"
#include "golden.hpp"
#include "reference.hpp"

namespace orva::equivalence {

namespace {

test::Mesh referenceResult(const test::GoldenCase& golden) {
    const test::Mesh& first = golden.inputs[0];
    const std::vector<test::Mesh> others(golden.inputs.begin() + 1, golden.inputs.end());
    switch (golden.operation) {
    case test::GoldenOperation::Union:
        return reference::unite(first, others[0]);
    case test::GoldenOperation::Subtract:
        return reference::subtract(first, others[0]);
    case test::GoldenOperation::Intersect:
        return reference::intersect(first, others[0]);
    case test::GoldenOperation::SubtractInTurn:
        return reference::subtractInTurn(first, others);
    default:
        return reference::subtractUnion(first, others);
    }
}

} // namespace

TEST(Reference, MeetsEveryGoldenBit) {
    int index = -1;
    for (const test::GoldenCase& golden : test::readGoldenCases()) {
        ++index;
        EXPECT_TRUE(test::sameBits(referenceResult(golden), golden.result)) << "case " << index;
    }
    EXPECT_GT(index, 300);
}

} // namespace orva::equivalence

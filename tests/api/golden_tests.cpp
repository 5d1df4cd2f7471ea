#include "golden.hpp"
#include "operations.hpp"

namespace orva::test {

TEST(Golden, TwoMeshOperationsMeetEveryBitInBothInterfaces) {
    int compared = 0;
    int index = -1;
    for (const GoldenCase& golden : readGoldenCases()) {
        ++index;
        const auto number = static_cast<std::size_t>(golden.operation);
        if (number >= twoMeshOperations.size()) continue;
        ASSERT_EQ(golden.inputs.size(), 2U) << "case " << index;
        const TwoMeshOperation& operation = twoMeshOperations[number];
        SCOPED_TRACE(testing::Message() << "case " << index << ", " << operation.name);
        EXPECT_TRUE(sameBits(operation(golden.inputs[0], golden.inputs[1]), golden.result));
        EXPECT_TRUE(sameBits(operation.throughC(golden.inputs[0], golden.inputs[1]), golden.result));
        ++compared;
    }
    EXPECT_EQ(compared, 324);
}

} // namespace orva::test

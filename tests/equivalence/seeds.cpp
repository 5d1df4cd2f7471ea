#include "seeds.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#ifndef ORVA_TEST_PART
#define ORVA_TEST_PART 1 // one seed of so many where every step is watched (tests/sanitize)
#endif

namespace orva::equivalence {

namespace {

struct Range {
    std::uint64_t first;
    std::uint64_t last;
    bool chosen; ///< by the environment
};

Range rangeOf(int count) {
    const char* text = std::getenv("ORVA_SEEDS"); // NOLINT(concurrency-mt-unsafe)
    if (text == nullptr) return {0, static_cast<std::uint64_t>(count - 1) / ORVA_TEST_PART, false};
    char* end = nullptr;
    const std::uint64_t first = std::strtoull(text, &end, 10);
    return {first, *end == '-' ? std::strtoull(end + 1, nullptr, 10) : first, true};
}

int failures() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

} // namespace

void forSeeds(int count, const std::function<void(test::Random& random)>& check) {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test.test_suite_name()) + "." + test.name();
    const Range range = rangeOf(count);
    int failed = 0;
    for (std::uint64_t seed = range.first; seed <= range.last; ++seed) {
        if (range.chosen) std::cout << name << " seed " << seed << std::endl;
        const std::string again = "seed " + std::to_string(seed) + "; alone: ORVA_SEEDS=" + std::to_string(seed) +
                                  " equivalence_tests --gtest_filter=" + name;
        SCOPED_TRACE(again);
        const int before = failures();
        test::Random random(seed);
        try {
            check(random);
        } catch (const std::exception& exception) {
            ADD_FAILURE() << "threw: " << exception.what();
        }
        if (failures() != before && ++failed == 3) {
            std::cout << name << ": three seeds failed, the rest is left out" << std::endl;
            return;
        }
    }
}

} // namespace orva::equivalence

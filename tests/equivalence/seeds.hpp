// Runs a check for many seeds, each of which draws a case of its own.
//
// A failure names its seed. One seed again, or a range of other ones than usual:
//
//     ORVA_SEEDS=17 equivalence_tests --gtest_filter=Operations.BoxesOnACoarseGrid
//     ORVA_SEEDS=10000-99999 equivalence_tests
//
// Where ORVA_SEEDS is set every seed is announced before it runs: the last one announced is the one that crashed.
#pragma once

#include "shapes.hpp"

#include <functional>

namespace orva::equivalence {

/// Seeds 0 to count - 1, or what ORVA_SEEDS says; stops after three that failed.
void forSeeds(int count, const std::function<void(test::Random& random)>& check);

} // namespace orva::equivalence

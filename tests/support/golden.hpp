// The golden results: inputs and what the operations give for them, as bit patterns.
#pragma once

#include "shapes.hpp"

#include <vector>

namespace orva::test {

enum class GoldenOperation { Union = 0, Subtract = 1, Intersect = 2, SubtractInTurn = 3, SubtractUnion = 4 };

struct GoldenCase {
    GoldenOperation operation;
    std::vector<Mesh> inputs; ///< a and b, or the base and its cutters
    Mesh result;
};

/// All of golden/cases.bin; throws std::runtime_error when the file is missing or not whole. golden/README.md has the
/// format.
std::vector<GoldenCase> readGoldenCases();

} // namespace orva::test

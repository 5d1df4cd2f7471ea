// What can be counted of an indexed mesh, by its indices alone: an opinion of its own beside what a report says.
#pragma once

#include "orva/tidy.hpp"
#include "shapes.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <iosfwd>

namespace orva::test {

struct Counted {
    std::uint64_t badFaces = 0;        ///< with an index beyond the vertices, or two equal corners
    std::uint64_t openEdges = 0;       ///< directed edges without one in the opposite direction
    std::uint64_t repeatedEdges = 0;   ///< directed edges that were there already
    std::uint64_t dividedVertices = 0; ///< whose faces do not hang together by the edges at it
    std::uint64_t unusedVertices = 0;
};
Counted count(const tidy::Solid& solid);

/// Each directed edge once, and once in the opposite direction; no face with equal corners; one umbrella a vertex.
testing::AssertionResult isClosed(const tidy::Solid& solid);

/// Vertices all used, corners and origins for each face, indices in range: what holds of every result.
testing::AssertionResult isWhole(const tidy::Solid& solid);

double volume(const tidy::Solid& solid);

/// Of all faces together.
double area(const tidy::Solid& solid);

/// Says what differs first.
testing::AssertionResult sameBits(const tidy::Solid& a, const tidy::Solid& b);

/// A solid to start from: equal positions become one vertex. Corners as in the mesh, origins {0, 0}, {0, 1}, ...
tidy::Solid indexed(const Mesh& mesh);

} // namespace orva::test

namespace orva::tidy {
std::ostream& operator<<(std::ostream& stream, const Report& report);
} // namespace orva::tidy

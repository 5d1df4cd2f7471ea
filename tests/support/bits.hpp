// Results compared and hashed by their bits: +0 differs from -0, any NaN equals any NaN.
#pragma once

#include "orva/orva.h"
#include "shapes.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace orva::test {

bool sameBits(double a, double b);
bool sameBits(const Vertex& a, const Vertex& b);
/// Says which vertex differs first.
testing::AssertionResult sameBits(const Mesh& a, const Mesh& b);

/// The triangles of both meshes, in whatever order, each starting at whichever corner.
testing::AssertionResult sameTriangles(const Mesh& a, const Mesh& b);

/// FNV-1a over the bits of all values.
class BitHash {
public:
    void add(std::uint64_t value);
    void add(const Mesh& mesh);
    std::uint64_t value() const { return hash_; }

private:
    std::uint64_t hash_ = 0xCBF29CE484222325U;
};

/// A C record that shows a mesh's own vertices; for inputs.
MeshD viewOf(const Mesh& mesh);
/// The mesh in a record.
Mesh meshOf(const MeshD& record);

} // namespace orva::test

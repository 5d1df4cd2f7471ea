// Whether two results are the same, bit for bit, for the examples that compare theirs.
#pragma once

#include <orva/types.hpp>

#include <cstring>

inline bool sameBits(const orva::types::Mesh<double>& a, const orva::types::Mesh<double>& b) {
    return a.vertices.size() == b.vertices.size() &&
           std::memcmp(a.vertices.data(), b.vertices.data(), a.vertices.size() * sizeof(orva::types::Vertex)) == 0;
}

// The scans and other real meshes that are measured with.
#pragma once

#include "cases.hpp"

#include <string>

namespace orva::bench {

/// Reads a file in the Object File Format; a face with more corners becomes a fan. Normals and aux are zero. Throws
/// std::runtime_error where it is not one.
Mesh readOff(const std::string& name);

/// Whether corners in one place taken for one vertex, each directed edge occurs once, and once in the opposite
/// direction.
bool isClosed(const Mesh& mesh);

} // namespace orva::bench

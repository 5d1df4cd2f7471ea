// The library's side of a job.
#pragma once

#include "cases.hpp"

namespace orva::bench {

/// What the library gives for a job, each operation through its own function.
Mesh byLibrary(Operation operation, const Mesh& first, const std::vector<Mesh>& others);

} // namespace orva::bench

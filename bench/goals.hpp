// What the library has to reach, measured and judged.
#pragma once

#include <string>

namespace orva::bench {

/// Prints a line for each goal; true where all are reached. `meshes` is the folder with the OFF files.
bool goalsReached(const std::string& meshes);

} // namespace orva::bench

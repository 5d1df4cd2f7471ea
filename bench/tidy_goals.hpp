// What tidied results have to reach, measured and judged.
#pragma once

#include "score.hpp"

#include <string>

namespace orva::bench {

/// `meshes` is the folder with the OFF files.
void judgeTidyGoals(Score& score, const std::string& meshes);

} // namespace orva::bench

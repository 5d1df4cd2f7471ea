#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addSubtract(CLI::App& app) {
    addBoolean(app, {.verb = "subtract",
                     .text = "What lies in A but not in B.",
                     .example = "orva subtract block.stl drill.stl -o part.stl",
                     .combine = bspcsg::subtractMesh});
}

} // namespace orva::program

#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addIntersect(CLI::App& app) {
    addBoolean(app, {.verb = "intersect",
                     .text = "What lies in both A and B.",
                     .example = "orva intersect bone.off window.off -o detail.stl",
                     .combine = bspcsg::intersectMesh});
}

} // namespace orva::program

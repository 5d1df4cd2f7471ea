#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addIntersect(CLI::App& app) {
    addBoolean(app, {.verb = "intersect",
                     .text = "What lies in both A and B.",
                     .example = "orva intersect bone.off window.off -o detail.stl",
                     .combine = [](auto& output, const auto& a, const auto& others) {
                         bspcsg::intersectMesh(output, a, others.front());
                     }});
}

} // namespace orva::program

#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addUnion(CLI::App& app) {
    addBoolean(app, {.verb = "union",
                     .text = "What lies in A, in B, or in both.",
                     .example = "orva union body.off handle.off -o cup.off",
                     .combine = [](auto& output, const auto& a, const auto& others) {
                         bspcsg::unionMesh(output, a, others.front());
                     }});
}

} // namespace orva::program

#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addIntersect(CLI::App& app, Command& command) {
    addBoolean(app, command,
               {.verb = "intersect",
                .text = "What lies in both A and B, or in all of them.",
                .example = "orva intersect bone.off window.off -o detail.stl",
                .emptyWhenApart = true,
                .combine = [](auto& output, const auto& a, const auto& others, Run& run) {
                    combineInTurn(bspcsg::intersectMesh, output, a, others, run);
                }});
}

} // namespace orva::program

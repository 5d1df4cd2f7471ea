#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addIntersect(CLI::App& app, Command& command) {
    addBoolean(
        app, command,
        {.verb = "intersect",
         .text = "What lies in both A and B, or in all of them.",
         .example = "orva intersect bone.off window.off -o detail.stl",
         .emptyWhenApart = true,
         .combine = [](auto& output, const auto& operands,
                       Run& run) { combineInTurn(bspcsg::intersectMesh, output, operands, run); },
         .combineTidied = [](auto& output, auto& operands, const auto& options,
                             Run& run) { return combineAll(tidy::intersectSolid, output, operands, options, run); }});
}

} // namespace orva::program

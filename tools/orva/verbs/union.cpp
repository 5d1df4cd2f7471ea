#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addUnion(CLI::App& app, Command& command) {
    addBoolean(
        app, command,
        {.verb = "union",
         .text = "What lies in A, in B, or in both.",
         .example = "orva union body.off handle.off -o cup.off\n"
                    "  orva union wall-*.stl -o house.stl --force",
         .refusesEmpty = true,
         .combine = [](auto& output, const auto& operands,
                       Run& run) { combineInTurn(bspcsg::unionMesh, output, operands, run); },
         .combineTidied = [](auto& output, auto& operands, const auto& options,
                             Run& run) { return combineAll(tidy::unionSolid, output, operands, options, run); }});
}

} // namespace orva::program

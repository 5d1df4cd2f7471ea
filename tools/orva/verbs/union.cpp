#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {

void addUnion(CLI::App& app, Command& command) {
    addBoolean(app, command,
               {.verb = "union",
                .text = "What lies in A, in B, or in both.",
                .example = "orva union body.off handle.off -o cup.off\n"
                           "  orva union wall-*.stl -o house.stl --force",
                .combine = [](auto& output, const auto& a, const auto& others, Run& run) {
                    combineInTurn(bspcsg::unionMesh, output, a, others, run);
                }});
}

} // namespace orva::program

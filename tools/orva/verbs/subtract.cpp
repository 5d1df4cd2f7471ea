#include "verbs/boolean.hpp"
#include "verbs/verbs.hpp"

#include "orva/bspcsg.hpp"

#include <memory>
#include <string>

namespace orva::program {

namespace {

using Mesh = Boolean::Mesh;

// The parallel union needs a thread of the scheduler besides ours, or it never returns; the same solid can be had
// without.
tidy::Cutting cuttingOf(const std::string& mode, Run& run) {
    if (mode == "parallel" && run.threads < 2) {
        run.report.warnings.push_back("--mode: one thread only: merging the cutters in turn, as with --mode union");
        return tidy::Cutting::AsOneUnion;
    }
    return mode == "parallel" ? tidy::Cutting::AsOneUnionParallel
           : mode == "union"  ? tidy::Cutting::AsOneUnion
                              : tidy::Cutting::InTurn;
}

void subtract(Mesh& output, const Operands& operands, tidy::Cutting cutting) {
    const auto& [base, cutters] = operands;
    if (cutting == tidy::Cutting::AsOneUnionParallel) {
        bspcsg::subtractMultiUnionMeshParallel(output, base, cutters);
    } else if (cutting == tidy::Cutting::AsOneUnion) {
        bspcsg::subtractMultiUnionMesh(output, base, cutters);
    } else {
        bspcsg::subtractMultiMesh(output, base, cutters);
    }
}

} // namespace

void addSubtract(CLI::App& app, Command& command) {
    const auto mode = std::make_shared<std::string>("sequential");
    CLI::App* verb =
        addBoolean(app, command,
                   {.verb = "subtract",
                    .text = "What lies in BASE but in no CUTTER.",
                    .example = "orva subtract block.stl drill.stl -o part.stl\n"
                               "  orva subtract wall.off door.off window-*.off -o house.off --mode union",
                    .first = "BASE",
                    .second = "CUTTER",
                    .combine =
                        [mode](Mesh& output, const Operands& operands, Run& run) {
                            run.progress.show("subtracting");
                            subtract(output, operands, cuttingOf(*mode, run));
                        },
                    .combineTidied =
                        [mode](tidy::Solid& output, Operands& operands, const tidy::Options& options, Run& run) {
                            run.progress.show("subtracting");
                            const tidy::Cutting cutting = cuttingOf(*mode, run);
                            return tidy::subtractSolid(output, operands.first, operands.others, cutting, options);
                        }});
    verb->add_option("--mode", *mode,
                     "several cutters in turn (sequential), or as one union (union), merged on several processors "
                     "(parallel); all give the same solid")
        ->check(CLI::IsMember({"sequential", "union", "parallel"}))
        ->capture_default_str();
}

} // namespace orva::program

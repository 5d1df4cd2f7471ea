#include "measures/closedness.hpp"
#include "measures/fitness.hpp"
#include "verbs/meshes.hpp"
#include "verbs/verbs.hpp"
#include "words.hpp"

#include <memory>
#include <string>

namespace orva::program {

namespace {

struct CheckOptions {
    CommonOptions common;
    std::vector<std::string> inputs;
};

std::string textOf(const std::string& file, const Fitness& fitness) {
    const Notes wrong = complaints(fitness);
    const Notes worthKnowing = remarks(fitness);
    std::string text = file + ": " + (wrong.empty() ? "fit" : "unfit") + "\n";
    text += formatted("  triangles  %zu in ", fitness.triangles) + counted(fitness.parts, "part", "parts") +
            formatted("; %zu without area, %zu narrower than %g, %zu double\n", fitness.degenerate, fitness.thin,
                      TOLERANCE, fitness.duplicates);
    text +=
        formatted("  edges      %zu boundary, %zu non-manifold, %zu flipped; %zu open within %g", fitness.boundaryEdges,
                  fitness.nonManifoldEdges, fitness.flippedEdges, fitness.openEdges, CLOSING_TOLERANCE);
    text += fitness.openEdges > 0 ? formatted(", gaps up to %.2g\n", fitness.largestGap) : "\n";
    const Manifold& byIndex = fitness.byIndex;
    text +=
        formatted("  by index   %zu vertices%s: ", byIndex.vertices, fitness.ownIndices ? "" : " (equal positions)") +
        (isEdgeManifold(byIndex) ? "closed and edge-manifold" : "not edge-manifold");
    text += formatted("; %zu open, %zu doubled, %zu turned; %zu umbrellas\n", byIndex.openEdges, byIndex.doubledEdges,
                      byIndex.turnedEdges, byIndex.umbrellas);
    text += formatted("  crossings  %zu pairs of triangles; %zu by less than %g\n", fitness.crossings.pairs,
                      fitness.crossings.shallow, CLOSING_TOLERANCE);
    text += formatted("  volume     %.10g\n  area       %.10g\n", fitness.volume, fitness.area);
    const types::Vec3& low = fitness.box.low;
    const types::Vec3& high = fitness.box.high;
    text +=
        formatted("  box        %.10g %.10g %.10g to %.10g %.10g %.10g\n", low.x, low.y, low.z, high.x, high.y, high.z);
    for (const std::string& line : wrong) text += "  unfit:     " + line + "\n";
    for (const std::string& line : worthKnowing) text += "  note:      " + line + "\n";
    return text;
}

Json jsonOf(const types::Vec3& v) {
    return Json::array({v.x, v.y, v.z});
}

Json jsonOf(const Manifold& manifold, bool own) {
    return {{"own", own},
            {"edge_manifold", isEdgeManifold(manifold)},
            {"vertices", manifold.vertices},
            {"open_edges", manifold.openEdges},
            {"doubled_edges", manifold.doubledEdges},
            {"turned_edges", manifold.turnedEdges},
            {"umbrellas", manifold.umbrellas},
            {"collapsed_triangles", manifold.collapsed}};
}

Json jsonOf(const Input& input, const Fitness& fitness) {
    const Notes wrong = complaints(fitness);
    return {{"file", input.file},
            {"format", input.format->name},
            {"fit", wrong.empty()},
            {"complaints", wrong},
            {"remarks", remarks(fitness)},
            {"triangles", fitness.triangles},
            {"parts", fitness.parts},
            {"inside_out_parts", fitness.insideOutParts},
            {"degenerate_triangles", fitness.degenerate},
            {"thin_triangles", fitness.thin},
            {"duplicate_triangles", fitness.duplicates},
            {"boundary_edges", fitness.boundaryEdges},
            {"non_manifold_edges", fitness.nonManifoldEdges},
            {"flipped_edges", fitness.flippedEdges},
            {"open_edges", fitness.openEdges},
            {"largest_gap", fitness.largestGap},
            {"crossing_pairs", fitness.crossings.pairs},
            {"shallow_crossing_pairs", fitness.crossings.shallow},
            {"by_index", jsonOf(fitness.byIndex, fitness.ownIndices)},
            {"volume", fitness.volume},
            {"area", fitness.area},
            {"box", {{"low", jsonOf(fitness.box.low)}, {"high", jsonOf(fitness.box.high)}}}};
}

// One at a time, so that the largest alone decides how much memory is needed. A file that cannot be read stops no
// other.
void check(const CheckOptions& options, Run& run) {
    const std::vector<Input> inputs = inputsOf(options.inputs, options.common.from);
    Report& report = run.report;
    Json& checked = report.members["inputs"] = Json::array();
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const Input& input = inputs[i];
        run.progress.show("checking " + input.file, i, inputs.size());
        try {
            const Model model = readInput(input, run);
            const Fitness fitness = measureFitness(model);
            checked.push_back(jsonOf(input, fitness));
            if (!options.common.quiet) report.text += textOf(input.file, fitness);
            if (report.code == ExitCode::Done && !complaints(fitness).empty()) report.code = ExitCode::Unfit;
        } catch (const Failure& failure) {
            checked.push_back({{"file", input.file}, {"format", input.format->name}, {"error", jsonOf(failure)}});
            report.errors.emplace_back(failure.what());
            report.code = failure.code;
        }
    }
}

} // namespace

void addCheck(CLI::App& app, Command& command) {
    const auto options = std::make_shared<CheckOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand("check", "Whether meshes are fit for a boolean, and if not, why.");
    verb->add_option("A", options->inputs, "meshes; - is stdin")->required()->type_name("FILE");
    addFrom(*verb, options->common);
    addReporting(*verb, options->common, "");
    verb->footer("Example:\n  orva check scan.stl\n"
                 "  orva check -q part.off && orva subtract part.off drill.off -o drilled.off\n\n"
                 "The exit code is 0 if all are fit, 4 if one is not, 3 if one cannot be read; with --quiet that is "
                 "all. Fit is a mesh that is closed, faces outward, has no triangle twice or without area, does not "
                 "cross itself, and is of a size for which the tolerance of 1e-6 is fine. What is said \"by index\" "
                 "is for other programs, and does a boolean no harm: whether each edge, as a pair of the file's "
                 "vertices, has two triangles that run along it in opposite directions; umbrellas are vertices whose "
                 "triangles form more than one fan.");
    setRun(*verb, command, options, check);
}

} // namespace orva::program

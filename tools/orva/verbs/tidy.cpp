#include "verbs/meshes.hpp"
#include "verbs/tidying.hpp"
#include "verbs/verbs.hpp"
#include "words.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orva::program {

namespace {

struct TidyOptions {
    CommonOptions common;
    Tidying tidying;
    std::vector<std::string> inputs;
};

// All triangles of all files, as if they stood in one.
Model joinAll(const std::vector<Input>& inputs, std::vector<Model> models, Report& report) {
    Model whole;
    for (std::size_t i = 0; i < models.size(); ++i) {
        Model& model = models[i];
        whole.hasNormals |= model.hasNormals;
        whole.hasTexture |= model.hasTexture;
        if (!model.origins.empty()) {
            report.warnings.push_back(inputs[i].file + ": where its faces came from is not carried");
        }
        std::vector<types::Vertex>& all = whole.mesh.vertices;
        if (all.empty()) {
            all = std::move(model.mesh.vertices);
        } else {
            all.insert(all.end(), model.mesh.vertices.begin(), model.mesh.vertices.end());
        }
        model = {};
    }
    return whole;
}

void tidyFiles(const TidyOptions& options, Run& run) {
    const std::vector<Input> inputs = inputsOf(options.inputs, options.common.from);
    const Output output = outputOf(options.common, run.report);
    const Model whole = joinAll(inputs, readInputs(inputs, run), run.report);

    run.progress.show("tidying");
    const auto begin = std::chrono::steady_clock::now();
    tidy::Solid solid;
    const tidy::Report tidied = tidy::tidySoup(solid, whole.mesh, {}, optionsOf(options.tidying));
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;

    requireClosed(output.file.name, tidied, options.common.strict, run.report);
    const Model result = modelOf(solid, whole.hasNormals, whole.hasTexture);
    writeOutput(output, result, run);
    run.report.members["output"]["tidied"] = jsonOf(tidied);
    run.report.members["operation_seconds"] = time.count();
    std::string& text = run.report.summary;
    text = formatted("tidy: %zu triangles", countTriangles(whole.mesh));
    if (inputs.size() > 1) text += formatted(" in %zu files", inputs.size());
    text += formatted(" -> %zu", countTriangles(result.mesh)) + textOf(tidied) + formatted(", %.3f s", time.count());
}

} // namespace

void addTidy(CLI::App& app, Command& command) {
    const auto options = std::make_shared<TidyOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand("tidy", "The same solid, closed by index and of few triangles.");
    verb->add_option("A", options->inputs, "meshes, which are taken for parts of one; - is stdin")
        ->required()
        ->type_name("FILE");
    addOutput(*verb, options->common);
    addTidying(*verb, options->tidying);
    addFrom(*verb, options->common);
    addTo(*verb, options->common);
    verb->add_flag("--strict", options->common.strict, "a result that is not closed is an error, not a warning");
    addReporting(*verb, options->common, "");
    verb->footer("Example:\n  orva tidy from-elsewhere.stl -o part.off\n"
                 "  orva tidy top.stl bottom.stl -o whole.ply --close-gaps 0.01\n\n"
                 "For meshes that other programs, or union, subtract and intersect with --raw, have cut into pieces: "
                 "corners in the middle of neighbours' edges, vertices near each other that should be one, many "
                 "triangles in one plane. Shapes stay, and what is open stays open unless --close-gaps says how wide. "
                 "Parts that overlap are not united: that is union.");
    setRun(*verb, command, options, tidyFiles);
}

} // namespace orva::program

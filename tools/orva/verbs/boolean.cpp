#include "verbs/boolean.hpp"

#include "mesh/origins.hpp"
#include "verbs/boolean_summary.hpp"
#include "verbs/meshes.hpp"
#include "words.hpp"

#include <chrono>
#include <memory>
#include <utility>

namespace orva::program {

namespace {

using Mesh = Boolean::Mesh;

struct BooleanOptions {
    CommonOptions common;
    std::string first;
    std::vector<std::string> others;
};

// The faces that there are to tell from, and a word on what is lost by it.
std::vector<std::size_t> markAll(const std::vector<Input>& inputs, std::vector<Model>& models, const Output& output,
                                 Report& report) {
    std::vector<std::size_t> faces;
    std::vector<std::string> textured;
    for (std::size_t i = 0; i < models.size(); ++i) {
        if (models[i].hasTexture) textured.push_back(inputs[i].file);
        faces.push_back(countFaces(models[i]));
        markFaces(models[i], i);
    }
    if (!textured.empty()) {
        report.warnings.push_back(joined(textured, ", ") + ": texture coordinates are not carried with --keep-faces");
    }
    if (!output.format->name.starts_with("ply")) {
        report.warnings.push_back(output.file.name + ": " + std::string(output.format->name) +
                                  " cannot hold where faces came from; write .ply, or see the counts in --json");
    }
    return faces;
}

Json describe(const Shares& shares) {
    Json inputs = Json::array();
    for (const Share& share : shares.inputs) inputs.push_back({{"triangles", share.triangles}, {"faces", share.faces}});
    return {{"inputs", std::move(inputs)}, {"unknown", shares.unknown}};
}

void runBoolean(const Boolean& boolean, const BooleanOptions& options, Run& run) {
    const CommonOptions& common = options.common;
    std::vector<std::string> files{options.first};
    files.insert(files.end(), options.others.begin(), options.others.end());
    const std::vector<Input> inputs = inputsOf(files, common.from);
    const Output output = outputOf(common, run.report);

    std::vector<Model> models = readInputs(inputs, run);
    if (common.strict || common.json || !common.quiet) checkFitness(inputs, models, common.strict, run);
    std::vector<std::size_t> faces;
    if (common.keepFaces) faces = markAll(inputs, models, output, run.report);

    Model result;
    for (const Model& model : models) {
        result.hasNormals |= model.hasNormals;
        result.hasTexture |= model.hasTexture;
    }
    const Mesh first = std::move(models.front().mesh);
    std::vector<Mesh> others;
    for (std::size_t i = 1; i < models.size(); ++i) others.push_back(std::move(models[i].mesh));

    const auto begin = std::chrono::steady_clock::now();
    boolean.combine(result.mesh, first, others, run);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;

    Shares shares;
    if (common.keepFaces) shares = readOrigins(result, faces);
    if (shares.unknown > 0) {
        run.report.warnings.push_back(output.file.name + ": of " + std::to_string(shares.unknown) +
                                      " triangles it is not known where they came from");
    }
    writeOutput(output, result, run);
    if (common.keepFaces) run.report.members["output"]["origins"] = describe(shares);
    if (common.verbose) run.progress.show("measuring the result");
    summarize(boolean, {first, others, result.mesh, time.count()}, common.verbose, run.report);
}

} // namespace

CLI::App* addBoolean(CLI::App& app, Command& command, const Boolean& boolean) {
    const auto options = std::make_shared<BooleanOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand(boolean.verb, boolean.text);
    verb->add_option(boolean.first, options->first, "first mesh; - is stdin")->required()->type_name("FILE");
    verb->add_option(boolean.second, options->others, "one mesh or more")->required()->type_name("FILE");
    addOutput(*verb, options->common);
    addFrom(*verb, options->common);
    addTo(*verb, options->common);
    addKeepFaces(*verb, options->common);
    addStrict(*verb, options->common);
    addThreads(*verb, options->common);
    addReporting(*verb, options->common, "the summary also has the volumes, and whether the result closes");
    verb->footer(
        "Example:\n  " + boolean.example +
        "\n\nMeshes are closed, facing outward, and not crossing themselves. The time in the summary is that of "
        "the operation alone, without reading and writing.");
    verb->callback([boolean, options, &command] {
        command = commandOf(boolean.verb, options->common,
                            [boolean, options](Run& run) { runBoolean(boolean, *options, run); });
    });
    return verb;
}

void combineInTurn(void (*operation)(Mesh& output, const Mesh& a, const Mesh& b), Mesh& output, const Mesh& first,
                   const std::vector<Mesh>& others, Run& run) {
    Mesh before; // the result of all but the last step
    for (std::size_t i = 0; i < others.size(); ++i) {
        run.progress.show("combining", i, others.size());
        const Mesh& left = i == 0 ? first : before;
        if (i + 1 == others.size()) return operation(output, left, others[i]);
        Mesh result;
        operation(result, left, others[i]);
        before = std::move(result);
    }
}

} // namespace orva::program

#include "verbs/boolean.hpp"

#include "mesh/origins.hpp"
#include "verbs/boolean_summary.hpp"
#include "verbs/meshes.hpp"
#include "verbs/tidying.hpp"
#include "words.hpp"

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

namespace orva::program {

namespace {

using Mesh = Boolean::Mesh;

struct BooleanOptions {
    CommonOptions common;
    Tidying tidying;
    bool raw = false;
    bool allowEmpty = false;
    std::string first;
    std::vector<std::string> others;
};

// What takes part in the operation: of a union not the empty meshes, if these may be left out.
struct Part {
    std::size_t place = 0; // in the command
    Input input;
    Model model;
};

std::vector<Part> partsOf(const Boolean& boolean, const BooleanOptions& options, const std::vector<Input>& inputs,
                          Run& run) {
    std::vector<Model> models = readInputs(inputs, run);
    std::vector<Part> parts;
    for (std::size_t i = 0; i < models.size(); ++i) {
        if (boolean.refusesEmpty && countTriangles(models[i].mesh) == 0) {
            if (options.allowEmpty) continue;
            throw Failure(ExitCode::Unfit, inputs[i].file + ": it has no triangles; check that the right thing was "
                                                            "exported, or leave out what is empty with --allow-empty");
        }
        parts.push_back({i, inputs[i], std::move(models[i])});
    }
    return parts;
}

// How many faces each input of the command has to tell from; of those that were left out, none.
std::vector<std::size_t> countAllFaces(const std::vector<Part>& parts, std::size_t inputs) {
    std::vector<std::size_t> faces(inputs);
    for (const Part& part : parts) faces[part.place] = countFaces(part.model);
    return faces;
}

// note: a raw result tells origins in place of texture coordinates.
void markAll(std::vector<Part>& parts, Report& report) {
    std::vector<std::string> textured;
    for (Part& part : parts) {
        if (part.model.hasTexture) textured.push_back(part.input.file);
        markFaces(part.model, part.place);
    }
    if (textured.empty()) return;
    report.warnings.push_back(joined(textured, ", ") +
                              ": texture coordinates are not carried with --raw and --keep-faces");
}

std::vector<Origin> originsOf(const tidy::Solid& solid, const std::vector<Part>& parts) {
    std::vector<Origin> origins;
    origins.reserve(solid.origins.size());
    for (const tidy::Origin& from : solid.origins) {
        if (from == tidy::UNKNOWN_ORIGIN) {
            origins.push_back(UNKNOWN_ORIGIN);
            continue;
        }
        const std::vector<std::uint32_t>& faces = parts[from.mesh].model.faces;
        origins.push_back(
            {static_cast<std::uint32_t>(parts[from.mesh].place), faces.empty() ? from.face : faces[from.face]});
    }
    return origins;
}

void warnOfOrigins(const Shares& shares, const Output& output, Report& report) {
    if (!output.format->name.starts_with("ply")) {
        report.warnings.push_back(output.file.name + ": " + std::string(output.format->name) +
                                  " cannot hold where faces came from; write .ply, or see the counts in --json");
    }
    if (shares.unknown > 0) {
        report.warnings.push_back(output.file.name + ": of " + std::to_string(shares.unknown) +
                                  " triangles it is not known where they came from");
    }
}

Json describe(const Shares& shares) {
    Json inputs = Json::array();
    for (const Share& share : shares.inputs) inputs.push_back({{"triangles", share.triangles}, {"faces", share.faces}});
    return {{"inputs", std::move(inputs)}, {"unknown", shares.unknown}};
}

// The meshes leave their models, which keep what else is known of them.
Operands operandsOf(std::vector<Part>& parts) {
    Operands operands;
    for (Part& part : parts) {
        if (&part == &parts.front()) {
            operands.first = std::move(part.model.mesh);
        } else {
            operands.others.push_back(std::move(part.model.mesh));
        }
    }
    return operands;
}

void runBoolean(const Boolean& boolean, const BooleanOptions& options, Run& run) {
    const CommonOptions& common = options.common;
    std::vector<std::string> files{options.first};
    files.insert(files.end(), options.others.begin(), options.others.end());
    const std::vector<Input> inputs = inputsOf(files, common.from);
    const Output output = outputOf(common, run.report);

    std::vector<Part> parts = partsOf(boolean, options, inputs, run);
    bool hasNormals = false;
    bool hasTexture = false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const Part& part = parts[i];
        if (common.strict || common.json || !common.quiet) {
            run.progress.show("checking " + part.input.file, i, parts.size());
            checkFitness(part.input, part.model, !options.raw, common.strict, run.report);
        }
        hasNormals |= part.model.hasNormals;
        hasTexture |= part.model.hasTexture;
    }
    const std::vector<std::size_t> faces = countAllFaces(parts, inputs.size());
    const bool marked = common.keepFaces && options.raw;
    if (marked) markAll(parts, run.report);
    Operands operands = operandsOf(parts);

    Model result;
    tidy::Solid solid;
    std::optional<tidy::Report> tidied;
    const auto begin = std::chrono::steady_clock::now();
    if (options.raw) {
        boolean.combine(result.mesh, operands, run);
    } else {
        tidied = boolean.combineTidied(solid, operands, optionsOf(options.tidying), run);
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;

    if (tidied) {
        requireClosed(output.file.name, *tidied, common.strict, run.report);
        result = modelOf(solid, hasNormals, hasTexture);
        if (common.keepFaces) result.origins = originsOf(solid, parts);
    } else {
        result.hasNormals = hasNormals;
        result.hasTexture = hasTexture && !marked;
        if (marked) readOrigins(result, faces);
    }
    Shares shares;
    if (common.keepFaces) {
        shares = countShares(result.origins, faces);
        warnOfOrigins(shares, output, run.report);
    }
    writeOutput(output, result, run);
    if (common.keepFaces) run.report.members["output"]["origins"] = describe(shares);
    if (common.verbose) run.progress.show("measuring the result");
    summarize(boolean, {operands.first, operands.others, result, tidied, time.count()}, common.verbose, run.report);
}

} // namespace

CLI::App* addBoolean(CLI::App& app, Command& command, const Boolean& boolean) {
    const auto options = std::make_shared<BooleanOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand(boolean.verb, boolean.text);
    verb->add_option(boolean.first, options->first, "first mesh; - is stdin")->required()->type_name("FILE");
    verb->add_option(boolean.second, options->others, "one mesh or more")->required()->type_name("FILE");
    addOutput(*verb, options->common);
    const std::vector<CLI::Option*> tidying = addTidying(*verb, options->tidying);
    CLI::Option* raw = verb->add_flag("--raw", options->raw,
                                      "the result as the operation leaves it, cut into pieces: "
                                      "not closed by index, and with many more triangles");
    for (CLI::Option* option : tidying) raw->excludes(option);
    if (boolean.refusesEmpty) {
        verb->add_flag("--allow-empty", options->allowEmpty, "leave out meshes without triangles");
    }
    addFrom(*verb, options->common);
    addTo(*verb, options->common);
    addKeepFaces(*verb, options->common);
    addStrict(*verb, options->common);
    addThreads(*verb, options->common);
    addReporting(*verb, options->common, "the summary also has the volumes, and with --raw whether the result closes");
    verb->footer(
        "Example:\n  " + boolean.example +
        "\n\nMeshes are closed, facing outward, and not crossing themselves. The result is closed by index, each edge "
        "belonging to two triangles, and of few triangles; what cannot be closed is a warning. The "
        "time in the summary is that of the operation alone, without reading and writing.");
    verb->callback([boolean, options, &command] {
        command = commandOf(boolean.verb, options->common,
                            [boolean, options](Run& run) { runBoolean(boolean, *options, run); });
    });
    return verb;
}

void combineInTurn(void (*operation)(Mesh& output, const Mesh& a, const Mesh& b), Mesh& output,
                   const Operands& operands, Run& run) {
    const auto& [first, others] = operands;
    if (others.empty()) output = first;
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

tidy::Report combineAll(tidy::Report (*operation)(tidy::Solid& output, const std::vector<Mesh>& meshes,
                                                  const tidy::Options& options),
                        tidy::Solid& output, Operands& operands, const tidy::Options& options, Run& run) {
    run.progress.show("combining " + std::to_string(operands.others.size() + 1) + " meshes");
    std::vector<Mesh>& all = operands.others; // for a while, so that no mesh is there twice
    all.insert(all.begin(), std::move(operands.first));
    const tidy::Report tidied = operation(output, all, options);
    operands.first = std::move(all.front());
    all.erase(all.begin());
    return tidied;
}

} // namespace orva::program

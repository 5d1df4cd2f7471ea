#include "verbs/boolean.hpp"

#include "measures/closedness.hpp"
#include "measures/volume.hpp"
#include "verbs/meshes.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>

namespace orva::program {

namespace {

using Mesh = Boolean::Mesh;

struct Options {
    CommonOptions common;
    std::string first;
    std::vector<std::string> others;
};

template <typename... Values> std::string format(const char* pattern, Values... values) {
    std::array<char, 128> text; // far more than the numbers below can take
    std::snprintf(text.data(), text.size(), pattern, values...);
    return text.data();
}

bool isEmpty(const Mesh& mesh) {
    return countTriangles(mesh) == 0;
}

// The sum of a measure over all the other meshes.
template <typename Measure> auto total(const std::vector<Mesh>& meshes, Measure measure) {
    decltype(measure(meshes.front())) sum = 0;
    for (const Mesh& mesh : meshes) sum += measure(mesh);
    return sum;
}

// Why there is nothing in the result, as far as that is known; empty for a result that is not.
std::string whyEmpty(const Mesh& first, const std::vector<Mesh>& others, const Mesh& result) {
    if (!isEmpty(result)) return "";
    if (isEmpty(first) || std::any_of(others.begin(), others.end(), isEmpty)) {
        return "empty, as every result of an empty mesh";
    }
    return "the result is empty";
}

void warnOfEmptyInputs(const std::vector<std::string>& files, const std::vector<Model>& models, Report& report) {
    for (std::size_t i = 0; i < models.size(); ++i) {
        if (!isEmpty(models[i].mesh)) continue;
        report.warnings.push_back(files[i] + ": no triangles; an empty mesh empties the result, leave it out");
    }
}

std::string summarize(const std::string& verb, const Mesh& first, const std::vector<Mesh>& others, const Mesh& result) {
    std::string text = verb + format(": %zu + %zu triangles", countTriangles(first), total(others, countTriangles));
    if (others.size() > 1) text += format(" in %zu meshes", others.size());
    text += format(" -> %zu", countTriangles(result));
    const std::string reason = whyEmpty(first, others, result);
    return reason.empty() ? text : text + " (" + reason + ")";
}

// The end of the summary, and the same for --json.
std::string measure(const Mesh& first, const std::vector<Mesh>& others, const Mesh& result, Json& output) {
    const Closedness closedness = measureClosedness(result, CLOSING_TOLERANCE);
    const double volume = signedVolume(result);
    output["volume"] = volume;
    output["open_edges"] = closedness.openEdges;
    output["largest_gap"] = closedness.largestGap;
    std::string text =
        format(", volume %.10g + %.10g -> %.10g", signedVolume(first), total(others, signedVolume), volume);
    if (closedness.openEdges == 0) return text + format(", closed within %g", CLOSING_TOLERANCE);
    return text + format(", not closed within %g: %zu open edges, gaps up to %.2g", CLOSING_TOLERANCE,
                         closedness.openEdges, closedness.largestGap);
}

void runBoolean(const Boolean& boolean, const Options& options, Run& run) {
    std::vector<std::string> files{options.first};
    files.insert(files.end(), options.others.begin(), options.others.end());
    const std::vector<Input> inputs = inputsOf(files, options.common.from);
    const Output output = outputOf(options.common, run.report);

    std::vector<Model> models = readInputs(inputs, run);
    warnOfEmptyInputs(files, models, run.report);
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

    writeOutput(output, result, run);
    std::string& summary = run.report.summary = summarize(boolean.verb, first, others, result.mesh);
    Json& json = run.report.members["output"];
    const std::string reason = whyEmpty(first, others, result.mesh);
    if (!reason.empty()) json["empty"] = reason;
    if (options.common.verbose) {
        run.progress.show("measuring the result");
        summary += measure(first, others, result.mesh, json);
    }
    run.report.members["operation_seconds"] = time.count();
    summary += format(", %.3f s", time.count());
}

} // namespace

CLI::App* addBoolean(CLI::App& app, Command& command, const Boolean& boolean) {
    const auto options = std::make_shared<Options>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand(boolean.verb, boolean.text);
    verb->add_option(boolean.first, options->first, "first mesh; - is stdin")->required()->type_name("FILE");
    verb->add_option(boolean.second, options->others, "one mesh or more")->required()->type_name("FILE");
    addOutput(*verb, options->common);
    addFrom(*verb, options->common);
    addTo(*verb, options->common);
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

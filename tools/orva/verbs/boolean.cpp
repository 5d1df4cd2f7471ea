#include "verbs/boolean.hpp"

#include "formats/format.hpp"
#include "measures/closedness.hpp"
#include "measures/volume.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>

namespace orva::program {

namespace {

using Mesh = Boolean::Mesh;

struct Options {
    std::string first;
    std::vector<std::string> others;
    std::string output;
    bool quiet = false;
    bool verbose = false;
};

template <typename... Values> std::string format(const char* pattern, Values... values) {
    std::array<char, 128> text; // far more than the numbers below can take
    std::snprintf(text.data(), text.size(), pattern, values...);
    return text.data();
}

// The sum of a measure over all the other meshes.
template <typename Measure> auto total(const std::vector<Mesh>& meshes, Measure measure) {
    decltype(measure(meshes.front())) sum = 0;
    for (const Mesh& mesh : meshes) sum += measure(mesh);
    return sum;
}

std::string describeMeasures(const Mesh& first, const std::vector<Mesh>& others, const Mesh& result) {
    const Closedness closedness = measureClosedness(result, CLOSING_TOLERANCE);
    std::string text = format(", volume %.10g + %.10g -> %.10g", signedVolume(first), total(others, signedVolume),
                              signedVolume(result));
    if (closedness.openEdges == 0) return text + format(", closed within %g", CLOSING_TOLERANCE);
    return text + format(", not closed within %g: %zu open edges, gaps up to %.2g", CLOSING_TOLERANCE,
                         closedness.openEdges, closedness.largestGap);
}

std::string summary(const Boolean& boolean, const Options& options, const Mesh& first, const std::vector<Mesh>& others,
                    const Mesh& result, double seconds) {
    const auto isEmpty = [](const Mesh& mesh) { return countTriangles(mesh) == 0; };
    std::string text =
        boolean.verb + format(": %zu + %zu triangles", countTriangles(first), total(others, countTriangles));
    if (others.size() > 1) text += format(" in %zu meshes", others.size());
    text += format(" -> %zu", countTriangles(result));
    if (isEmpty(first) || std::any_of(others.begin(), others.end(), isEmpty)) {
        text += " (empty, as every result of an empty mesh)";
    } else if (isEmpty(result)) {
        text += " (the result is empty)";
    }
    if (options.verbose) text += describeMeasures(first, others, result);
    return text + format(", %.3f s", seconds);
}

void run(const Boolean& boolean, const Options& options) {
    // All that can be wrong with the names shows before the first file is read.
    const Format& formatFirst = formatOf(options.first);
    for (const std::string& name : options.others) (void)formatOf(name);
    const Format& formatOutput = formatOf(options.output);
    const OutputFile output = prepareOutput(options.output);
    Notes notes;
    const Mesh first = readModel(formatFirst, options.first, notes).mesh;
    std::vector<Mesh> others;
    for (const std::string& name : options.others) others.push_back(readModel(formatOf(name), name, notes).mesh);

    Model resultModel;
    Mesh& result = resultModel.mesh;
    const auto begin = std::chrono::steady_clock::now();
    boolean.combine(result, first, others);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;

    const std::string line =
        options.quiet ? "" : "orva: " + summary(boolean, options, first, others, result, time.count()) + "\n";
    writeModel(formatOutput, output, resultModel, {}, notes);
    std::fputs(line.c_str(), stderr);
}

} // namespace

CLI::App* addBoolean(CLI::App& app, const Boolean& boolean) {
    const auto options = std::make_shared<Options>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand(boolean.verb, boolean.text);
    verb->add_option(boolean.first, options->first, "first mesh, .off or .stl")->required();
    CLI::Option* others =
        verb->add_option(boolean.second, options->others, boolean.many ? "one mesh or more" : "second mesh")
            ->required();
    if (!boolean.many) others->expected(1);
    verb->add_option("-o,--output", options->output, "file for the result, replaced if it exists")->required();
    CLI::Option* quiet = verb->add_flag("-q,--quiet", options->quiet, "no summary line");
    verb->add_flag("-v,--verbose", options->verbose,
                   "the summary line also has the volumes, and whether the result closes")
        ->excludes(quiet);
    verb->footer(
        "Example:\n  " + boolean.example +
        "\n\nMeshes are closed, facing outward, and not crossing themselves. The time in the summary is that of "
        "the operation alone, without reading and writing.");
    verb->callback([boolean, options] { run(boolean, *options); });
    return verb;
}

} // namespace orva::program

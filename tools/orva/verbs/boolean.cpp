#include "verbs/boolean.hpp"

#include "formats/format.hpp"
#include "measures/closedness.hpp"
#include "measures/volume.hpp"

#include <array>
#include <chrono>
#include <cstdio>
#include <memory>

namespace orva::program {

namespace {

using Mesh = types::Mesh<double>;

struct Options {
    std::string a;
    std::string b;
    std::string output;
    bool quiet = false;
    bool verbose = false;
};

std::size_t countTriangles(const Mesh& mesh) {
    return mesh.vertices.size() / 3;
}

template <typename... Values> std::string format(const char* pattern, Values... values) {
    std::array<char, 128> text; // far more than the numbers below can take
    std::snprintf(text.data(), text.size(), pattern, values...);
    return text.data();
}

std::string describeMeasures(const Mesh& a, const Mesh& b, const Mesh& result) {
    const Closedness closedness = measureClosedness(result, CLOSING_TOLERANCE);
    std::string text =
        format(", volume %.10g + %.10g -> %.10g", signedVolume(a), signedVolume(b), signedVolume(result));
    if (closedness.openEdges == 0) return text + format(", closed within %g", CLOSING_TOLERANCE);
    return text + format(", not closed within %g: %zu open edges, gaps up to %.2g", CLOSING_TOLERANCE,
                         closedness.openEdges, closedness.largestGap);
}

std::string summary(const Boolean& boolean, const Options& options, const Mesh& a, const Mesh& b, const Mesh& result,
                    double seconds) {
    std::string text = boolean.verb + format(": %zu + %zu triangles -> %zu", countTriangles(a), countTriangles(b),
                                             countTriangles(result));
    if (countTriangles(a) == 0 || countTriangles(b) == 0) {
        text += " (empty, as every result of an empty mesh)";
    } else if (countTriangles(result) == 0) {
        text += " (the result is empty)";
    }
    if (options.verbose) text += describeMeasures(a, b, result);
    return text + format(", %.3f s", seconds);
}

void run(const Boolean& boolean, const Options& options) {
    // All that can be wrong with the names shows before the first file is read.
    const Format& formatA = formatOf(options.a);
    const Format& formatB = formatOf(options.b);
    const Format& formatOutput = formatOf(options.output);
    const OutputFile output = prepareOutput(options.output);
    const Mesh a = readMesh(formatA, options.a);
    const Mesh b = readMesh(formatB, options.b);

    Mesh result;
    const auto begin = std::chrono::steady_clock::now();
    boolean.combine(result, a, b);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;

    const std::string line =
        options.quiet ? "" : "orva: " + summary(boolean, options, a, b, result, time.count()) + "\n";
    writeMesh(formatOutput, output, result);
    std::fputs(line.c_str(), stderr);
}

} // namespace

void addBoolean(CLI::App& app, const Boolean& boolean) {
    const auto options = std::make_shared<Options>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand(boolean.verb, boolean.text);
    verb->add_option("A", options->a, "first mesh, .off or .stl")->required();
    verb->add_option("B", options->b, "second mesh")->required();
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
}

} // namespace orva::program

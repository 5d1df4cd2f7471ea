#include "formats/format.hpp"
#include "mesh/vectors.hpp"
#include "verbs/verbs.hpp"

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>

namespace orva::program {

namespace {

struct Options {
    std::string input;
    std::string output;
    std::array<double, 3> move{};
};

void run(const Options& options) {
    const Format& inputFormat = formatOf(options.input);
    const Format& outputFormat = formatOf(options.output);
    const OutputFile output = prepareOutput(options.output);
    Notes notes;
    Model model = readModel(inputFormat, options.input, notes);
    const types::Vec3 move{options.move[0], options.move[1], options.move[2]};
    for (types::Vertex& vertex : model.mesh.vertices) vertex.pos = vertex.pos + move;
    writeModel(outputFormat, output, model, {}, notes);
}

} // namespace

void addConvert(CLI::App& app) {
    const auto options = std::make_shared<Options>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand("convert", "The same mesh in another format, or in another place.");
    verb->add_option("A", options->input, "mesh, .off or .stl")->required();
    verb->add_option("-o,--output", options->output, "file for the result, replaced if it exists")->required();
    verb->add_option("--move", options->move, "add this to every position")
        ->type_name("X Y Z")
        ->check([](const std::string& text) {
            return std::isfinite(std::strtod(text.c_str(), nullptr)) ? std::string() : text + " is not a finite number";
        });
    verb->footer("Example:\n  orva convert scan.stl -o scan.off --move 0 0 -12.5");
    verb->callback([options] { run(*options); });
}

} // namespace orva::program

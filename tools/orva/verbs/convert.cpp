#include "mesh/vectors.hpp"
#include "verbs/meshes.hpp"
#include "verbs/verbs.hpp"

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>

namespace orva::program {

namespace {

struct ConvertOptions {
    CommonOptions common;
    std::string input;
    double scale = 1.0;
    std::array<double, 3> move{};
};

void convert(const ConvertOptions& options, Run& run) {
    const std::vector<Input> inputs = inputsOf({options.input}, options.common.from);
    const Output output = outputOf(options.common, run.report);
    Model model = std::move(readInputs(inputs, run).front());
    const types::Vec3 move{options.move[0], options.move[1], options.move[2]};
    if (options.scale != 1.0 || options.move != std::array<double, 3>{}) { // else -0 would become 0
        for (types::Vertex& vertex : model.mesh.vertices) vertex.pos = options.scale * vertex.pos + move;
    }
    writeOutput(output, model, run);
}

} // namespace

void addConvert(CLI::App& app, Command& command) {
    const auto options = std::make_shared<ConvertOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand("convert", "The same mesh in another format, size, or place.");
    verb->add_option("A", options->input, "mesh; - is stdin")->required()->type_name("FILE");
    addOutput(*verb, options->common);
    verb->add_option("--scale", options->scale, "multiply every position with this, before --move")
        ->type_name("FACTOR")
        ->check(mustBeAboveZero);
    verb->add_option("--move", options->move, "add this to every position")
        ->type_name("X Y Z")
        ->check([](const std::string& text) {
            return std::isfinite(std::strtod(text.c_str(), nullptr)) ? std::string() : text + " is not a finite number";
        });
    addFrom(*verb, options->common);
    addTo(*verb, options->common);
    addReporting(*verb, options->common, "");
    verb->footer("Example:\n  orva convert inches.stl -o millimetres.stl --scale 25.4\n"
                 "  orva convert scan.stl -o scan.off --move 0 0 -12.5\n"
                 "  orva convert - --from off -o - --to stl < scan.off > scan.stl");
    setRun(*verb, command, options, convert);
}

} // namespace orva::program

#include "picture/render.hpp"

#include "failure.hpp"
#include "files/name.hpp"
#include "picture/png.hpp"
#include "verbs/meshes.hpp"
#include "verbs/verbs.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace orva::program {

namespace {

struct PictureOptions {
    CommonOptions common;
    std::vector<std::string> inputs;
    std::string view = "iso";
    std::string up = "z";
    std::string size = "1200x900";
    std::string edges = "feature";
    std::string colors;
    std::string background;
};

// ---- what the options say: nothing, or why not ----

bool parseLength(std::string_view text, std::size_t& length) {
    constexpr std::size_t shortest = 16;
    constexpr std::size_t longest = 8192; // takes about a gigabyte both ways
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    return error == std::errc() && end == text.data() + text.size() && length >= shortest && length <= longest;
}

bool parseSize(const std::string& text, std::size_t& width, std::size_t& height) {
    const std::string_view whole = text;
    const std::size_t times = whole.find('x');
    return times != std::string_view::npos && parseLength(whole.substr(0, times), width) &&
           parseLength(whole.substr(times + 1), height);
}

std::string checkView(const std::string& text) {
    if (parseView(text)) return {};
    return text + " is no view; name iso, front, back, left, right, top or bottom, or give AZIMUTH,ELEVATION in "
                  "degrees, up to 360 and 90";
}

std::string checkSize(const std::string& text) {
    std::size_t width = 0;
    std::size_t height = 0;
    return parseSize(text, width, height) ? "" : text + " is no size; give WIDTHxHEIGHT, each from 16 to 8192";
}

std::string checkColor(const std::string& text) {
    return parseColor(text) ? "" : text + " is no colour; give it as RRGGBB, 77AADD for instance";
}

std::vector<std::string> wordsOf(const std::string& list) {
    std::vector<std::string> words(1);
    for (const char c : list) {
        if (c == ',') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

std::string checkColors(const std::string& list) {
    for (const std::string& word : wordsOf(list)) {
        if (!parseColor(word)) return checkColor(word);
    }
    return {};
}

std::string checkBackground(const std::string& text) {
    return text == "transparent" ? "" : checkColor(text);
}

RenderOptions renderOptionsOf(const PictureOptions& options) {
    RenderOptions result;
    result.view = *parseView(options.view);
    result.view.up = options.up == "y" ? Up::Y : Up::Z;
    parseSize(options.size, result.width, result.height);
    result.lines = options.edges == "none" ? Lines::None : options.edges == "all" ? Lines::All : Lines::Feature;
    if (!options.colors.empty()) {
        for (const std::string& color : wordsOf(options.colors)) result.colors.push_back(*parseColor(color));
    }
    result.background.transparent = options.background == "transparent";
    result.background.color = parseColor(options.background);
    return result;
}

// ---- the verb ----

OutputFile preparePicture(const CommonOptions& options) {
    if (isStream(options.output)) {
        if (!options.json) return prepareOutput(options.output, options.force);
        throw Failure(ExitCode::Usage,
                      "-: both the picture and --json would go to stdout; name a file for the picture");
    }
    std::string extension = nameOf(pathOf(options.output).extension());
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (extension != ".png") {
        throw Failure(ExitCode::Usage, options.output + ": pictures are written as PNG; use .png");
    }
    return prepareOutput(options.output, options.force);
}

// Of a model that knows where its faces came from, each source is a mesh.
Solid solidOf(Model& model) {
    if (model.origins.empty()) return {std::move(model.mesh)};
    std::map<std::uint32_t, types::Mesh<double>> sources; // in their order; what is unknown comes last
    for (std::size_t i = 0; i < model.origins.size(); ++i) {
        std::vector<types::Vertex>& vertices = sources[model.origins[i].mesh].vertices;
        for (std::size_t k = 0; k < 3; ++k) vertices.push_back(model.mesh.vertices[3 * i + k]);
    }
    Solid solid;
    for (auto& [source, mesh] : sources) solid.push_back(std::move(mesh));
    return solid;
}

void render(const PictureOptions& options, Run& run) {
    const std::vector<Input> inputs = inputsOf(options.inputs, options.common.from);
    const OutputFile output = preparePicture(options.common);
    std::vector<Solid> solids;
    std::vector<Model> models = readInputs(inputs, run);
    for (std::size_t i = 0; i < models.size(); ++i) {
        if (models[i].mesh.vertices.empty()) {
            run.report.warnings.push_back(inputs[i].file +
                                          ": it has no triangles, so nothing of it is seen; check that "
                                          "the right thing was exported");
        }
        solids.push_back(solidOf(models[i]));
    }

    run.progress.show("rendering");
    const Image image = render(solids, renderOptionsOf(options));
    run.progress.show("writing " + output.name);
    writeFile(output, pngOf(image));
    run.report.members["output"] = {
        {"file", output.name}, {"format", "png"}, {"width", image.width}, {"height", image.height}};
}

} // namespace

void addRender(CLI::App& app, Command& command) {
    const auto options = std::make_shared<PictureOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand("render", "A picture of meshes, each in its own colour.");
    verb->add_option("A", options->inputs, "meshes; - is stdin")->required()->type_name("FILE");
    addOutput(*verb, options->common);
    verb->add_option("--view", options->view,
                     "from where: iso, front, back, left, right, top, bottom, or degrees to the right of the front "
                     "and above the horizon")
        ->check(checkView)
        ->type_name("NAME|AZIMUTH,ELEVATION")
        ->capture_default_str();
    verb->add_option("--up", options->up, "which axis points up: z, or y as in most scans and animations")
        ->check(CLI::IsMember({"y", "z"}))
        ->type_name("AXIS")
        ->capture_default_str();
    verb->add_option("--size", options->size, "in pixels")
        ->check(checkSize)
        ->type_name("WIDTHxHEIGHT")
        ->capture_default_str();
    verb->add_option("--edges", options->edges,
                     "which lines are drawn: none, those of the shape (feature), or those of every triangle too (all)")
        ->check(CLI::IsMember({"none", "feature", "all"}))
        ->type_name("WHICH")
        ->capture_default_str();
    verb->add_option("--colors", options->colors,
                     "for the meshes in turn, or the sources of one, instead of the usual ones")
        ->check(checkColors)
        ->type_name("RRGGBB,...");
    verb->add_option("--background", options->background, "one colour, or transparent; without, a light grey")
        ->check(checkBackground)
        ->type_name("RRGGBB|transparent");
    addFrom(*verb, options->common);
    addReporting(*verb, options->common, "");
    addThreads(*verb, options->common);
    verb->footer("Example:\n  orva render part.off -o part.png\n"
                 "  orva render wall.off window.off -o plan.png --view front --size 1600x600\n"
                 "  orva render scan.stl -o scan.png --up y --view 20,15 --background transparent\n\n"
                 "A result that was written with --keep-faces has a colour for each mesh that went into it. Where a "
                 "surface is seen from inside, because it is open or inside out, it is purple; rims of open "
                 "surfaces are red. Booleans cut faces into many triangles; those cuts are no lines of the shape.");
    setRun(*verb, command, options, render);
}

} // namespace orva::program

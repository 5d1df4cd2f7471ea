#include "verbs/meshes.hpp"

#include "failure.hpp"
#include "files/name.hpp"
#include "measures/fitness.hpp"

#include <algorithm>

namespace orva::program {

namespace {

const Format& formatFor(const std::string& file, const std::string& name, const char* option) {
    if (isStream(file) && name.empty()) {
        throw Failure(ExitCode::Usage, file + ": a stream has no extension to tell its format; say it with " + option +
                                           " (" + namesOfFormats() + ")");
    }
    return formatOf(file, name);
}

void warn(const std::string& file, const Notes& notes, Report& report) {
    for (const std::string& note : notes) report.warnings.push_back(file + ": " + note);
}

Json describe(const std::string& file, const Format& format, const Model& model) {
    return {{"file", file}, {"format", format.name}, {"triangles", countTriangles(model.mesh)}};
}

} // namespace

std::vector<Input> inputsOf(const std::vector<std::string>& files, const std::string& from) {
    const auto streams = std::count_if(files.begin(), files.end(), isStream);
    if (streams > 1) throw Failure(ExitCode::Usage, "-: stdin can be read once only; name a file");
    std::vector<Input> inputs;
    for (const std::string& file : files) {
        const bool named = streams == 0 || isStream(file); // --from speaks of the stream, if there is one
        inputs.push_back({file, &formatFor(file, named ? from : "", "--from")});
    }
    return inputs;
}

Output outputOf(const CommonOptions& options, Report& report) {
    const Format& format = formatFor(options.output, options.to, "--to");
    if (isStream(options.output) && options.json) {
        throw Failure(ExitCode::Usage, "-: both the mesh and --json would go to stdout; name a file for the mesh");
    }
    if (options.precision && !format.text) {
        report.warnings.push_back(options.output + ": " + std::string(format.name) +
                                  " has no digits of text; --precision changes nothing");
    }
    return {prepareOutput(options.output, options.force), &format, {.digits = options.precision}};
}

Model readInput(const Input& input, Run& run) {
    Notes notes;
    Model model = readModel(*input.format, input.file, notes);
    warn(input.file, notes, run.report);
    return model;
}

std::vector<Model> readInputs(const std::vector<Input>& inputs, Run& run) {
    std::vector<Model> models;
    models.reserve(inputs.size());
    Json& described = run.report.members["inputs"] = Json::array();
    for (const Input& input : inputs) {
        run.progress.show("reading " + input.file, models.size(), inputs.size());
        models.push_back(readInput(input, run));
        described.push_back(describe(input.file, *input.format, models.back()));
    }
    return models;
}

void checkFitness(const Input& input, const Model& model, bool anySize, bool strict, Report& report) {
    const Notes found = complaints(measureFitness(model), anySize);
    if (strict && !found.empty()) {
        const std::string more = found.size() == 1 ? "" : " (and more: orva check says all)";
        throw Failure(ExitCode::Unfit, input.file + ": " + found.front() + more);
    }
    warn(input.file, found, report);
}

void writeOutput(const Output& output, const Model& model, Run& run) {
    run.progress.show("writing " + output.file.name);
    Notes notes;
    writeModel(*output.format, output.file, model, output.options, notes);
    warn(output.file.name, notes, run.report);
    run.report.members["output"] = describe(output.file.name, *output.format, model);
}

} // namespace orva::program

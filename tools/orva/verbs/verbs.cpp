#include "verbs/verbs.hpp"

#include "failure.hpp"

#include <algorithm>
#include <utility>

namespace orva::program {

namespace {

std::string namesOfVerbs(CLI::App& app) {
    std::string names;
    for (const CLI::App* verb : app.get_subcommands({})) names += (names.empty() ? "" : ", ") + verb->get_name();
    return names;
}

} // namespace

void addVerbs(CLI::App& app, Command& command) {
    app.description("Union, difference and intersection of closed triangle meshes.");
    app.name("orva");
    app.set_version_flag("--version", "orva " ORVA_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // /tmp/part.stl is a file on every platform
    app.footer("Example:\n  orva subtract block.stl drill.stl -o part.stl\n\n"
               "Each verb says more: orva subtract --help");
    addUnion(app, command);
    addSubtract(app, command);
    addIntersect(app, command);
    addTidy(app, command);
    addCheck(app, command);
    addConvert(app, command);
    addRender(app, command);
    addBatch(app, command);
    addMan(app, command);
    addCompletion(app, command);
}

void parse(CLI::App& app, std::vector<std::string> arguments) {
    try {
        std::reverse(arguments.begin(), arguments.end()); // CLI11 takes them off the end
        app.parse(std::move(arguments));
    } catch (const CLI::Success&) { // --help, --version
        throw;
    } catch (const CLI::ParseError& error) {
        const std::vector<CLI::App*> verbs = app.get_subcommands(); // those in the arguments: none or one
        if (verbs.empty()) throw Failure(ExitCode::Usage, "name a verb: " + namesOfVerbs(app) + "; see orva --help");
        throw Failure(ExitCode::Usage,
                      std::string(error.what()) + "; see orva " + verbs.front()->get_name() + " --help");
    }
}

} // namespace orva::program

// orva: booleans of closed triangle meshes on the command line.
//
// A verb is a file in verbs/, a file format one in formats/; exit codes and error lines are in failure.hpp.
#include "failure.hpp"
#include "verbs/verbs.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

using namespace orva::program;

std::string namesOfVerbs(CLI::App& app) {
    std::string names;
    for (const CLI::App* verb : app.get_subcommands({})) names += (names.empty() ? "" : ", ") + verb->get_name();
    return names;
}

// Arguments are UTF-8 from here on.
int run(std::vector<std::string> arguments) {
    CLI::App app{"Union, difference and intersection of closed triangle meshes.", "orva"};
    app.set_version_flag("--version", "orva " ORVA_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // /tmp/part.stl is a file on every platform
    app.footer("Example:\n  orva subtract block.stl drill.stl -o part.stl\n\n"
               "Each verb says more: orva subtract --help");
    addUnion(app);
    addSubtract(app);
    addIntersect(app);
    addConvert(app);

    try {
        std::reverse(arguments.begin(), arguments.end()); // CLI11 takes them off the end
        app.parse(std::move(arguments));
        return static_cast<int>(ExitCode::Done);
    } catch (const CLI::Success& request) { // --help, --version
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        const std::vector<CLI::App*> verbs = app.get_subcommands(); // those in the arguments: none or one
        if (verbs.empty()) throw Failure(ExitCode::Usage, "name a verb: " + namesOfVerbs(app) + "; see orva --help");
        throw Failure(ExitCode::Usage,
                      std::string(error.what()) + "; see orva " + verbs.front()->get_name() + " --help");
    }
}

template <typename Char> int runGuarded(int argc, Char** argv) {
    try {
        std::vector<std::string> arguments;
        for (int i = 1; i < argc; ++i) {
            const std::u8string utf8 = std::filesystem::path(argv[i]).u8string();
            arguments.emplace_back(utf8.begin(), utf8.end());
        }
        return run(std::move(arguments));
    } catch (...) {
        return reportException();
    }
}

} // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t** argv) {
    // Our lines are UTF-8; the console belongs to the shell, which finds it as it was.
    const UINT codePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    const int code = runGuarded(argc, argv);
    SetConsoleOutputCP(codePage);
    return code;
}
#else
int main(int argc, char** argv) {
    return runGuarded(argc, argv);
}
#endif

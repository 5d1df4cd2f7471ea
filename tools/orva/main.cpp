// orva: booleans of closed triangle meshes on the command line.
//
// A verb is a file in verbs/, a file format one in formats/; exit codes and error lines are in failure.hpp.
#include "failure.hpp"
#include "interruption.hpp"
#include "report/report.hpp"
#include "report/terminal.hpp"
#include "verbs/execute.hpp"
#include "verbs/verbs.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace orva::program;

// Asked of the arguments as they stand: an error in them may be found before the option is.
bool asksForJson(const std::vector<std::string>& arguments) {
    return std::find(arguments.begin(), std::find(arguments.begin(), arguments.end(), "--"), "--json") !=
           std::find(arguments.begin(), arguments.end(), "--");
}

int run(const std::vector<std::string>& arguments) {
    CLI::App app;
    Command command;
    try {
        addVerbs(app, command);
        parse(app, arguments);
    } catch (const CLI::Success& request) { // --help, --version
        return app.exit(request);
    } catch (...) {
        return printFailure("", {}, {.quiet = false, .json = asksForJson(arguments)});
    }
    return execute(command);
}

// Arguments are UTF-8 from here on.
template <typename Char> int runGuarded(int argc, Char** argv) {
    int code = 0;
    try {
        watchForInterruption();
        enterTerminal();
        std::vector<std::string> arguments;
        for (int i = 1; i < argc; ++i) {
            const std::u8string utf8 = std::filesystem::path(argv[i]).u8string();
            arguments.emplace_back(utf8.begin(), utf8.end());
        }
        code = run(arguments);
    } catch (...) {
        code = reportException();
    }
    leaveTerminal();
    return code;
}

} // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t** argv) {
    return runGuarded(argc, argv);
}
#else
int main(int argc, char** argv) {
    return runGuarded(argc, argv);
}
#endif

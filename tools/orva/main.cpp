// orva: booleans of closed triangle meshes on the command line.
//
// A verb is a file in verbs/, a file format one in formats/; exit codes and error lines are in failure.hpp.
#include "failure.hpp"
#include "interruption.hpp"
#include "report/terminal.hpp"
#include "verbs/execute.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace orva::program;

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

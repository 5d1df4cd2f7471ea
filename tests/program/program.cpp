#include "program.hpp"

#include "files/name.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#endif

namespace orva::program {

namespace {

namespace fs = std::filesystem;

std::string readWhole(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

#ifdef _WIN32

HANDLE openForChild(const fs::path& path, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, creation, 0, nullptr);
}

// None of our arguments holds a quotation mark or ends in a backslash.
int spawn(const std::vector<std::string>& command, const fs::path& output, const fs::path& errors) {
    std::wstring line;
    for (const std::string& word : command) line += L'"' + pathOf(word).wstring() + L"\" ";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = openForChild(L"NUL", GENERIC_READ, OPEN_EXISTING); // without one, wine's own pipes get its place
    start.hStdOutput = openForChild(output, GENERIC_WRITE, CREATE_ALWAYS);
    start.hStdError = openForChild(errors, GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION process{};
    // note: about one in some thousand processes dies in wine's hands before it begins, which is this error; nothing of
    // the program has run then.
    DWORD error = ERROR_INTERNAL_ERROR;
    for (int attempt = 0; attempt < 3 && error == ERROR_INTERNAL_ERROR; ++attempt) {
        const BOOL started =
            CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process);
        error = started ? ERROR_SUCCESS : GetLastError();
    }
    for (HANDLE handle : {start.hStdInput, start.hStdOutput, start.hStdError}) CloseHandle(handle);
    if (error != ERROR_SUCCESS) {
        throw std::runtime_error("cannot start " + command.front() + ": error " + std::to_string(error));
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}

#else

int spawn(const std::vector<std::string>& command, const fs::path& output, const fs::path& errors) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, errors.c_str(), flags, 0600);
    pid_t process = 0;
    const int failed = posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw std::runtime_error("cannot start " + command.front());
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

#endif

// Absolute, found while the current folder is still that of the start.
const std::string program = nameOf(fs::absolute(ORVA_PROGRAM));

std::string withoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

Outcome start(const std::vector<std::string>& command, const fs::path& streams) {
    Outcome result;
    result.exitCode = spawn(command, streams / "stdout", streams / "stderr");
    result.output = withoutCarriageReturns(readWhole(streams / "stdout"));
    result.errors = withoutCarriageReturns(readWhole(streams / "stderr"));
    return result;
}

} // namespace

ProgramTest::ProgramTest() {
    std::random_device random;
    const fs::path own = fs::temp_directory_path() / ("orva-test-" + std::to_string(random()));
    folder = own / "files";
    streams = own;
    fs::create_directories(folder);
}

ProgramTest::~ProgramTest() {
    std::error_code ignored;
    fs::remove_all(streams, ignored);
}

std::string ProgramTest::file(const std::string& name) const {
    return nameOf(folder / pathOf(name));
}

std::string ProgramTest::file(const std::string& name, const std::string& content) const {
    std::ofstream(folder / pathOf(name), std::ios::binary) << content;
    return file(name);
}

std::string ProgramTest::contentOf(const std::string& file) {
    return readWhole(pathOf(file));
}

std::vector<std::string> ProgramTest::files() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        names.push_back(nameOf(entry.path().filename()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

Outcome ProgramTest::orva(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return start(command, streams);
}

#ifndef _WIN32
Outcome ProgramTest::orvaAfter(const std::string& preparation, const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{"/bin/sh", "-c", preparation + "; exec \"$0\" \"$@\"", program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return start(command, streams);
}
#endif

void expectFailure(const Outcome& run, int exitCode, const std::string& line) {
    EXPECT_EQ(run.exitCode, exitCode);
    EXPECT_EQ(run.errors, "orva: " + line + "\n");
    EXPECT_EQ(run.output, "");
}

} // namespace orva::program

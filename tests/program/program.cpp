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
#include <csignal>
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

// In a group of its own, for Ctrl-Break to reach it alone. None of our arguments holds a quotation mark or ends in a
// backslash.
Process spawn(const std::vector<std::string>& command, const fs::path& streams) {
    std::wstring line;
    for (const std::string& word : command) line += L'"' + pathOf(word).wstring() + L"\" ";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = openForChild(streams / "stdin", GENERIC_READ, OPEN_EXISTING);
    start.hStdOutput = openForChild(streams / "stdout", GENERIC_WRITE, CREATE_ALWAYS);
    start.hStdError = openForChild(streams / "stderr", GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION process{};
    // note: about one in some thousand processes dies in wine's hands before it begins, which is this error; nothing of
    // the program has run then.
    DWORD error = ERROR_INTERNAL_ERROR;
    for (int attempt = 0; attempt < 3 && error == ERROR_INTERNAL_ERROR; ++attempt) {
        const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP,
                                            nullptr, nullptr, &start, &process);
        error = started ? ERROR_SUCCESS : GetLastError();
    }
    for (HANDLE handle : {start.hStdInput, start.hStdOutput, start.hStdError}) CloseHandle(handle);
    if (error != ERROR_SUCCESS) {
        throw std::runtime_error("cannot start " + command.front() + ": error " + std::to_string(error));
    }
    CloseHandle(process.hThread);
    return {reinterpret_cast<std::intptr_t>(process.hProcess), process.dwProcessId};
}

#else

Process spawn(const std::vector<std::string>& command, const fs::path& streams) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, 0, (streams / "stdin").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, (streams / "stdout").c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, (streams / "stderr").c_str(), flags, 0600);
    pid_t process = 0;
    const int failed = posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw std::runtime_error("cannot start " + command.front());
    return {process, 0};
}

#endif

// Absolute, found while the current folder is still that of the start.
const std::string program = nameOf(fs::absolute(ORVA_PROGRAM));

std::string withoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

Outcome start(const std::vector<std::string>& command, const fs::path& streams, const std::string& input = {},
              const std::function<void(const Process&)>& meanwhile = {}) {
    std::ofstream(streams / "stdin", std::ios::binary) << input;
    Outcome result;
    const Process process = spawn(command, streams);
    if (meanwhile) meanwhile(process);
    result.exitCode = process.wait();
    result.bytes = readWhole(streams / "stdout");
    result.output = withoutCarriageReturns(result.bytes);
    result.errors = withoutCarriageReturns(readWhole(streams / "stderr"));
    return result;
}

std::vector<std::string> commandOf(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

} // namespace

#ifdef _WIN32

bool Process::interrupt() const {
    return GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, group) != 0; // Ctrl-C cannot be sent to others than oneself
}

int Process::wait() const {
    HANDLE process = reinterpret_cast<HANDLE>(id);
    WaitForSingleObject(process, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process, &exitCode);
    CloseHandle(process);
    return static_cast<int>(exitCode);
}

#else

bool Process::interrupt() const {
    send(SIGINT);
    return true;
}

void Process::send(int signal) const {
    kill(static_cast<pid_t>(id), signal);
}

int Process::wait() const {
    int status = 0;
    waitpid(static_cast<pid_t>(id), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

#endif

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

const std::string& ProgramTest::programFile() {
    return program;
}

Outcome ProgramTest::orva(const std::vector<std::string>& arguments) const {
    return start(commandOf(arguments), streams);
}

Outcome ProgramTest::orvaReading(const std::string& input, const std::vector<std::string>& arguments) const {
    return start(commandOf(arguments), streams, input);
}

Outcome ProgramTest::orvaWhile(const std::vector<std::string>& arguments,
                               const std::function<void(const Process&)>& meanwhile) const {
    return start(commandOf(arguments), streams, {}, meanwhile);
}

#ifndef _WIN32
Outcome ProgramTest::orvaAfter(const std::string& preparation, const std::vector<std::string>& arguments,
                               const std::function<void(const Process&)>& meanwhile) const {
    std::vector<std::string> command{"/bin/sh", "-c", preparation + "; exec \"$0\" \"$@\"", program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return start(command, streams, {}, meanwhile);
}
#endif

void expectFailure(const Outcome& run, int exitCode, const std::string& line) {
    EXPECT_EQ(run.exitCode, exitCode);
    EXPECT_EQ(run.errors, "orva: " + line + "\n");
    EXPECT_EQ(run.output, "");
}

} // namespace orva::program

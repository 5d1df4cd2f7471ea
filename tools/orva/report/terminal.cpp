#include "report/terminal.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string_view>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace orva::program {

namespace {

std::mutex busy;
std::size_t drawn = 0; // how many characters of the line are to be seen

#ifdef _WIN32
UINT codePage = 0; // the shell's
#endif

// Bytes that begin a character: those of UTF-8 that do not go on with one.
std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// note: overwritten by spaces instead of an escape sequence, which every terminal understands.
void write(const std::string& line, std::size_t characters) {
    const std::size_t rest = drawn > characters ? drawn - characters : 0;
    const std::string text = "\r" + line + std::string(rest, ' ') + (characters == 0 ? "\r" : std::string(rest, '\b'));
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
    drawn = characters;
}

} // namespace

void enterTerminal() {
#ifdef _WIN32
    codePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
#endif
}

bool hasTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

bool hasColours() {
#ifdef _WIN32
    return false; // old consoles would show the escape sequences
#else
    const char* none = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return (none == nullptr || *none == '\0') && terminal != nullptr && std::string_view(terminal) != "dumb";
#endif
}

std::size_t widthOfTerminal() {
    constexpr std::size_t usual = 80;
#ifdef _WIN32
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) == 0) return usual;
    return static_cast<std::size_t>(std::max(1, info.srWindow.Right - info.srWindow.Left + 1));
#else
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return usual;
    return size.ws_col;
#endif
}

void drawLine(const std::string& line, std::size_t escapes) {
    const std::lock_guard lock(busy);
    write(line, countCharacters(line) - escapes);
}

void eraseLine() {
    const std::lock_guard lock(busy);
    if (drawn > 0) write("", 0);
}

void printPastLine(const std::function<void()>& print) {
    const std::lock_guard lock(busy);
    if (drawn > 0) write("", 0);
    print();
}

void leaveTerminal() noexcept {
    busy.lock(); // for good
    if (drawn > 0) {
        const std::size_t andControlC = std::min(drawn + 2, widthOfTerminal() - 1); // which the terminal shows as ^C
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(andControlC), "");
    }
#ifdef _WIN32
    SetConsoleOutputCP(codePage);
#endif
}

} // namespace orva::program

#include "report/progress.hpp"

#include "report/terminal.hpp"
#include "words.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>

namespace orva::program {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 1s; // what is quicker needs no line
constexpr auto pause = 200ms; // between two lines: often enough for a clock with seconds

// Shortened in front, since names differ at their end; characters stay whole, and control characters do nothing.
std::string shortened(const std::string& text, std::size_t characters) {
    std::string kept;
    for (auto c = text.rbegin(); c != text.rend() && characters > 0; ++c) {
        const auto byte = static_cast<unsigned char>(*c);
        kept += byte < 0x20 || byte == 0x7F ? '?' : *c;
        if ((byte & 0xC0) != 0x80) --characters;
    }
    return {kept.rbegin(), kept.rend()};
}

std::string clock(std::chrono::seconds elapsed) {
    const long long seconds = elapsed.count();
    return formatted("%lld:%02lld", seconds / 60, seconds % 60);
}

} // namespace

std::string progressLine(const std::string& doing, std::size_t done, std::size_t all, std::chrono::seconds elapsed,
                         std::size_t width, bool colours, std::size_t& escapes) {
    const std::string begin = "orva: ";
    std::string bar;
    std::string end = "  " + clock(elapsed);
    std::string_view colour;
    std::string_view plain;
    if (all > 1) { // of one thing there is no fraction
        constexpr std::size_t length = 20;
        const std::size_t full = length * std::min(done, all) / all;
        bar = std::string(full, '#') + std::string(length - full, '.');
        end = "] " + std::to_string(done) + " of " + std::to_string(all) + end;
        if (colours) {
            colour = "\033[36m";
            plain = "\033[0m";
        }
    }
    // The last column stays free: with a character there, some terminals begin a new line.
    const std::size_t taken = begin.size() + bar.size() + end.size() + (bar.empty() ? 0 : 3) + 1;
    const std::string middle = shortened(doing, width > taken ? width - taken : 0);
    escapes = colour.size() + plain.size();
    std::string line = begin + middle;
    if (!bar.empty()) line.append("  [").append(colour).append(bar).append(plain);
    return line + end;
}

Progress::~Progress() {
    stop();
}

void Progress::start() {
    if (!hasTerminal()) return;
    const std::lock_guard lock(busy);
    if (running) return;
    running = true;
    begin = std::chrono::steady_clock::now();
    try {
        drawer = std::thread([this] { keepDrawing(); });
    } catch (const std::system_error&) { // no thread to be had: the work can do without a line
        running = false;
    }
}

void Progress::show(const std::string& nowDoing, std::size_t nowDone, std::size_t ofAll) {
    const std::lock_guard lock(busy);
    doing = nowDoing;
    done = nowDone;
    all = ofAll;
}

void Progress::stop() {
    {
        const std::lock_guard lock(busy);
        running = false;
    }
    change.notify_all();
    if (drawer.joinable()) drawer.join();
}

void Progress::keepDrawing() {
    std::unique_lock lock(busy);
    const auto ended = [this] { return !running; };
    if (change.wait_for(lock, patience, ended)) return;
    const bool colours = hasColours();
    do {
        const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin);
        std::size_t escapes = 0;
        const std::string line = progressLine(doing, done, all, elapsed, widthOfTerminal(), colours, escapes);
        drawLine(line, escapes);
    } while (!change.wait_for(lock, pause, ended));
    eraseLine();
}

} // namespace orva::program

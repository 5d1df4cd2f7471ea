/// @file
/// What the program is doing, on the terminal, while it takes long.
#ifndef ORVA_PROGRAM_REPORT_PROGRESS_HPP
#define ORVA_PROGRAM_REPORT_PROGRESS_HPP

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace orva::program {

/// Silent until it is started.
class Progress {
public:
    Progress() = default;
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// If stderr is a terminal, a line there tells from now on what goes on, once a second has passed.
    void start();

    /// `doing` is what begins now, "reading a.off". Where there is a true fraction, `done` of `all` are behind us.
    void show(const std::string& doing, std::size_t done = 0, std::size_t all = 0);

    /// The line is gone for good.
    void stop();

private:
    void keepDrawing();

    std::mutex busy; // held while one of the members below is in use
    std::string doing;
    std::size_t done = 0;
    std::size_t all = 0;
    bool running = false;
    std::chrono::steady_clock::time_point begin;
    std::condition_variable change;
    std::thread drawer;
};

/// The line, for a terminal of that width: "orva: reading b.off  [#####...............] 1 of 4  0:07". The bar is in
/// colour if that is asked for; `escapes` is how many bytes that took.
std::string progressLine(const std::string& doing, std::size_t done, std::size_t all, std::chrono::seconds elapsed,
                         std::size_t width, bool colours, std::size_t& escapes);

} // namespace orva::program

#endif

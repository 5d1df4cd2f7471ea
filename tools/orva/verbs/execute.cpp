#include "verbs/execute.hpp"

#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <utility>

namespace orva::program {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

} // namespace

int execute(const Command& command) {
    Run run;
    const Clock::time_point begin = Clock::now();
    try {
        run.threads = command.threads > 0 ? command.threads : tbb::info::default_concurrency();
        std::optional<tbb::global_control> limit;
        if (command.threads > 0) {
            limit.emplace(tbb::global_control::max_allowed_parallelism, static_cast<std::size_t>(command.threads));
        }
        if (!command.manner.quiet) run.progress.start();
        command.run(run);
        run.progress.stop();
        run.report.seconds = secondsSince(begin);
        return print(command.verb, run.report, command.manner);
    } catch (...) {
        run.progress.stop();
        return printFailure(command.verb, run.report, command.manner);
    }
}

Report runBeside(const Command& command, int threads) {
    Run run;
    run.threads = command.threads > 0 ? std::min(command.threads, threads) : threads;
    const Clock::time_point begin = Clock::now();
    tbb::task_arena arena(run.threads); // its own, since a limit for all would be one for the others, too
    arena.execute([&] { command.run(run); });
    run.report.seconds = secondsSince(begin);
    return std::move(run.report);
}

} // namespace orva::program

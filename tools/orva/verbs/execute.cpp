#include "verbs/execute.hpp"

#include "verbs/verbs.hpp"

#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orva::program {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// Asked of the arguments as they stand: an error in them may be found before the option is.
bool asksForJson(const std::vector<std::string>& arguments) {
    return std::find(arguments.begin(), std::find(arguments.begin(), arguments.end(), "--"), "--json") !=
           std::find(arguments.begin(), arguments.end(), "--");
}

// As the whole work of this process: with the threads asked for, and its report printed.
int execute(const Command& command) {
    Run run;
    const Clock::time_point begin = Clock::now();
    try {
        run.threads = command.threads > 0 ? command.threads : std::max(tbb::info::default_concurrency(), 1);
        std::optional<tbb::global_control> limit;
        if (command.threads > 0) {
            limit.emplace(tbb::global_control::max_allowed_parallelism, static_cast<std::size_t>(command.threads));
        }
        // The scheduler's own arena has as many places as the machine has processors: on one processor, two threads
        // would be one, and a parallel union would wait for the other.
        tbb::task_arena arena(run.threads);
        if (!command.manner.quiet) run.progress.start();
        arena.execute([&] { command.run(run); });
        run.progress.stop();
        run.report.seconds = secondsSince(begin);
        return print(command.verb, run.report, command.manner);
    } catch (...) {
        run.progress.stop();
        return printFailure(command.verb, run.report, command.manner);
    }
}

} // namespace

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

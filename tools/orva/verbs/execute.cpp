#include "verbs/execute.hpp"

#include <tbb/global_control.h>
#include <tbb/info.h>

#include <chrono>
#include <cstddef>
#include <optional>

namespace orva::program {

int execute(const Command& command) {
    Run run;
    const auto begin = std::chrono::steady_clock::now();
    try {
        run.threads = command.threads > 0 ? command.threads : tbb::info::default_concurrency();
        std::optional<tbb::global_control> limit;
        if (command.threads > 0) {
            limit.emplace(tbb::global_control::max_allowed_parallelism, static_cast<std::size_t>(command.threads));
        }
        if (!command.manner.quiet) run.progress.start();
        command.run(run);
        run.progress.stop();
        run.report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        return print(command.verb, run.report, command.manner);
    } catch (...) {
        run.progress.stop();
        return printFailure(command.verb, run.report, command.manner);
    }
}

} // namespace orva::program

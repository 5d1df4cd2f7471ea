#include "measure.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <exception>

namespace orva::bench {

namespace {

constexpr int MOST = 9;

// The results go where the tasks put them.
class Silence : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>&) override {}
};

void interleave() {
    static char name[] = "orva_bench";
    static char flag[] = "--benchmark_enable_random_interleaving=true";
    char* flags[]{name, flag, nullptr};
    int count = 2;
    benchmark::Initialize(&count, flags);
}

// Gives the seconds by the clock.
double solveOnce(const Task& task, Outcome& outcome) {
    try {
        const Solution solution = solve(task.solver, task.operation, *task.inputs, task.limit);
        if (const auto problem = (*task.check)(task.solver, solution)) {
            outcome.failure = *problem;
            outcome.wrong = true;
        } else {
            outcome.solutions.push_back(solution);
        }
        return solution.seconds;
    } catch (const std::exception& exception) {
        outcome.failure = exception.what();
        return 0;
    }
}

} // namespace

std::vector<Outcome> measure(const std::vector<Task>& tasks, double budget) {
    std::vector<Outcome> outcomes(tasks.size());
    benchmark::ClearRegisteredBenchmarks();
    bool any = false;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const Task& task = tasks[i];
        Outcome& outcome = outcomes[i];
        const double seconds = solveOnce(task, outcome);
        const auto more = static_cast<int>(std::min<double>(MOST, budget / std::max(seconds, 1e-6))) - 1;
        if (!outcome.failure.empty() || more < 1) continue;
        any = true;
        benchmark::RegisterBenchmark(std::to_string(i).c_str(),
                                     [&task, &outcome](benchmark::State& state) {
                                         for ([[maybe_unused]] const auto each : state) {
                                             state.SetIterationTime(solveOnce(task, outcome));
                                             if (!outcome.failure.empty()) state.SkipWithError(outcome.failure.c_str());
                                         }
                                     })
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(more);
    }
    if (any) {
        interleave();
        Silence silence;
        benchmark::RunSpecifiedBenchmarks(&silence, ".*");
    }
    return outcomes;
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

double median(const Outcome& outcome, double Solution::*what) {
    std::vector<double> values;
    for (const Solution& solution : outcome.solutions) values.push_back(solution.*what);
    return medianOf(values);
}

double medianRatio(const Outcome& over, const Outcome& under, double Solution::*what) {
    // Where one was made less often, each of its solutions stands for as many of the other.
    const std::size_t count = std::max(over.solutions.size(), under.solutions.size());
    std::vector<double> ratios;
    for (std::size_t i = 0; i < count; ++i) {
        ratios.push_back(over.solutions[i * over.solutions.size() / count].*what /
                         under.solutions[i * under.solutions.size() / count].*what);
    }
    return medianOf(ratios);
}

} // namespace orva::bench

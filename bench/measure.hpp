// Several ways to do a job, or several jobs, measured side by side.
#pragma once

#include "solvers.hpp"

#include <string>
#include <vector>

namespace orva::bench {

struct Task {
    Solver solver;
    Operation operation;
    const std::vector<Mesh>* inputs;
    Check* check; ///< shared by the tasks of one job
    double limit; ///< the most seconds that one solution may take
};

struct Outcome {
    std::vector<Solution> solutions; ///< at least one, or there is a failure
    std::string failure;
    bool wrong = false; ///< there was a result, and it failed its check
};

/// Solves every task once, to see that its result is right and how long it takes, then again and again, all mixed in
/// random order, each for about `budget` seconds altogether and at most nine times.
std::vector<Outcome> measure(const std::vector<Task>& tasks, double budget);

double medianOf(std::vector<double> values);

/// Of all solutions.
double median(const Outcome& outcome, double Solution::*what);

/// Of the ratios of solutions that were made at about the same time.
double medianRatio(const Outcome& over, const Outcome& under, double Solution::*what);

} // namespace orva::bench

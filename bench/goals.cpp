// The goals are ratios, to the plain reading, to CGAL, or between two sizes, all with one thread; and ratios are taken
// between processor times: on a busy machine the clock tells how much of a processor a call was given.
#include "goals.hpp"

#include "score.hpp"
#include "table.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace orva::bench {

namespace {

constexpr double LIMIT = 120;
constexpr double BUDGET = 3;

// What is asked of one job.
struct Asked {
    std::string job;
    std::optional<Bound> plain; ///< times as long as ours, at least
    std::optional<Bound> cgal;  ///< ours times as long as its, at most
    bool memory = false;
    bool cgalMayFail = false; ///< then there is nothing to be judged by
};

std::vector<Asked> allAsked() {
    std::vector<Asked> asked;
    for (const char* operation : {"union", "difference", "intersection"}) {
        const bool isUnion = operation == std::string("union");
        for (const int level : {3, 4, 5, 6}) {
            asked.push_back(
                {"icospheres/level " + std::to_string(level) + "/" + operation, {}, Bound{5, isUnion ? 2.0 : 1.0}});
            if (isUnion && level == 3) asked.back().plain = Bound{25, 60};
            if (isUnion && level == 4) asked.back().plain = Bound{100, 250};
        }
    }
    for (const char* size : {"32 x 32", "64 x 64", "128 x 128"}) {
        asked.push_back({std::string("tori/") + size + "/union", Bound{3, 6}, {}});
    }
    for (const char* operation : {"union", "difference", "intersection"}) {
        for (const char* name : {"anchor", "elephant", "fandisk", "bear", "armadillo", "bunny00"}) {
            asked.push_back({std::string("scans/") + name + "/" + operation, Bound{3, 6}, {}, true});
        }
    }
    for (const char* operation : {"in turn", "as one union"}) {
        for (const int count : {1, 10, 50, 100, 400}) {
            asked.push_back({"wall and windows/" + std::to_string(count) + "/" + operation, {}, Bound{1, 1}});
            // Holes in rows leave it triangles without area, on which it ends, from about 50 on.
            asked.back().cgalMayFail = true;
            if (count == 100) asked.back().plain = Bound{4, operation == std::string("in turn") ? 10.0 : 8.0};
        }
    }
    for (const char* operation : {"union", "difference", "intersection"}) {
        asked.push_back({std::string("boxes/12/") + operation, {}, Bound{1, 1}});
        if (operation == std::string("union")) asked.back().plain = Bound{3, 6};
    }
    return asked;
}

// Millions of polygons cut in two a second, as many as the plain reading cuts.
double cutsPerSecond(const Outcome& plain, const Outcome& ours) {
    return 1e-6 * static_cast<double>(plain.solutions.front().cuts) / median(ours, &Solution::processor);
}

// From level 4 to level 6 of the icospheres, sixteen times as many triangles.
void judgeGrowth(Score& score) {
    const std::string what = "icospheres/level 4 to 6/union";
    const Job small = jobNamed("icospheres/level 4/union", "");
    const Job large = jobNamed("icospheres/level 6/union", "");
    const std::vector<Mesh> smallInputs = small.inputs();
    const std::vector<Mesh> largeInputs = large.inputs();
    Check smallCheck(small.operation);
    Check largeCheck(large.operation);
    const std::vector<Outcome> outcomes =
        measure({{Solver::OneThread, small.operation, &smallInputs, &smallCheck, LIMIT},
                 {Solver::OneThread, large.operation, &largeInputs, &largeCheck, LIMIT}},
                2 * BUDGET);
    for (const Outcome& outcome : outcomes) {
        if (!outcome.failure.empty()) return score.failed(what, "growth, n^", outcome.failure);
    }
    score.judge(what, "growth, n^",
                std::log(medianRatio(outcomes[1], outcomes[0], &Solution::processor)) / std::log(16.0), {1.25, 1.1},
                false);
}

} // namespace

void judgeGoals(Score& score, const std::string& meshes) {
    std::optional<double> bestRate;
    std::string fastest;
    for (const Asked& asked : allAsked()) {
        const Job job = jobNamed(asked.job, meshes);
        const std::vector<Mesh> inputs = job.inputs();
        Check check(job.operation);
        std::vector<Task> tasks{{Solver::OneThread, job.operation, &inputs, &check, LIMIT}};
        if (asked.plain) tasks.push_back({Solver::Reference, job.operation, &inputs, &check, LIMIT});
        if (asked.cgal) tasks.push_back({Solver::Cgal, job.operation, &inputs, &check, LIMIT});
        const std::vector<Outcome> outcomes = measure(tasks, BUDGET);
        const Outcome& ours = outcomes.front();

        for (std::size_t i = 1; i < tasks.size(); ++i) {
            const bool plain = tasks[i].solver == Solver::Reference;
            const std::string of = plain ? "plain reading / ours" : "ours / CGAL";
            const Outcome& other = outcomes[i];
            if (!plain && asked.cgalMayFail && ours.failure.empty() && !other.failure.empty()) {
                score.skipped(asked.job, of, "CGAL: " + other.failure);
            } else if (!ours.failure.empty() || !other.failure.empty()) {
                score.failed(asked.job, of, ours.failure.empty() ? other.failure : ours.failure);
            } else if (plain) {
                score.judge(asked.job, of, medianRatio(other, ours, &Solution::processor), *asked.plain, true);
            } else {
                score.judge(asked.job, of, medianRatio(ours, other, &Solution::processor), *asked.cgal, false);
            }
        }
        if (!asked.memory || !ours.failure.empty()) continue;
        score.judge(asked.job, "memory / (input + output)", memoryRatio(ours, trianglesIn(inputs)), {3, 3}, false);
        if (job.operation != Operation::Union || !outcomes[1].failure.empty()) continue;
        const double rate = cutsPerSecond(outcomes[1], ours);
        if (!bestRate || rate > *bestRate) {
            bestRate = rate;
            fastest = asked.job;
        }
    }
    judgeGrowth(score);
    if (bestRate) {
        score.judge(fastest, "million cuts a second", *bestRate, {0.7, 2.5}, true);
    } else {
        score.failed("scans/*/union", "million cuts a second", "no result");
    }
}

} // namespace orva::bench

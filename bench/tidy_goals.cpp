// The goals for what tidying delivers, then for what it costs. Of several results the worst one is judged, and named.
#include "tidy_goals.hpp"

#include "closing.hpp"
#include "measure.hpp"
#include "orva/bspcsg.hpp"
#include "orva/tidy.hpp"
#include "process.hpp"
#include "shapes.hpp"
#include "table.hpp"
#include "tidying.hpp"

#include <tbb/global_control.h>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <optional>
#include <stdexcept>
#include <vector>

namespace orva::bench {

namespace {

constexpr double LIMIT = 300;

// ---- Closed ----

// Gives the most that a vertex was moved, in tolerances.
double judgeClosed(Score& score, const std::string& meshes) {
    Tally all;
    for (const Closing& closing : allClosings(meshes)) {
        const Tally tally = closing.measure();
        Score::note(closing.name + ": " + std::to_string(tally.closed) + " of " + std::to_string(tally.results) +
                    " results closed");
        for (const std::string& line : tally.open) Score::note("  " + line);
        all.add(tally);
    }
    const std::string what = std::to_string(all.results) + " tidied results";
    score.judge(what, "closed by index, %", 100.0 * static_cast<double>(all.closed) / static_cast<double>(all.results),
                {99.5, 100}, true);
    score.judge(what, "reported wrongly", static_cast<double>(all.misreported), {0, 0}, false);
    return all.inTolerances;
}

void judgeUnits(Score& score, const std::string& meshes) {
    const Tally tally = closedInAllUnits(meshes);
    for (const std::string& line : tally.open) Score::note("  " + line);
    score.judge(std::to_string(tally.results) + " unions, 0.25 to 4096 across", "closed by index, %",
                100.0 * static_cast<double>(tally.closed) / static_cast<double>(tally.results), {100, 100}, true);
}

// ---- Triangles, time, memory ----

struct Worst {
    std::optional<double> value;
    std::string job;

    void take(double other, const std::string& of) {
        if (value && *value >= other) return;
        value = other;
        job = of;
    }
};

void judgeWorst(Score& score, const Worst& worst, const std::string& of, Bound bound) {
    if (worst.value)
        score.judge(worst.job, of, *worst.value, bound, false);
    else
        score.failed("all jobs", of, "no result");
}

std::vector<Tidying> measureAll(Score& score, const std::string& meshes) {
    std::vector<Tidying> all;
    for (const Job& job : tidyingJobs(meshes)) {
        try {
            all.push_back(measureTidying(job));
        } catch (const std::runtime_error& error) {
            score.failed(job.name(), "tidied", error.what());
        }
    }
    return all;
}

void judgeTriangles(Score& score, const std::vector<Tidying>& all) {
    for (const std::string series : {"icospheres", "tori", "scans"}) {
        Worst tidied;
        Worst merged;
        for (const Tidying& each : all) {
            if (each.series != series || !each.cgal) continue;
            const auto cgal = static_cast<double>(*each.cgal);
            tidied.take(static_cast<double>(each.tidied) / cgal, each.job);
            merged.take(static_cast<double>(each.merged) / cgal, each.job);
        }
        judgeWorst(score, tidied, "triangles / CGAL's", {1.02, 1});
        judgeWorst(score, merged, "merged / CGAL's", {1, 1});
    }
}

// Of smaller soups the memory says nothing: the heap takes its first pages, and that is most of it.
constexpr std::uint64_t TRIANGLES_FOR_MEMORY = 10000;

void judgeCost(Score& score, const std::vector<Tidying>& all) {
    Worst withMarks;
    Worst withoutMarks;
    Worst share;
    Worst memory;
    double operations = 0.0;
    double tidying = 0.0;
    for (const Tidying& each : all) {
        if (each.soup >= TRIANGLES_FOR_MEMORY) memory.take(each.memory, each.job);
        if (each.series != "scans") continue;
        const auto triangles = static_cast<double>(each.soup);
        withMarks.take(1e6 * each.withMarks / triangles, each.job);
        withoutMarks.take(1e6 * each.withoutMarks / triangles, each.job);
        share.take(100 * each.withMarks / each.operation, each.job);
        operations += each.operation;
        tidying += each.withMarks;
    }
    judgeWorst(score, withMarks, "us a triangle of the soup", {0.5, 0.2});
    // Together: small ones are combined in no time, and what that is compared with says little.
    score.judge("all scans together", "% of the operations", 100 * tidying / operations, {20, 20}, false);
    if (share.value) Score::note("the most is " + rounded(*share.value) + " %, of " + share.job);
    judgeWorst(score, withoutMarks, "us a triangle, no marks", {2, 1});
    judgeWorst(score, memory, "memory / soup", {1.5, 1});
}

void judgeMoved(Score& score, const std::vector<Tidying>& all, double inTolerances) {
    Worst tolerances;
    Worst ofSize;
    tolerances.take(inTolerances, "all results above");
    for (const Tidying& each : all) {
        tolerances.take(each.inTolerances, each.job);
        if (each.series == "scans") ofSize.take(each.movedOfSize, each.job);
    }
    judgeWorst(score, tolerances, "moved, in tolerances", {3, 3});
    // Scaled to 1024, three tolerances are this.
    judgeWorst(score, ofSize, "moved, of the size", {3 * 8e-6 / 512, 1e-12});
}

// ---- In turn ----

// Around a sphere, all over it.
std::vector<Mesh> spheresAround(int count, int level) {
    std::vector<Mesh> spheres;
    for (int i = 0; i < count; ++i) {
        const double z = 1 - 2 * (i + 0.5) / count;
        const double angle = i * std::numbers::pi * (3 - std::sqrt(5.0));
        const double r = std::sqrt(1 - z * z);
        spheres.push_back(test::icosphere(level, {r * std::cos(angle), r * std::sin(angle), z}, 0.35));
    }
    return spheres;
}

void judgeInTurn(Score& score) {
    const Mesh base = test::icosphere(4, {0, 0, 0}, 1);
    const std::vector<Mesh> cutters = spheresAround(16, 3);
    const auto timeOf = [&](bool tidied) {
        return apart<double>(LIMIT, [&] {
            const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
            const Clocks start;
            Mesh soup;
            tidy::Solid solid;
            if (tidied)
                tidy::subtractSolid(solid, base, cutters);
            else
                bspcsg::subtractMultiMesh(soup, base, cutters);
            return Clocks().processor - start.processor;
        });
    };
    const std::string what = "a sphere minus 16, in turn";
    try {
        std::vector<double> ratios;
        for (int i = 0; i < 3; ++i) ratios.push_back(timeOf(false) / timeOf(true));
        score.judge(what, "untidied / tidied, time", medianOf(ratios), {1, 1}, true);
    } catch (const std::runtime_error& error) {
        score.failed(what, "untidied / tidied, time", error.what());
    }
}

} // namespace

void judgeTidyGoals(Score& score, const std::string& meshes) {
    const double inTolerances = judgeClosed(score, meshes);
    judgeUnits(score, meshes);
    const std::vector<Tidying> all = measureAll(score, meshes);
    judgeTriangles(score, all);
    judgeCost(score, all);
    judgeMoved(score, all, inTolerances);
    judgeInTurn(score);
}

} // namespace orva::bench

#include "table.hpp"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>
#include <utility>

namespace orva::bench {

namespace {

// For the repetitions of one solver at one job.
constexpr double BUDGET = 8;

// Of inputs and outputs smaller than this the memory says nothing: the heap takes its first pages, and that is most of
// it.
constexpr std::size_t TRIANGLES_FOR_MEMORY = 5000;

constexpr const char* HEAD =
    "| | triangles in | out | 1 thread, ms | 2 threads, ms | ns per triangle out | memory | plain reading, ms "
    "| / ours | CGAL, ms | / ours | its triangles out | its ns per triangle |\n"
    "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n";

} // namespace

std::string rounded(double value) {
    std::ostringstream text;
    text.setf(std::ios::fixed);
    text.precision(value < 0.1 ? 3 : value < 10 ? 2 : value < 100 ? 1 : 0);
    text << value;
    return text.str();
}

std::size_t trianglesIn(const std::vector<Mesh>& meshes) {
    std::size_t count = 0;
    for (const Mesh& mesh : meshes) count += mesh.vertices.size() / 3;
    return count;
}

double memoryRatio(const Outcome& outcome, std::size_t trianglesIn) {
    const auto triangles = static_cast<double>(trianglesIn + outcome.solutions.front().triangles);
    return median(outcome, &Solution::memory) / (triangles * 3 * sizeof(types::Vertex));
}

void Table::measure(const Job& job) {
    const std::vector<Mesh> inputs = job.inputs();
    Row row{job, bench::trianglesIn(inputs), {}};
    const auto triangles = static_cast<double>(row.trianglesIn);
    Check check(job.operation);

    std::vector<Task> tasks;
    for (const Solver solver : solvers) {
        if (!canDo(solver, job.operation)) continue;
        const double limit = solver == Solver::Reference ? limit_ / 3 : limit_;
        const Before before = before_[{job.series, job.operation, solver}];
        // Time grows at least in proportion.
        if (before.triangles > 0 && before.seconds * triangles / before.triangles > limit) {
            row.outcomes[solver].failure = "> " + std::to_string(std::lround(limit)) + " s";
        } else {
            tasks.push_back({solver, job.operation, &inputs, &check, limit});
        }
    }
    const std::vector<Outcome> outcomes = bench::measure(tasks, BUDGET);
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const Outcome& outcome = outcomes[i];
        const double seconds = outcome.solutions.empty() ? tasks[i].limit : median(outcome, &Solution::seconds);
        before_[{job.series, job.operation, tasks[i].solver}] = {triangles, seconds};
        if (outcome.wrong) {
            allRight_ = false;
            std::cerr << job.name() << ", " << nameOf(tasks[i].solver) << ": " << outcome.failure << std::endl;
        }
        row.outcomes[tasks[i].solver] = outcome;
    }
    if (rows_.empty()) std::cout << HEAD;
    std::cout << line(row) << std::endl;
    rows_.push_back(std::move(row));
}

const Outcome* Table::solvedBy(const Row& row, Solver solver) {
    const auto found = row.outcomes.find(solver);
    return found == row.outcomes.end() || !found->second.failure.empty() ? nullptr : &found->second;
}

const Outcome* Table::ours(const Row& row) {
    const Outcome* one = solvedBy(row, Solver::OneThread);
    return one != nullptr ? one : solvedBy(row, Solver::TwoThreads);
}

std::string Table::milliseconds(const Row& row, Solver solver) {
    const auto found = row.outcomes.find(solver);
    if (found == row.outcomes.end()) return "";
    const Outcome& outcome = found->second;
    if (!outcome.failure.empty()) return outcome.failure;
    return rounded(1e3 * median(outcome, &Solution::seconds));
}

std::string Table::nanosecondsPerTriangle(const Outcome* outcome) {
    if (outcome == nullptr) return "";
    const auto triangles = static_cast<double>(outcome->solutions.front().triangles);
    return rounded(1e9 * median(*outcome, &Solution::seconds) / triangles);
}

std::string Table::timesFaster(const Row& row, Solver than) {
    const Outcome* one = ours(row);
    const Outcome* other = solvedBy(row, than);
    return one != nullptr && other != nullptr ? rounded(medianRatio(*other, *one, &Solution::seconds)) : "";
}

std::string Table::line(const Row& row) {
    const Outcome* one = ours(row);
    const Outcome* cgal = solvedBy(row, Solver::Cgal);
    const auto triangles = [](const Outcome* outcome) {
        return outcome == nullptr ? "" : std::to_string(outcome->solutions.front().triangles);
    };
    std::ostringstream out;
    out << "| " << row.job.series << ", " << row.job.size << ", " << nameOf(row.job.operation) << " | "
        << row.trianglesIn << " | " << triangles(one) << " | " << milliseconds(row, Solver::OneThread) << " | "
        << milliseconds(row, Solver::TwoThreads) << " | " << nanosecondsPerTriangle(one) << " | "
        << (one != nullptr && row.trianglesIn + one->solutions.front().triangles >= TRIANGLES_FOR_MEMORY
                ? rounded(memoryRatio(*one, row.trianglesIn))
                : "")
        << " | " << milliseconds(row, Solver::Reference) << " | " << timesFaster(row, Solver::Reference) << " | "
        << milliseconds(row, Solver::Cgal) << " | " << timesFaster(row, Solver::Cgal) << " | " << triangles(cgal)
        << " | " << nanosecondsPerTriangle(cgal) << " |";
    return out.str();
}

void Table::write(std::ostream& out) const {
    out << HEAD;
    for (const Row& row : rows_) out << line(row) << "\n";
}

void Table::writePlotData(std::ostream& out) const {
    std::string block;
    for (const Row& row : rows_) {
        const std::string name = row.job.series + ", " + nameOf(row.job.operation);
        if (name != block) out << (block.empty() ? "# " : "\n\n# ") << name << "\n";
        block = name;
        out << row.trianglesIn;
        for (const Solver solver : solvers) {
            const Outcome* outcome = solvedBy(row, solver);
            out << " ";
            if (outcome != nullptr)
                out << median(*outcome, &Solution::seconds);
            else
                out << "NaN";
        }
        out << "\n";
    }
}

} // namespace orva::bench

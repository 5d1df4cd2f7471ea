// Measures the jobs whose name contains FILTER, one after another, and writes the table.
//
//     orva_bench MESHES TABLE PLOT-DATA [FILTER [SECONDS]]
//
// SECONDS is the most that a solver may take for a job, 60 by default; the plain reading has a third of it. Where a
// smaller job of the series took too long already, a larger one is not tried.
#include "solvers.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <tuple>
#include <utility>

namespace orva::bench {

namespace {

// A job this long is measured once, shorter ones several times.
constexpr double ONCE = 5;

struct Measurement {
    std::optional<double> seconds; ///< the median
    std::string otherwise;         ///< why there is none
};

struct Row {
    Job job;
    std::size_t trianglesIn = 0;
    std::size_t trianglesOut = 0; ///< the library's
    std::map<Solver, Measurement> times;
};

// How a solver fared with the job before in the same series.
struct Before {
    double triangles = 0;
    double seconds = 0;
};

std::string rounded(double value) {
    std::ostringstream text;
    const int digits = value < 10 ? 2 : value < 100 ? 1 : 0;
    text.setf(std::ios::fixed);
    text.precision(value < 0.1 ? 3 : digits);
    text << value;
    return text.str();
}

// Takes the time of every repetition out of the framework, which would print them.
class Collector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            if (run.error_occurred) {
                errors[run.run_name.function_name] = run.error_message;
            } else {
                seconds[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                              static_cast<double>(run.iterations));
            }
        }
    }
    std::map<std::string, std::vector<double>> seconds;
    std::map<std::string, std::string> errors;
};

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

class Session {
public:
    explicit Session(double limit) : limit_(limit) {}

    void measure(const Job& job) {
        const std::vector<Mesh> inputs = job.inputs();
        Row row{job, 0, 0, {}};
        for (const Mesh& input : inputs) row.trianglesIn += input.vertices.size() / 3;
        Check check(job.operation);
        benchmark::ClearRegisteredBenchmarks();
        for (const Solver solver : solvers) {
            if (canDo(solver, job.operation)) prepare(solver, row, inputs, check);
        }
        Collector collector;
        benchmark::RunSpecifiedBenchmarks(&collector, ".*");
        for (const Solver solver : solvers) {
            if (const auto times = collector.seconds.find(nameOf(solver)); times != collector.seconds.end()) {
                row.times[solver].seconds = medianOf(times->second);
            }
            if (const auto error = collector.errors.find(nameOf(solver)); error != collector.errors.end()) {
                wrong(row, solver, error->second);
            }
        }
        std::cout << line(row) << std::endl;
        rows_.push_back(std::move(row));
    }

    void writeTable(std::ostream& out) const {
        out << "| | triangles in | out | 1 thread, ms | 2 threads, ms | µs per triangle out | plain reading, ms "
               "| ours / plain | CGAL, ms | ours / CGAL |\n|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n";
        for (const Row& row : rows_) out << line(row) << "\n";
    }

    // One block for each series and operation: triangles in, then the seconds of each solver.
    void writePlotData(std::ostream& out) const {
        std::string block;
        for (const Row& row : rows_) {
            const std::string name = row.job.series + ", " + nameOf(row.job.operation);
            if (name != block) out << (block.empty() ? "# " : "\n\n# ") << name << "\n";
            block = name;
            out << row.trianglesIn;
            for (const Solver solver : solvers) {
                const std::optional<double> seconds = secondsOf(row, solver);
                out << " ";
                if (seconds)
                    out << *seconds;
                else
                    out << "NaN";
            }
            out << "\n";
        }
    }

    bool allRight() const { return allRight_; }

private:
    // Solves it once, to see that the result is right and how long it takes, and registers the repetitions.
    void prepare(Solver solver, Row& row, const std::vector<Mesh>& inputs, Check& check) {
        Measurement& measurement = row.times[solver];
        const Operation operation = row.job.operation;
        const double limit = solver == Solver::Reference ? limit_ / 3 : limit_;
        const auto triangles = static_cast<double>(row.trianglesIn);
        Before& before = before_[{row.job.series, operation, solver}];
        // Time grows at least in proportion.
        if (before.triangles > 0 && before.seconds * triangles / before.triangles > limit) {
            measurement.otherwise = "> " + std::to_string(std::lround(limit)) + " s";
            return;
        }
        double seconds = limit;
        try {
            const Solution solution = solve(solver, operation, inputs, limit);
            if (const auto problem = check(solver, solution)) return wrong(row, solver, *problem);
            if (solver != Solver::Cgal) row.trianglesOut = solution.triangles;
            seconds = solution.seconds;
        } catch (const std::exception& exception) {
            measurement.otherwise = exception.what();
        }
        before = {triangles, seconds};
        if (!measurement.otherwise.empty()) return;
        if (seconds > ONCE) {
            measurement.seconds = seconds;
            return;
        }
        const auto repeat = [solver, operation, &inputs, &check, limit](benchmark::State& state) {
            for ([[maybe_unused]] const auto each : state) {
                try {
                    const Solution solution = solve(solver, operation, inputs, limit);
                    state.SetIterationTime(solution.seconds);
                    if (const auto problem = check(solver, solution)) state.SkipWithError(problem->c_str());
                } catch (const std::exception& exception) {
                    state.SkipWithError(exception.what());
                }
            }
        };
        benchmark::RegisterBenchmark(nameOf(solver), repeat)
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(seconds < 0.5 ? 9
                          : seconds < 2 ? 5
                                        : 3);
    }

    void wrong(Row& row, Solver solver, const std::string& problem) {
        row.times[solver] = {std::nullopt, "wrong: " + problem};
        allRight_ = false;
        std::cerr << row.job.name() << ", " << nameOf(solver) << ": " << problem << std::endl;
    }

    static std::optional<double> secondsOf(const Row& row, Solver solver) {
        const auto found = row.times.find(solver);
        return found == row.times.end() ? std::nullopt : found->second.seconds;
    }

    static std::string milliseconds(const Row& row, Solver solver) {
        const auto found = row.times.find(solver);
        if (found == row.times.end()) return "";
        const Measurement& measurement = found->second;
        return measurement.seconds ? rounded(*measurement.seconds * 1e3) : measurement.otherwise;
    }

    // Of the library's better time.
    static std::string ratio(const Row& row, Solver other) {
        const std::optional<double> ours = best(row);
        const std::optional<double> theirs = secondsOf(row, other);
        return ours && theirs ? rounded(*ours / *theirs) : "";
    }

    static std::optional<double> best(const Row& row) {
        const std::optional<double> one = secondsOf(row, Solver::OneThread);
        const std::optional<double> two = secondsOf(row, Solver::TwoThreads);
        return one && two ? std::min(*one, *two) : one ? one : two;
    }

    static std::string line(const Row& row) {
        const std::optional<double> ours = best(row);
        std::ostringstream out;
        out << "| " << row.job.series << ", " << row.job.size << ", " << nameOf(row.job.operation) << " | "
            << row.trianglesIn << " | " << (row.trianglesOut != 0 ? std::to_string(row.trianglesOut) : "") << " | "
            << milliseconds(row, Solver::OneThread) << " | " << milliseconds(row, Solver::TwoThreads) << " | "
            << (ours ? rounded(*ours * 1e6 / static_cast<double>(row.trianglesOut)) : "") << " | "
            << milliseconds(row, Solver::Reference) << " | " << ratio(row, Solver::Reference) << " | "
            << milliseconds(row, Solver::Cgal) << " | " << ratio(row, Solver::Cgal) << " |";
        return out.str();
    }

    double limit_;
    bool allRight_ = true;
    std::vector<Row> rows_;
    std::map<std::tuple<std::string, Operation, Solver>, Before> before_;
};

int run(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: orva_bench MESHES TABLE PLOT-DATA [FILTER [SECONDS]]\n";
        return 2;
    }
    const std::string filter = argc > 4 ? argv[4] : "";
    Session session(argc > 5 ? std::atof(argv[5]) : 60);

    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char* flags[]{argv[0], interleave, nullptr};
    int flagCount = 2;
    benchmark::Initialize(&flagCount, flags);

    int measured = 0;
    for (const Job& job : allJobs(argv[1])) {
        if (job.name().find(filter) == std::string::npos) continue;
        session.measure(job);
        ++measured;
    }
    if (measured == 0) {
        std::cerr << "no job has '" << filter << "' in its name; there are\n";
        for (const Job& job : allJobs(argv[1])) std::cerr << "  " << job.name() << "\n";
        return 2;
    }
    std::ofstream table(argv[2]);
    session.writeTable(table);
    std::ofstream data(argv[3]);
    session.writePlotData(data);
    return session.allRight() && table.flush() && data.flush() ? 0 : 1;
}

} // namespace

} // namespace orva::bench

int main(int argc, char** argv) {
    try {
        return orva::bench::run(argc, argv);
    } catch (const std::exception& exception) {
        std::cerr << "orva_bench: " << exception.what() << "\n";
        return 1;
    }
}

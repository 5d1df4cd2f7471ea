// All jobs beside one another: the table and the data of the plot.
#pragma once

#include "measure.hpp"

#include <iosfwd>
#include <map>
#include <tuple>

namespace orva::bench {

class Table {
public:
    /// `limit`: the most seconds that one solution may take; the plain reading has a third of it.
    explicit Table(double limit) : limit_(limit) {}

    /// Measures a job and prints its line. Where a solver took too long for a smaller one of the series, it is not
    /// asked.
    void measure(const Job& job);

    void write(std::ostream& out) const;

    /// One block for each series and operation: triangles in, then the seconds of each solver.
    void writePlotData(std::ostream& out) const;

    bool allRight() const { return allRight_; }

private:
    struct Row {
        Job job;
        std::size_t trianglesIn = 0;
        std::map<Solver, Outcome> outcomes;
    };
    // How a solver fared with the job before in the same series.
    struct Before {
        double triangles = 0;
        double seconds = 0;
    };

    static const Outcome* solvedBy(const Row& row, Solver solver);
    static const Outcome* ours(const Row& row);
    static std::string milliseconds(const Row& row, Solver solver);
    static std::string nanosecondsPerTriangle(const Outcome* outcome);
    static std::string timesFaster(const Row& row, Solver than);
    static std::string line(const Row& row);

    double limit_;
    bool allRight_ = true;
    std::vector<Row> rows_;
    std::map<std::tuple<std::string, Operation, Solver>, Before> before_;
};

/// Two or three digits.
std::string rounded(double value);

/// Bytes taken at the height of a call over those of its input and output.
double memoryRatio(const Outcome& outcome, std::size_t trianglesIn);

std::size_t trianglesIn(const std::vector<Mesh>& meshes);

} // namespace orva::bench

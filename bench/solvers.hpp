// Who does a job: the plain reading, the library with one and two threads, CGAL.
#pragma once

#include "cases.hpp"

#include <array>
#include <cstdint>
#include <optional>

namespace orva::bench {

enum class Solver { Reference, OneThread, TwoThreads, Cgal };

inline constexpr std::array<Solver, 4> solvers{Solver::Reference, Solver::OneThread, Solver::TwoThreads, Solver::Cgal};

const char* nameOf(Solver solver);

/// False for jobs that a solver has no way to do: the parallel union has one only in the library, with two threads.
bool canDo(Solver solver, Operation operation);

/// What is known of one result and how it came about.
struct Solution {
    double seconds; ///< a call, by the clock
    double
        processor; ///< the seconds that the process was running meanwhile: with one thread the same on a busy machine
    double memory; ///< bytes that the process had taken at the height of its first call, less those before it
    std::uint64_t cuts; ///< polygons cut in two; the plain reading's only
    std::uint64_t triangles;
    std::uint64_t bits; ///< a hash
    double volume;
};

/// Solves it in a process of its own, with the clock running from triangle list to triangle list: once where that takes
/// long; otherwise again, with memory that is warm, and short jobs many times, for their mean. Throws as apart() does
/// where there is no result.
Solution solve(Solver solver, Operation operation, const std::vector<Mesh>& inputs, double limit);

/// Holds the results for one job against each other: the library's and the plain reading's are the same bit for bit
/// (except for the parallel union's), and all enclose the same volume.
class Check {
public:
    explicit Check(Operation operation) : operation_(operation) {}
    /// What is wrong, or nothing.
    std::optional<std::string> operator()(Solver solver, const Solution& solution);

private:
    Operation operation_;
    std::optional<std::uint64_t> bits_;
    std::optional<double> volume_;
};

} // namespace orva::bench

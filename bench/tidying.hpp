// What tidying makes of the soup of an operation, and what it takes.
#pragma once

#include "cases.hpp"
#include "orva/tidy.hpp"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace orva::bench {

/// A power of two that brings the longest side of the meshes near 1024: the unit that the operations with tidied
/// results start with.
double scaleOf(const std::vector<Mesh>& meshes);

/// The longest side of the box around a mesh.
double sizeOf(const Mesh& mesh);

/// By looking at nothing but the indices: no two corners of a face are equal, each directed edge occurs once, and once
/// in the opposite direction.
bool isClosedByIndex(const tidy::Solid& solid);

/// How far a vertex may have been moved, in the unit of the coordinates.
double movedAtMost(const tidy::Report& report);

/// One operation. Times are medians of processor times with one thread, in seconds.
struct Tidying {
    std::string job;
    std::string series;
    std::uint64_t trianglesIn = 0;
    std::uint64_t soup = 0;
    std::uint64_t tidied = 0;          ///< pieces and faces that were cut are one again
    std::uint64_t merged = 0;          ///< with all coplanar faces merged
    std::optional<std::uint64_t> cgal; ///< its triangles, where it has a result
    bool closed = false;
    double operation = 0.0;    ///< its time
    double withMarks = 0.0;    ///< time of tidySoup
    double withoutMarks = 0.0; ///< the same, when it has to find out which pieces belong together
    double memory = 0.0;       ///< at the height of tidySoup, beside soup and marks, over those
    double movedOfSize = 0.0;  ///< the most that a vertex was moved, over the size
    double inTolerances = 0.0; ///< the same in tolerances
};

/// Throws std::runtime_error where there is no result.
Tidying measureTidying(const Job& job);

/// The jobs that tidying is measured with: an operation of two each.
std::vector<Job> tidyingJobs(const std::string& meshes);

/// A line for each of them, as a table in Markdown.
void writeTidyingTable(std::ostream& out, const std::string& meshes);

} // namespace orva::bench

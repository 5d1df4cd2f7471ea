/// @file
/// What union, subtract and intersect say of their result.
#ifndef ORVA_PROGRAM_VERBS_BOOLEAN_SUMMARY_HPP
#define ORVA_PROGRAM_VERBS_BOOLEAN_SUMMARY_HPP

#include "mesh/model.hpp"
#include "report/report.hpp"
#include "verbs/boolean.hpp"

#include <optional>
#include <string>
#include <vector>

namespace orva::program {

struct Result {
    const Boolean::Mesh& first;
    const std::vector<Boolean::Mesh>& others;
    const Model& model;
    const std::optional<tidy::Report>& tidied; ///< without, the library's own result
    double seconds = 0.0;
};

/// The summary, and more members of the "output" in the report. With `measured`, volumes and whether the result closes
/// within the tolerance.
void summarize(const Boolean& boolean, const Result& result, bool measured, Report& report);

} // namespace orva::program

#endif

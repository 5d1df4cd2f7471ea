/// @file
/// A file of jobs, one JSON object a line: the command line's words as members.
///
///     {"id": "house", "verb": "subtract", "inputs": ["wall.off", "door.off"], "output": "house.off", "mode": "union"}
#ifndef ORVA_PROGRAM_VERBS_JOBS_HPP
#define ORVA_PROGRAM_VERBS_JOBS_HPP

#include "failure.hpp"
#include "verbs/command.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orva::program {

struct Job {
    std::size_t line = 0; ///< from 1
    Json id;              ///< the user's own, whatever it is; null if there is none
    Command command;
    std::vector<std::string> inputs;
    std::string output;             ///< empty for verbs that write no file
    std::optional<Failure> failure; ///< why it cannot even begin
};

/// The jobs of all lines that are not blank. `force` is as if every job said so. A line that is no job is one that has
/// failed; so is a job whose output an earlier one writes.
std::vector<Job> readJobs(std::string_view text, bool force);

/// Whether the job's output is there, and none of its inputs is newer.
bool isDone(const Job& job);

} // namespace orva::program

#endif

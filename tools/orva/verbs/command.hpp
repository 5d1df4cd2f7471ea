/// @file
/// A verb with its arguments, understood and ready to be carried out: by main once, by `batch` many times.
#ifndef ORVA_PROGRAM_VERBS_COMMAND_HPP
#define ORVA_PROGRAM_VERBS_COMMAND_HPP

#include "report/progress.hpp"
#include "report/report.hpp"

#include <functional>
#include <string>

namespace orva::program {

/// What a verb is given when it runs.
struct Run {
    Report report;
    Progress progress;
    int threads = 1; ///< how many the task scheduler may use for it
};

struct Command {
    std::string verb;
    Manner manner;
    int threads = 0;               ///< asked for; 0 is one for each processor
    std::function<void(Run&)> run; ///< throws Failure, and whatever the library throws
};

} // namespace orva::program

#endif

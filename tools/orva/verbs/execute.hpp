/// @file
/// Carries a command out.
#ifndef ORVA_PROGRAM_VERBS_EXECUTE_HPP
#define ORVA_PROGRAM_VERBS_EXECUTE_HPP

#include "verbs/command.hpp"

namespace orva::program {

/// As the whole work of this process: with the threads asked for, and its report printed. Gives the exit code.
int execute(const Command& command);

} // namespace orva::program

#endif

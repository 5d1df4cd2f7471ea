/// @file
/// Carries a command out.
#ifndef ORVA_PROGRAM_VERBS_EXECUTE_HPP
#define ORVA_PROGRAM_VERBS_EXECUTE_HPP

#include "verbs/command.hpp"

namespace orva::program {

/// As the whole work of this process: with the threads asked for, and its report printed. Gives the exit code.
int execute(const Command& command);

/// As one of many side by side, with at most so many threads. Nothing is printed. Throws what the command throws.
Report runBeside(const Command& command, int threads);

} // namespace orva::program

#endif

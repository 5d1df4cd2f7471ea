/// @file
/// From arguments to an exit code.
#ifndef ORVA_PROGRAM_VERBS_EXECUTE_HPP
#define ORVA_PROGRAM_VERBS_EXECUTE_HPP

#include "verbs/command.hpp"

#include <string>
#include <vector>

namespace orva::program {

/// The program: parses the arguments, which are those after its name, in UTF-8, carries out what they ask for, and
/// prints. Gives the exit code.
int run(const std::vector<std::string>& arguments);

/// Carries out a command as one of many side by side, with at most so many threads. Nothing is printed. Throws what the
/// command throws.
Report runBeside(const Command& command, int threads);

} // namespace orva::program

#endif

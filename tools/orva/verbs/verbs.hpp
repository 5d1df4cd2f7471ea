/// @file
/// The verbs. Each adds itself to the command line: its arguments, its help, and what it does.
#ifndef ORVA_PROGRAM_VERBS_VERBS_HPP
#define ORVA_PROGRAM_VERBS_VERBS_HPP

#include <CLI/CLI.hpp>

namespace orva::program {

void addUnion(CLI::App& app);
void addSubtract(CLI::App& app);
void addIntersect(CLI::App& app);
void addConvert(CLI::App& app);

} // namespace orva::program

#endif

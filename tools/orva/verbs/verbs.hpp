/// @file
/// The verbs. Each adds itself to the command line: its arguments, its help, and what it does.
#ifndef ORVA_PROGRAM_VERBS_VERBS_HPP
#define ORVA_PROGRAM_VERBS_VERBS_HPP

#include "verbs/command.hpp"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace orva::program {

void addUnion(CLI::App& app, Command& command);
void addSubtract(CLI::App& app, Command& command);
void addIntersect(CLI::App& app, Command& command);
void addTidy(CLI::App& app, Command& command);
void addCheck(CLI::App& app, Command& command);
void addConvert(CLI::App& app, Command& command);
void addRender(CLI::App& app, Command& command);
void addBatch(CLI::App& app, Command& command);
void addMan(CLI::App& app, Command& command);
void addCompletion(CLI::App& app, Command& command);

/// All of them. The one that is parsed leaves in `command` what there is to do.
void addVerbs(CLI::App& app, Command& command);

/// Parses the arguments, which are those after the program's name, in UTF-8. Throws Failure (Usage), and CLI::Success
/// for --help and --version.
void parse(CLI::App& app, std::vector<std::string> arguments);

} // namespace orva::program

#endif

/// @file
/// The command line described for other tools than --help, from the same parser: what these know is what is parsed.
#ifndef ORVA_PROGRAM_VERBS_INTERFACE_HPP
#define ORVA_PROGRAM_VERBS_INTERFACE_HPP

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace orva::program {

/// An option or an argument of a verb.
struct Word {
    std::vector<std::string> names; ///< "-o", "--output"; for an argument one, "BASE"
    bool isOption = false;
    bool takesValue = false;
    std::string valueName;           ///< "FILE", "X Y Z"; empty without a value
    std::vector<std::string> values; ///< if only certain ones are taken
    std::string description;
    bool required = false;
    bool many = false;
};

/// In the order of --help.
std::vector<Word> wordsOf(const CLI::App& verb);

/// Of the program, in the order of --help.
std::vector<const CLI::App*> verbsOf(const CLI::App& app);

/// The manual page, in roff.
std::string manPage(const CLI::App& app);

std::string bashCompletion(const CLI::App& app);
std::string zshCompletion(const CLI::App& app);

} // namespace orva::program

#endif

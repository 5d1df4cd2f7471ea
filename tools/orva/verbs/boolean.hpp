/// @file
/// What union, subtract and intersect have in common: meshes in, one out, a line about it.
#ifndef ORVA_PROGRAM_VERBS_BOOLEAN_HPP
#define ORVA_PROGRAM_VERBS_BOOLEAN_HPP

#include "verbs/options.hpp"

#include "orva/types.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace orva::program {

struct Boolean {
    using Mesh = types::Mesh<double>;

    std::string verb;
    std::string text;    ///< one line for the help
    std::string example; ///< whole commands
    std::string first = "A";
    std::string second = "B";
    bool emptyWhenApart = false; ///< whether nothing is left of meshes that do not meet
    std::function<void(Mesh& output, const Mesh& first, const std::vector<Mesh>& others, Run& run)> combine;
};

/// Gives the verb, for options of its own.
CLI::App* addBoolean(CLI::App& app, Command& command, const Boolean& boolean);

/// For `combine`, from an operation of two: ((first + others[0]) + others[1]) + ...
void combineInTurn(void (*operation)(Boolean::Mesh& output, const Boolean::Mesh& a, const Boolean::Mesh& b),
                   Boolean::Mesh& output, const Boolean::Mesh& first, const std::vector<Boolean::Mesh>& others,
                   Run& run);

} // namespace orva::program

#endif

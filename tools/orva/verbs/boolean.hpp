/// @file
/// What union, subtract and intersect have in common: meshes in, one out, a line about it.
#ifndef ORVA_PROGRAM_VERBS_BOOLEAN_HPP
#define ORVA_PROGRAM_VERBS_BOOLEAN_HPP

#include "verbs/options.hpp"

#include "orva/tidy.hpp"
#include "orva/types.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace orva::program {

struct Operands {
    using Mesh = types::Mesh<double>;

    Mesh first;
    std::vector<Mesh> others;
};

struct Boolean {
    using Mesh = Operands::Mesh;

    std::string verb;
    std::string text;    ///< one line for the help
    std::string example; ///< whole commands
    std::string first = "A";
    std::string second = "B";
    bool emptyWhenApart = false; ///< whether nothing is left of meshes that do not meet
    bool refusesEmpty = false;   ///< whether an empty mesh is an error, unless the user says that it may be left out

    /// With --raw: the library's own result.
    std::function<void(Mesh& output, const Operands& operands, Run& run)> combine;

    /// Otherwise. The operands are the same afterwards.
    std::function<tidy::Report(tidy::Solid& output, Operands& operands, const tidy::Options& options, Run& run)>
        combineTidied;
};

/// Gives the verb, for options of its own.
CLI::App* addBoolean(CLI::App& app, Command& command, const Boolean& boolean);

/// For `combine`, from an operation of two: ((first + others[0]) + others[1]) + ...
void combineInTurn(void (*operation)(Boolean::Mesh& output, const Boolean::Mesh& a, const Boolean::Mesh& b),
                   Boolean::Mesh& output, const Operands& operands, Run& run);

/// For `combineTidied`, from an operation of any number.
tidy::Report combineAll(tidy::Report (*operation)(tidy::Solid& output, const std::vector<Boolean::Mesh>& meshes,
                                                  const tidy::Options& options),
                        tidy::Solid& output, Operands& operands, const tidy::Options& options, Run& run);

} // namespace orva::program

#endif

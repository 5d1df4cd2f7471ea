/// @file
/// What union, subtract and intersect have in common: meshes in, one out, a line about it.
#ifndef ORVA_PROGRAM_VERBS_BOOLEAN_HPP
#define ORVA_PROGRAM_VERBS_BOOLEAN_HPP

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
    std::string example; ///< a whole command
    std::string first = "A";
    std::string second = "B";
    bool many = false; ///< whether any number of meshes may stand in the second place
    std::function<void(Mesh& output, const Mesh& first, const std::vector<Mesh>& others)> combine;
};

/// Gives the verb, for options of its own.
CLI::App* addBoolean(CLI::App& app, const Boolean& boolean);

} // namespace orva::program

#endif

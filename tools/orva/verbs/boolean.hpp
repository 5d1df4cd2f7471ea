/// @file
/// What union, subtract and intersect have in common: two meshes in, one out, a line about it.
#ifndef ORVA_PROGRAM_VERBS_BOOLEAN_HPP
#define ORVA_PROGRAM_VERBS_BOOLEAN_HPP

#include "orva/types.hpp"

#include <CLI/CLI.hpp>

#include <string>

namespace orva::program {

struct Boolean {
    std::string verb;
    std::string text;    ///< one line for the help
    std::string example; ///< a whole command
    void (*combine)(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b);
};

void addBoolean(CLI::App& app, const Boolean& boolean);

} // namespace orva::program

#endif

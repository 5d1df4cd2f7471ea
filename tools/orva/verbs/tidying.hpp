/// @file
/// Results that are fit for use: what the user may choose of that, and what is said of it.
#ifndef ORVA_PROGRAM_VERBS_TIDYING_HPP
#define ORVA_PROGRAM_VERBS_TIDYING_HPP

#include "mesh/model.hpp"
#include "verbs/options.hpp"

#include "orva/tidy.hpp"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace orva::program {

struct Tidying {
    std::string merge = "cut";
    double tolerance = 0.0; ///< 0: the library's choice
    double closeGaps = 0.0; ///< 0: none
};

/// --merge, --tolerance and --close-gaps. Gives the options, for another that excludes them.
std::vector<CLI::Option*> addTidying(CLI::App& verb, Tidying& tidying);

tidy::Options optionsOf(const Tidying& tidying);

/// The solid as a model, with its indices. Without normals of its own, those of its triangles; without texture
/// coordinates, none. The solid is then spent, but for its origins.
Model modelOf(tidy::Solid& solid, bool hasNormals, bool hasTexture);

/// A result that does not close is a warning, or throws Failure (Unfit) if it is to be strict.
void requireClosed(const std::string& file, const tidy::Report& tidied, bool strict, Report& report);

/// For the summary, behind the number of triangles: " in 2 pieces, closed". Empty for no triangles.
std::string textOf(const tidy::Report& tidied);

/// For --json.
Json jsonOf(const tidy::Report& tidied);

} // namespace orva::program

#endif

/// @file
/// Meshes in and out of a verb, as its options say: formats, streams, warnings, what --json tells of them.
#ifndef ORVA_PROGRAM_VERBS_MESHES_HPP
#define ORVA_PROGRAM_VERBS_MESHES_HPP

#include "formats/format.hpp"
#include "verbs/options.hpp"

#include <string>
#include <vector>

namespace orva::program {

struct Input {
    std::string file; ///< as the user gave it; - is stdin
    const Format* format = nullptr;
};

struct Output {
    OutputFile file;
    const Format* format = nullptr;
    WriteOptions options;
};

/// All that can be wrong with the names shows here, before the first file is read. Throws Failure (Usage).
std::vector<Input> inputsOf(const std::vector<std::string>& files, const std::string& from);

/// The same for the output. Throws Failure (Usage, CannotWrite).
Output outputOf(const CommonOptions& options, Report& report);

/// Throws Failure (CannotRead).
Model readInput(const Input& input, Run& run);

/// Reads them all and adds "inputs" to the report. Throws Failure (CannotRead).
std::vector<Model> readInputs(const std::vector<Input>& inputs, Run& run);

/// Warns of one that is no good for a boolean, which may take meshes of any size. Throws Failure (Unfit) instead if it
/// is to be strict.
void checkFitness(const Input& input, const Model& model, bool anySize, bool strict, Report& report);

/// Writes it and adds "output" to the report, to which more may be added then. Throws Failure (CannotWrite).
void writeOutput(const Output& output, const Model& model, Run& run);

} // namespace orva::program

#endif

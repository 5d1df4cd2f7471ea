/// @file
/// The options that several verbs share. A verb adds those that it reads, and no other.
///
///     const auto options = std::make_shared<Options>(); // the verb's own record, with `CommonOptions common` in it
///     CLI::App* verb = app.add_subcommand("check", "...");
///     addReporting(*verb, options->common, "");
///     setRun(*verb, command, options, check);           // void check(const Options&, Run&)
#ifndef ORVA_PROGRAM_VERBS_OPTIONS_HPP
#define ORVA_PROGRAM_VERBS_OPTIONS_HPP

#include "verbs/command.hpp"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>

namespace orva::program {

struct CommonOptions {
    std::string output;
    bool force = false;
    std::string from;             ///< the name of a format; empty for what the extensions say
    std::string to;               ///< the same of the output
    std::optional<int> precision; ///< significant digits
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    int threads = 0; ///< 0: one for each processor
    bool strict = false;
    bool keepFaces = false;
};

/// -o FILE (required) and --force.
void addOutput(CLI::App& verb, CommonOptions& options);

/// --from.
void addFrom(CLI::App& verb, CommonOptions& options);

/// --to and --precision, for verbs whose output is a mesh.
void addTo(CLI::App& verb, CommonOptions& options);

/// -q and --json; -v too if there is a text that says what it adds.
void addReporting(CLI::App& verb, CommonOptions& options, const std::string& verboseText);

void addThreads(CLI::App& verb, CommonOptions& options);
void addStrict(CLI::App& verb, CommonOptions& options);
void addKeepFaces(CLI::App& verb, CommonOptions& options);

/// For an option whose value is a length or a factor: what is wrong with it, if anything.
std::string mustBeAboveZero(const std::string& value);

/// The command for these options.
Command commandOf(const std::string& verb, const CommonOptions& options, std::function<void(Run&)> run);

/// When the verb has been parsed, `command` is `run` with these options, which live as long as the verb does.
template <typename Options>
void setRun(CLI::App& verb, Command& command, const std::shared_ptr<Options>& options,
            void (*run)(const Options&, Run&)) {
    verb.callback([&verb, &command, options, run] {
        command = commandOf(verb.get_name(), options->common, [options, run](Run& state) { run(*options, state); });
    });
}

} // namespace orva::program

#endif

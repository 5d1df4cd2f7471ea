/// @file
/// What a run of the program has to say, and how it says it: data on stdout, everything else on stderr.
///
/// A verb fills in the record; whoever started the verb prints it when it has ended.
#ifndef ORVA_PROGRAM_REPORT_REPORT_HPP
#define ORVA_PROGRAM_REPORT_REPORT_HPP

#include "failure.hpp"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace orva::program {

using Json = nlohmann::ordered_json; // members stay in the order in which they were added

/// The version of all that --json prints. Another number when a member goes or means something else; new members are
/// no reason.
inline constexpr const char* JSON_SCHEMA = "orva/1";

struct Report {
    Json members = Json::object();     ///< for --json: the verb's own members, "inputs" and "output" for instance
    std::vector<std::string> warnings; ///< "FILE: what was noticed; what to do" each
    std::vector<std::string> errors;   ///< what failed without ending the run, with --quiet, too
    std::string summary;               ///< a line on stderr, unless --quiet
    std::string text;                  ///< lines for stdout, unless --json
    ExitCode code = ExitCode::Done;    ///< other than Done for what is a result and no failure: an unfit mesh
    double seconds = 0.0;              ///< the whole run, reading and writing included
};

/// How much of it is printed.
struct Manner {
    bool quiet = false; ///< nothing on stderr but errors
    bool json = false;  ///< one JSON object on stdout
};

/// {the verb's own members, "warnings", "seconds"}.
Json membersOf(const Report& report);

/// {"code", "name", "message"}.
Json jsonOf(const Failure& failure);

/// One line without its end. Always valid UTF-8: bytes of file names that are none become U+FFFD.
std::string lineOf(const Json& json);

/// Text on stdout, at once. Throws Failure (CannotWrite): data that did not arrive is no success.
void printData(const std::string& text);

/// The end of a run that did what it should. Gives the exit code.
int print(const std::string& verb, const Report& report, const Manner& manner);

/// The end of one that failed; called in a catch block. The report is what was known until then. Gives the exit code.
int printFailure(const std::string& verb, const Report& report, const Manner& manner);

} // namespace orva::program

#endif

#include "verbs/options.hpp"

#include "formats/format.hpp"

#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace orva::program {

namespace {

CLI::IsMember isFormat() {
    std::vector<std::string> names;
    std::string name;
    for (const char c : namesOfFormats() + ",") {
        if (c == ',') {
            names.push_back(std::exchange(name, {}));
        } else if (c != ' ') {
            name += c;
        }
    }
    return CLI::IsMember(names);
}

} // namespace

void addOutput(CLI::App& verb, CommonOptions& options) {
    verb.add_option("-o,--output", options.output, "file for the result; - is stdout")->required()->type_name("FILE");
    verb.add_flag("--force", options.force, "replace the output file if it exists");
}

void addFrom(CLI::App& verb, CommonOptions& options) {
    verb.add_option("--from", options.from,
                    "format of what comes from stdin (-); without that, of every input, whatever its extension")
        ->check(isFormat())
        ->type_name("FORMAT");
}

void addTo(CLI::App& verb, CommonOptions& options) {
    verb.add_option("--to", options.to, "format of the output, whatever its extension")
        ->check(isFormat())
        ->type_name("FORMAT");
    verb.add_option("--precision", options.precision,
                    "significant digits in text formats; without, as many as give the same number again")
        ->check(CLI::Range(1, 17))
        ->type_name("DIGITS");
}

void addReporting(CLI::App& verb, CommonOptions& options, const std::string& verboseText) {
    CLI::Option* quiet = verb.add_flag("-q,--quiet", options.quiet, "nothing on stderr but errors");
    if (!verboseText.empty()) verb.add_flag("-v,--verbose", options.verbose, verboseText)->excludes(quiet);
    verb.add_flag("--json", options.json, "one JSON object about the run on stdout");
}

void addThreads(CLI::App& verb, CommonOptions& options) {
    verb.add_option("--threads", options.threads, "how many threads to use; without, one for each processor")
        ->check(CLI::Range(1, 1024))
        ->type_name("N");
}

void addStrict(CLI::App& verb, CommonOptions& options) {
    verb.add_flag("--strict", options.strict,
                  "a mesh that is unfit for a boolean, or a result that is not closed, is an error, not a warning");
}

void addKeepFaces(CLI::App& verb, CommonOptions& options) {
    verb.add_flag("--keep-faces", options.keepFaces,
                  "tell for every triangle of the result which input and which of its faces it came from");
}

std::string mustBeAboveZero(const std::string& value) {
    const double number = std::strtod(value.c_str(), nullptr);
    return number > 0.0 && std::isfinite(number) ? std::string() : value + " is not a number above 0";
}

Command commandOf(const std::string& verb, const CommonOptions& options, std::function<void(Run&)> run) {
    return {verb, {options.quiet, options.json}, options.threads, std::move(run)};
}

} // namespace orva::program

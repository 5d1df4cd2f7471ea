#include "report/report.hpp"

#include <cstdio>

namespace orva::program {

namespace {

void printWarnings(const Report& report, const Manner& manner) {
    if (manner.quiet) return;
    for (const std::string& warning : report.warnings) std::fprintf(stderr, "orva: warning: %s\n", warning.c_str());
}

Json resultJson(const std::string& verb, const Report& report) {
    Json json{{"schema", JSON_SCHEMA}, {"verb", verb}};
    json.update(membersOf(report));
    return json;
}

Json failureJson(const std::string& verb, const Report& report, const Failure& failure) {
    Json json{{"schema", JSON_SCHEMA}};
    if (!verb.empty()) json["verb"] = verb;
    json["error"] = jsonOf(failure);
    json["warnings"] = report.warnings;
    return json;
}

} // namespace

Json membersOf(const Report& report) {
    Json json = report.members;
    json["warnings"] = report.warnings;
    json["seconds"] = report.seconds;
    return json;
}

Json jsonOf(const Failure& failure) {
    return {{"code", static_cast<int>(failure.code)}, {"name", nameOf(failure.code)}, {"message", failure.what()}};
}

std::string lineOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void printData(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (std::fflush(stdout) != 0) throw Failure(ExitCode::CannotWrite, "stdout: writing failed; check where it leads");
}

int print(const std::string& verb, const Report& report, const Manner& manner) {
    printWarnings(report, manner);
    for (const std::string& error : report.errors) std::fprintf(stderr, "orva: %s\n", error.c_str());
    printData(manner.json ? lineOf(resultJson(verb, report)) + "\n" : report.text);
    if (!manner.quiet && !report.summary.empty()) std::fprintf(stderr, "orva: %s\n", report.summary.c_str());
    return static_cast<int>(report.code);
}

int printFailure(const std::string& verb, const Report& report, const Manner& manner) {
    printWarnings(report, manner);
    const int code = reportException();
    if (!manner.json) return code;
    try {
        printData(lineOf(failureJson(verb, report, describeException())) + "\n");
    } catch (...) { // note: no memory, or nobody there to read it; the line on stderr and the exit code stand
    }
    return code;
}

} // namespace orva::program

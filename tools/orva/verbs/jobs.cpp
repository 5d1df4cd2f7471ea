#include "verbs/jobs.hpp"

#include "files/name.hpp"
#include "verbs/verbs.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <utility>

namespace orva::program {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& what) {
    throw Failure(ExitCode::Usage, what);
}

std::string stringOf(const Json& value, const std::string& key) {
    if (!value.is_string()) refuse("\"" + key + "\" must be a string");
    const auto text = value.get<std::string>();
    if (isStream(text)) refuse("\"" + key + "\": jobs run side by side and cannot share a stream; name a file");
    return text;
}

std::vector<std::string> filesOf(const Json& object) {
    const auto found = object.find("inputs");
    if (found == object.end() || !found->is_array()) refuse("\"inputs\" must be an array of file names");
    std::vector<std::string> inputs;
    for (const Json& input : *found) inputs.push_back(stringOf(input, "inputs"));
    return inputs;
}

// A value of an option, as it would stand on the command line.
std::string wordOf(const Json& value, const std::string& key) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_number()) return value.dump();
    refuse("\"" + key + "\" must be " + "a string or a number");
}

// One member as words of the command line.
void addOption(const CLI::App& verb, const std::string& key, const Json& value, std::vector<std::string>& words) {
    const std::string name = "--" + key;
    const CLI::Option* option = verb.get_option_no_throw(name);
    const bool ofTheRun = key == "help" || key == "json" || key == "quiet"; // these say how to print, which batch does
    if (option == nullptr || ofTheRun) refuse("unknown key \"" + key + "\"; see orva " + verb.get_name() + " --help");
    if (option->get_items_expected_max() == 0) {
        if (!value.is_boolean()) refuse("\"" + key + "\" must be true or false");
        if (value.get<bool>()) words.push_back(name);
    } else if (value.is_array()) {
        words.push_back(name);
        for (const Json& item : value) words.push_back(wordOf(item, key));
    } else {
        words.push_back(name + "=" + wordOf(value, key));
    }
}

const CLI::App& verbOf(const CLI::App& app, const Json& object) {
    const auto found = object.find("verb");
    if (found == object.end()) refuse("\"verb\" is missing");
    const std::string name = stringOf(*found, "verb");
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; })) {
        const bool reports = verb->get_option_no_throw("--json") != nullptr; // the others have nothing to tell a script
        if (reports && verb->get_name() == name) return *verb;
    }
    refuse("no job can have the verb \"" + name + "\"");
}

void understand(const Json& object, bool force, Job& job) {
    if (!object.is_object()) refuse("a job is a JSON object, {...}");
    if (object.contains("id")) job.id = object["id"];

    CLI::App app;
    addVerbs(app, job.command);
    const CLI::App& verb = verbOf(app, object);
    job.command.verb = verb.get_name();
    job.inputs = filesOf(object);
    std::vector<std::string> words{verb.get_name()};
    for (const auto& [key, value] : object.items()) {
        if (key == "id" || key == "verb" || key == "inputs") continue;
        if (key == "output") job.output = stringOf(value, key);
        addOption(verb, key, value, words);
    }
    if (force && verb.get_option_no_throw("--force") != nullptr) words.emplace_back("--force");
    words.emplace_back("--");
    words.insert(words.end(), job.inputs.begin(), job.inputs.end());
    parse(app, std::move(words));
}

Job readJob(std::string_view text, std::size_t line, bool force) {
    Job job;
    job.line = line;
    try {
        understand(Json::parse(text), force, job);
    } catch (const Json::parse_error& error) {
        job.failure.emplace(ExitCode::Usage, "not JSON, at byte " + std::to_string(error.byte) + " of the line");
    } catch (const Failure& failure) {
        job.failure = failure;
    }
    return job;
}

// The second of two jobs that write the same file would replace the first one's work, or not, as luck has it.
void refuseSharedOutputs(std::vector<Job>& jobs) {
    std::map<fs::path, std::size_t> lines;
    for (Job& job : jobs) {
        if (job.failure || job.output.empty()) continue;
        std::error_code error;
        fs::path path = fs::weakly_canonical(pathOf(job.output), error);
        if (error) path = fs::absolute(pathOf(job.output)).lexically_normal();
        const auto [entry, isNew] = lines.emplace(path, job.line);
        if (isNew) continue;
        job.failure.emplace(ExitCode::Usage, job.output + ": line " + std::to_string(entry->second) +
                                                 " writes this file, too; give one of them another name");
    }
}

} // namespace

std::vector<Job> readJobs(std::string_view text, bool force) {
    std::vector<Job> jobs;
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    for (std::size_t line = 1; !text.empty(); ++line) {
        const std::string_view whole = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), whole.size() + 1));
        if (whole.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        jobs.push_back(readJob(whole, line, force));
    }
    refuseSharedOutputs(jobs);
    return jobs;
}

bool isDone(const Job& job) {
    if (job.output.empty()) return false;
    std::error_code error;
    const fs::file_time_type done = fs::last_write_time(pathOf(job.output), error);
    if (error) return false;
    return std::all_of(job.inputs.begin(), job.inputs.end(), [&](const std::string& input) {
        const fs::file_time_type changed = fs::last_write_time(pathOf(input), error);
        return !error && changed <= done;
    });
}

} // namespace orva::program

#include "failure.hpp"
#include "files/input.hpp"
#include "report/terminal.hpp"
#include "verbs/execute.hpp"
#include "verbs/jobs.hpp"
#include "verbs/options.hpp"
#include "verbs/verbs.hpp"

#include <tbb/info.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orva::program {

namespace {

struct BatchOptions {
    CommonOptions common;
    std::string jobs;
    int sideBySide = 0; // 0: one for each processor
    bool resume = false;
};

enum class Status { Done, Failed, Skipped };

const char* nameOf(Status status) {
    return status == Status::Done ? "done" : status == Status::Failed ? "failed" : "skipped";
}

// All jobs, and what has become of them.
class Batch {
public:
    Batch(std::vector<Job> allJobs, const BatchOptions& allOptions, Run& wholeRun)
        : jobs(std::move(allJobs)), options(allOptions), run(wholeRun), codes(jobs.size(), ExitCode::Done) {}

    void runAll();
    void summarize() const;

private:
    void work();
    void runOne(std::size_t index);
    void record(std::size_t index, Status status, Json members, const Failure* failure);

    const std::vector<Job> jobs;
    const BatchOptions& options;
    Run& run;
    std::atomic<std::size_t> next{0};

    std::mutex busy; // held while one of the members below is in use
    std::vector<ExitCode> codes;
    std::size_t counts[3] = {0, 0, 0};
    std::exception_ptr end; // why there will be no more results
};

void Batch::runAll() {
    run.progress.show("running jobs", 0, jobs.size());
    const int wanted = options.sideBySide > 0 ? options.sideBySide : tbb::info::default_concurrency();
    std::vector<std::thread> workers;
    for (std::size_t i = 1; i < std::min(jobs.size(), static_cast<std::size_t>(wanted)); ++i) {
        try {
            workers.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            break; // fewer do as well
        }
    }
    work();
    for (std::thread& worker : workers) worker.join();
    if (end) std::rethrow_exception(end);
}

void Batch::work() {
    for (std::size_t index = next++; index < jobs.size(); index = next++) {
        try {
            runOne(index);
        } catch (...) { // not the job failed, but telling of it
            const std::lock_guard lock(busy);
            end = std::current_exception();
            next = jobs.size();
        }
    }
}

void Batch::runOne(std::size_t index) {
    const Job& job = jobs[index];
    if (job.failure) return record(index, Status::Failed, Json::object(), &*job.failure);
    if (options.resume && isDone(job)) return record(index, Status::Skipped, Json::object(), nullptr);
    Report report;
    std::optional<Failure> failure;
    try {
        report = runBeside(job.command, run.threads);
        if (report.code != ExitCode::Done) {
            failure.emplace(report.code, report.errors.empty() ? "unfit; \"inputs\" say why" : report.errors.front());
        }
    } catch (...) {
        failure = describeException();
    }
    record(index, failure ? Status::Failed : Status::Done, membersOf(report), failure ? &*failure : nullptr);
}

void Batch::record(std::size_t index, Status status, Json members, const Failure* failure) {
    const Job& job = jobs[index];
    Json json{{"schema", JSON_SCHEMA}, {"line", job.line}, {"id", job.id}, {"status", nameOf(status)}};
    if (!job.command.verb.empty()) json["verb"] = job.command.verb;
    if (failure != nullptr) json["error"] = jsonOf(*failure);
    json.update(members);
    const std::string line = lineOf(json) + "\n";

    const std::lock_guard lock(busy);
    if (failure != nullptr) codes[index] = failure->code;
    ++counts[static_cast<std::size_t>(status)];
    const std::size_t failed = counts[static_cast<std::size_t>(Status::Failed)];
    run.progress.show(failed == 0 ? "running jobs" : "running jobs, " + std::to_string(failed) + " failed",
                      counts[0] + counts[1] + counts[2], jobs.size());
    printPastLine([&] {
        if (failure != nullptr) {
            std::fprintf(stderr, "orva: %s: line %zu: %s\n", options.jobs.c_str(), job.line, failure->what());
        }
        printData(line);
    });
}

void Batch::summarize() const {
    run.report.summary = "batch: " + std::to_string(jobs.size()) + " jobs, " + std::to_string(counts[0]) + " done, " +
                         std::to_string(counts[1]) + " failed, " + std::to_string(counts[2]) + " skipped";
    const auto failed = std::find_if(codes.begin(), codes.end(), [](ExitCode code) { return code != ExitCode::Done; });
    if (failed != codes.end()) run.report.code = *failed;
}

void runBatch(const BatchOptions& options, Run& run) {
    run.progress.show("reading " + options.jobs);
    Batch batch(readJobs(readFile(options.jobs), options.common.force), options, run);
    batch.runAll();
    batch.summarize();
}

} // namespace

void addBatch(CLI::App& app, Command& command) {
    const auto options = std::make_shared<BatchOptions>(); // lives as long as the callback below
    CLI::App* verb = app.add_subcommand("batch", "Many jobs side by side, one JSON object a line.");
    verb->add_option("JOBS", options->jobs, "file with a job on each line; - is stdin")->required()->type_name("FILE");
    verb->add_option("-j,--jobs", options->sideBySide, "how many at a time; without, one for each processor")
        ->check(CLI::Range(1, 1024))
        ->type_name("N");
    verb->add_flag("--resume", options->resume, "skip jobs whose output is there and older than none of their inputs");
    verb->add_flag("--force", options->common.force, "replace output files that exist, in every job");
    addThreads(*verb, options->common);
    verb->add_flag("-q,--quiet", options->common.quiet, "nothing on stderr but errors");
    verb->footer(
        "Example:\n  orva batch jobs.jsonl -j 4 > results.jsonl\n\n"
        "A job: {\"id\": 1, \"verb\": \"subtract\", \"inputs\": [\"wall.off\", \"door.off\"], "
        "\"output\": \"house.off\", \"mode\": \"union\"}\n"
        "Its other members are the verb's long options. File names are relative to the current folder. A job "
        "that fails stops no other; its result says why. The exit code is that of the first line that failed.");
    setRun(*verb, command, options, runBatch);
}

} // namespace orva::program

// Speed, beside the plain reading of the same algorithm and beside CGAL; bench/run calls it.
//
//     orva_bench goals MESHES [tidy]
//     orva_bench table MESHES TABLE PLOT-DATA FILTER SECONDS
//     orva_bench tidying MESHES TABLE
//
// goals: what the library has to reach, measured and judged; the exit code is 0 where all of it is reached; tidy is
// what tidied results have to reach, alone. table: all jobs whose name contains FILTER; SECONDS is the most that a
// solver may take for one. tidying: what tidying makes of the results and what it takes.
#include "goals.hpp"
#include "score.hpp"
#include "table.hpp"
#include "tidy_goals.hpp"
#include "tidying.hpp"

#include <charconv>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace orva::bench {

namespace {

// An error in how it was called.
struct WrongCall : std::runtime_error {
    using std::runtime_error::runtime_error;
};

double secondsFrom(const std::string& text) {
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size() || !(seconds >= 1 && seconds <= 86400)) {
        throw WrongCall("seconds are a number from 1 to 86400, not '" + text + "'");
    }
    return seconds;
}

bool writeTable(const std::string& meshes, const char* tableFile, const char* plotFile, const std::string& filter,
                double limit) {
    std::vector<Job> jobs;
    std::string series;
    for (const Job& job : allJobs(meshes)) {
        if (job.name().find(filter) != std::string::npos) jobs.push_back(job);
        if (series.find(job.series + "/") == std::string::npos) series += " " + job.series + "/";
    }
    if (jobs.empty()) throw WrongCall("no job has '" + filter + "' in its name; they begin with" + series);

    Table table(limit);
    for (const Job& job : jobs) table.measure(job);
    std::ofstream tableStream(tableFile);
    table.write(tableStream);
    std::ofstream plotStream(plotFile);
    table.writePlotData(plotStream);
    if (!tableStream.flush() || !plotStream.flush()) throw std::runtime_error("the table could not be written");
    return table.allRight();
}

bool writeTidying(const std::string& meshes, const std::string& tableFile) {
    std::ofstream stream(tableFile);
    writeTidyingTable(stream, meshes);
    if (!stream.flush()) throw std::runtime_error("the table could not be written");
    return true;
}

bool goalsReached(const std::string& meshes, bool tidyOnly) {
    Score score;
    if (!tidyOnly) judgeGoals(score, meshes);
    judgeTidyGoals(score, meshes);
    return score.sumUp();
}

bool run(const std::vector<std::string>& words) {
    if (words.size() == 2 && words[0] == "goals") return goalsReached(words[1], false);
    if (words.size() == 3 && words[0] == "goals" && words[2] == "tidy") return goalsReached(words[1], true);
    if (words.size() == 3 && words[0] == "tidying") return writeTidying(words[1], words[2]);
    if (words.size() == 6 && words[0] == "table") {
        return writeTable(words[1], words[2].c_str(), words[3].c_str(), words[4], secondsFrom(words[5]));
    }
    throw WrongCall("usage: orva_bench goals MESHES [tidy] | orva_bench tidying MESHES TABLE | orva_bench table MESHES "
                    "TABLE PLOT-DATA FILTER SECONDS");
}

} // namespace

} // namespace orva::bench

int main(int argc, char** argv) {
    try {
        return orva::bench::run({argv + 1, argv + argc}) ? 0 : 1;
    } catch (const orva::bench::WrongCall& wrong) {
        std::cerr << "orva_bench: " << wrong.what() << "\n";
        return 2;
    } catch (const std::exception& exception) {
        std::cerr << "orva_bench: " << exception.what() << "\n";
        return 1;
    }
}

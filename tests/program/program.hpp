// The program as a child process, and a folder of its own for each test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace orva::program {

struct Outcome {
    int exitCode = -1;
    std::string output; ///< stdout; lines end in \n on every platform
    std::string errors; ///< stderr
    std::string bytes;  ///< stdout as it is
};

// A run that has begun.
struct Process {
    std::intptr_t id = 0; // a process number, or a handle on Windows
    unsigned long group = 0;

    // As Ctrl-C does it. Whether that can be done: wine gives a process without a window no console to do it with.
    bool interrupt() const;
#ifndef _WIN32
    void send(int signal) const;
#endif
    int wait() const;
};

class ProgramTest : public testing::Test {
protected:
    ProgramTest();
    ~ProgramTest() override;

    // The name, in UTF-8, of a file in the test's folder.
    std::string file(const std::string& name) const;
    // The same, with that content.
    std::string file(const std::string& name, const std::string& content) const;

    static std::string contentOf(const std::string& file);

    // The names in the test's folder, sorted.
    std::vector<std::string> files() const;

    // Runs the program.
    Outcome orva(const std::vector<std::string>& arguments) const;

    // The same with that on stdin.
    Outcome orvaReading(const std::string& input, const std::vector<std::string>& arguments) const;

    // The same; `meanwhile` is called when the program has been started.
    Outcome orvaWhile(const std::vector<std::string>& arguments,
                      const std::function<void(const Process&)>& meanwhile) const;

#ifndef _WIN32
    // Runs the program by /bin/sh after `preparation`, which sets limits.
    Outcome orvaAfter(const std::string& preparation, const std::vector<std::string>& arguments,
                      const std::function<void(const Process&)>& meanwhile = {}) const;
#endif

    static const std::string& programFile();

private:
    std::filesystem::path folder;
    std::filesystem::path streams; // where stdout and stderr go
};

// The run failed with that code and that one line, which stands here without "orva: ".
void expectFailure(const Outcome& run, int exitCode, const std::string& line);

} // namespace orva::program

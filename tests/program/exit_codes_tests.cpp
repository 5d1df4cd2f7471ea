// Exit codes, and the line for what is nobody's mistake.
#include "failure.hpp"
#include "program.hpp"

#include <new>
#include <stdexcept>

namespace orva::program {
namespace {

template <typename Exception> std::pair<int, std::string> reportOf(const Exception& exception) {
    testing::internal::CaptureStderr();
    int code = -1;
    try {
        throw exception;
    } catch (...) {
        code = reportException();
    }
    return {code, testing::internal::GetCapturedStderr()};
}

using Report = std::pair<int, std::string>;

TEST(ExitCodes, OfEachException) {
    EXPECT_EQ(reportOf(Failure(ExitCode::CannotWrite, "a.off: full; empty it")),
              Report(6, "orva: a.off: full; empty it\n"));
    EXPECT_EQ(reportOf(std::bad_alloc()),
              Report(5, "orva: out of memory; use simpler meshes or a machine with more memory\n"));
    EXPECT_EQ(reportOf(std::length_error("vector too long")),
              Report(5, "orva: more triangles than can be counted; use simpler meshes\n"));
    EXPECT_EQ(reportOf(std::logic_error("odd")), Report(1, "orva: internal error: odd; please report it\n"));
    EXPECT_EQ(reportOf(7), Report(1, "orva: internal error of an unknown kind; please report it\n"));
}

#ifndef _WIN32

// Sanitizers take address space without limit.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
constexpr bool sanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool sanitized = false;
#endif

class LittleMemory : public ProgramTest {
protected:
    void SetUp() override {
        if (sanitized) GTEST_SKIP() << "a sanitizer needs more";
    }
    const std::string limit = "ulimit -v 300000"; // KiB
};

TEST_F(LittleMemory, NotEnough) {
    std::string text = "OFF 1 1 0 0 0 0 3000000";
    for (int i = 0; i < 3000000; ++i) text += " 0";
    expectFailure(orvaAfter(limit, {"convert", file("many.off", text), "-o", file("out.stl")}), 5,
                  "out of memory; use simpler meshes or a machine with more memory");
    EXPECT_EQ(files(), std::vector<std::string>{"many.off"});
}

TEST_F(LittleMemory, FailsThatJobAlone) {
    std::string text = "OFF 1 1 0 0 0 0 3000000";
    for (int i = 0; i < 3000000; ++i) text += " 0";
    file("many.off", text);
    file("one.off", "OFF 3 1 0  0 0 0  1 0 0  0 1 0  3 0 1 2");
    const auto job = [this](const std::string& input, const std::string& output) {
        return "{\"verb\": \"convert\", \"inputs\": [\"" + file(input) + "\"], \"output\": \"" + file(output) + "\"}\n";
    };
    const std::string jobs = file("jobs.jsonl", job("many.off", "a.stl") + job("one.off", "b.stl"));
    const Outcome run = orvaAfter(limit, {"batch", jobs, "-j", "1"});
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_NE(run.errors.find(": line 1: out of memory; "), std::string::npos) << run.errors;
    EXPECT_NE(run.output.find("\"name\":\"out of memory\""), std::string::npos) << run.output;
    EXPECT_EQ(files(), (std::vector<std::string>{"b.stl", "jobs.jsonl", "many.off", "one.off"}));
}

TEST_F(LittleMemory, ToldInJson) {
    std::string text = "OFF 1 1 0 0 0 0 3000000";
    for (int i = 0; i < 3000000; ++i) text += " 0";
    const Outcome run = orvaAfter(limit, {"convert", file("many.off", text), "-o", file("out.stl"), "--json"});
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_NE(run.output.find("\"error\":{\"code\":5,\"name\":\"out of memory\""), std::string::npos) << run.output;
}

TEST_F(LittleMemory, IsEnoughForFilesThatLieAboutTheirSize) {
    const std::string off = file("lie.off", "OFF\n4000000000 4000000000 0\n0 0 0\n");
    const std::string stl = file("lie.stl", std::string(80, '\0') + "\xff\xff\xff\xff");
    EXPECT_EQ(orvaAfter(limit, {"convert", off, "-o", file("out.stl")}).exitCode, 3);
    EXPECT_EQ(orvaAfter(limit, {"convert", stl, "-o", file("out.stl")}).exitCode, 3);
}

#endif

} // namespace
} // namespace orva::program

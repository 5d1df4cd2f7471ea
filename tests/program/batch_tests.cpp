// batch: many jobs, one line each.
#include "files/name.hpp"
#include "formats/off.hpp"
#include "measures/volume.hpp"
#include "program.hpp"
#include "report/report.hpp"
#include "samples.hpp"

#include <algorithm>
#include <chrono>
#include <sstream>

namespace orva::program {
namespace {

namespace fs = std::filesystem;

class Jobs : public ProgramTest {
protected:
    const std::string a = file("a.off", boxFile({0, 0, 0}, {2, 2, 2}));
    const std::string b = file("b.off", boxFile({1, 1, 1}, {3, 3, 3}));
    const std::string out = file("out.off");
    const std::string jobs = file("jobs.jsonl");

    static std::string job(const std::string& verb, const std::vector<std::string>& inputs, const std::string& output,
                           const Json& more = Json::object()) {
        Json object{{"verb", verb}, {"inputs", inputs}, {"output", output}};
        object.update(more);
        return lineOf(object) + "\n";
    }

    // The results in the order of their lines.
    static std::vector<Json> results(const Outcome& run) {
        std::vector<Json> found;
        std::istringstream lines(run.output);
        for (std::string line; std::getline(lines, line);) found.push_back(Json::parse(line));
        std::sort(found.begin(), found.end(), [](const Json& x, const Json& y) { return x["line"] < y["line"]; });
        return found;
    }

    Outcome batch(const std::string& text, std::vector<std::string> more = {}) const {
        file("jobs.jsonl", text);
        more.insert(more.begin(), {"batch", jobs});
        return orva(more);
    }

    // The only job failed with that.
    void expectRefused(const std::string& line, int code, const std::string& message) const {
        const Outcome run = batch(line);
        EXPECT_EQ(run.exitCode, code) << line;
        const std::vector<Json> found = results(run);
        ASSERT_EQ(found.size(), 1U) << line;
        EXPECT_EQ(found[0]["status"], "failed");
        EXPECT_EQ(found[0]["error"]["code"], code);
        EXPECT_EQ(found[0]["error"]["message"], message);
        EXPECT_TRUE(run.errors.starts_with("orva: " + jobs + ": line 1: " + message + "\n")) << run.errors;
    }
};

TEST_F(Jobs, AllAreDone) {
    const std::string other = file("other.off");
    const Outcome run =
        batch(job("union", {a, b}, out, {{"id", "first"}}) + "\r\n  \n" +
              job("subtract", {a, b}, other, {{"mode", "union"}, {"keep-faces", true}, {"strict", false}}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "orva: batch: 2 jobs, 2 done, 0 failed, 0 skipped\n");
    const std::vector<Json> found = results(run);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]["schema"], "orva/1");
    EXPECT_EQ(found[0]["line"], 1);
    EXPECT_EQ(found[0]["id"], "first");
    EXPECT_EQ(found[0]["status"], "done");
    EXPECT_EQ(found[0]["verb"], "union");
    EXPECT_EQ(found[0]["output"]["file"], out);
    EXPECT_EQ(found[1]["line"], 4);
    EXPECT_EQ(found[1]["id"], nullptr);
    EXPECT_EQ(found[1]["warnings"].size(), 1U); // .off cannot hold where faces came from
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(out))), 15.0);
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(other))), 7.0);
}

TEST_F(Jobs, GiveWhatTheVerbsGive) {
    ASSERT_EQ(orva({"convert", a, "-o", file("moved.off"), "--move", "-1", "0.5", "1e3"}).exitCode, 0);
    ASSERT_EQ(orva({"intersect", a, b, "-o", file("both.off")}).exitCode, 0);
    const Outcome run = batch(job("convert", {a}, out, {{"move", {-1, 0.5, "1e3"}}}) +
                              job("intersect", {a, b}, file("out2.off"), {{"threads", 1}}));
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_EQ(contentOf(out), contentOf(file("moved.off")));
    EXPECT_EQ(contentOf(file("out2.off")), contentOf(file("both.off")));
}

TEST_F(Jobs, OfTidiedAndRawResults) {
    const std::string raw = file("raw.off");
    const std::string tidied = file("tidied.off");
    Outcome run = batch(job("union", {a, b}, out, {{"merge", "none"}, {"tolerance", 1e-5}, {"close-gaps", "0.001"}}) +
                        job("union", {a, b}, raw, {{"raw", true}}));
    EXPECT_EQ(run.exitCode, 0) << run.output;
    std::vector<Json> found = results(run);
    EXPECT_EQ(found[0]["output"]["tidied"]["closed"], true);
    EXPECT_FALSE(found[1]["output"].contains("tidied"));
    EXPECT_EQ(batch(job("tidy", {raw}, tidied)).exitCode, 0);
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(tidied))), 15.0);
    expectRefused(job("union", {a, b}, out, {{"raw", true}, {"merge", "all"}}), 2,
                  "--merge excludes --raw; see orva union --help");
    const std::string empty = file("empty.off", "OFF 0 0 0");
    EXPECT_EQ(batch(job("union", {a, empty}, file("never.off"))).exitCode, 4);
    EXPECT_EQ(batch(job("union", {a, empty}, file("done.off"), {{"allow-empty", true}})).exitCode, 0);
}

TEST_F(Jobs, FailedOnesStopNoOthers) {
    const std::string missing = file("missing.off");
    const Outcome run =
        batch("{\"verb\": \"union\"\n" + job("union", {a, missing}, file("never.off")) + job("union", {a, b}, out));
    EXPECT_EQ(run.exitCode, 2); // of the first line
    const std::vector<Json> found = results(run);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0]["status"], "failed");
    EXPECT_EQ(found[0]["error"]["name"], "usage");
    EXPECT_EQ(found[1]["status"], "failed");
    EXPECT_EQ(
        found[1]["error"].dump(),
        Json({{"code", 3}, {"name", "cannot read"}, {"message", missing + ": there is no such file; check the name"}})
            .dump());
    EXPECT_EQ(found[2]["status"], "done");
    EXPECT_NE(run.errors.find("orva: " + jobs + ": line 2: " + missing + ": there is no such file; check the name\n"),
              std::string::npos);
    EXPECT_TRUE(run.errors.ends_with("orva: batch: 3 jobs, 1 done, 2 failed, 0 skipped\n")) << run.errors;
}

TEST_F(Jobs, LinesThatAreNone) {
    expectRefused("[1, 2]", 2, "a job is a JSON object, {...}");
    expectRefused("{}", 2, "\"verb\" is missing");
    expectRefused("{\"verb\": 7}", 2, "\"verb\" must be a string");
    expectRefused("{\"verb\": \"batch\"}", 2, "no job can have the verb \"batch\"");
    expectRefused("{\"verb\": \"union\"}", 2, "\"inputs\" must be an array of file names");
    expectRefused("{\"verb\": \"union\", \"inputs\": [1]}", 2, "\"inputs\" must be a string");
    expectRefused("{\"verb\": \"union\", \"inputs\": [\"a\", \"b\"]}", 2,
                  "--output is required; see orva union --help");
    expectRefused(job("union", {a, "-"}, out), 2,
                  "\"inputs\": jobs run side by side and cannot share a stream; name a file");
    expectRefused(job("union", {a, b}, out, {{"speed", 3}}), 2, "unknown key \"speed\"; see orva union --help");
    expectRefused(job("union", {a, b}, out, {{"json", true}}), 2, "unknown key \"json\"; see orva union --help");
    expectRefused(job("union", {a, b}, out, {{"force", "yes"}}), 2, "\"force\" must be true or false");
    expectRefused(job("subtract", {a, b}, out, {{"mode", true}}), 2, "\"mode\" must be a string or a number");
    expectRefused(job("subtract", {a, b}, out, {{"mode", "fast"}}), 2,
                  "--mode: fast not in {sequential,union,parallel}; see orva subtract --help");
    EXPECT_EQ(files(), (std::vector<std::string>{"a.off", "b.off", "jobs.jsonl"}));
}

TEST_F(Jobs, BytesThatAreNoUtf8) {
    const Outcome run = batch("{\"verb\": \"un\xFFion\"}");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(results(run).size(), 1U);
}

TEST_F(Jobs, WithTheSameOutput) {
    const std::string again = nameOf(pathOf(out).parent_path() / "." / "out.off");
    const Outcome run = batch(job("union", {a, b}, out) + "\n" + job("intersect", {a, b}, again));
    EXPECT_EQ(run.exitCode, 2);
    const std::vector<Json> found = results(run);
    EXPECT_EQ(found[0]["status"], "done");
    EXPECT_EQ(found[1]["error"]["message"], again + ": line 1 writes this file, too; give one of them another name");
}

TEST_F(Jobs, ReplaceByForceOnly) {
    file("out.off", "old");
    EXPECT_EQ(batch(job("union", {a, b}, out)).exitCode, 6);
    EXPECT_EQ(contentOf(out), "old");
    EXPECT_EQ(batch(job("union", {a, b}, out, {{"force", true}})).exitCode, 0);
    file("out.off", "old");
    EXPECT_EQ(batch(job("union", {a, b}, out), {"--force"}).exitCode, 0);
    EXPECT_NE(contentOf(out), "old");
}

TEST_F(Jobs, ResumeSkipsWhatIsDone) {
    const std::string other = file("other.off");
    const std::string text = job("union", {a, b}, out) + job("intersect", {a, b}, other);
    ASSERT_EQ(batch(job("union", {a, b}, out)).exitCode, 0);
    const std::string content = contentOf(out);

    Outcome run = batch(text, {"--resume"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(results(run)[0]["status"], "skipped");
    EXPECT_EQ(results(run)[1]["status"], "done");
    EXPECT_EQ(run.errors, "orva: batch: 2 jobs, 1 done, 0 failed, 1 skipped\n");

    // Older than one of its inputs: not done.
    fs::last_write_time(pathOf(b), fs::last_write_time(pathOf(other)) + std::chrono::seconds(10));
    run = batch(text, {"--resume", "--force"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(results(run)[0]["status"], "done");
    // As old as its newest input: done, by make's rule.
    for (const std::string& name : {out, other}) fs::last_write_time(pathOf(name), fs::last_write_time(pathOf(b)));
    EXPECT_EQ(results(batch(text, {"--resume"}))[0]["status"], "skipped");
    // Whose input is gone: not done, and the user should know.
    fs::remove(pathOf(b));
    run = batch(text, {"--resume", "--force"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(contentOf(out), content);
}

TEST_F(Jobs, SideBySideGiveTheSameAsInTurn) {
    std::string text;
    for (int i = 0; i < 20; ++i) {
        text += job(i % 2 == 0 ? "union" : "subtract", {a, b}, file("out" + std::to_string(i) + ".off"), {{"id", i}});
    }
    const Outcome run = batch(text, {"-j", "5"});
    EXPECT_EQ(run.exitCode, 0);
    const std::vector<Json> found = results(run);
    ASSERT_EQ(found.size(), 20U);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(found[static_cast<std::size_t>(i)]["id"], i);
        EXPECT_EQ(contentOf(file("out" + std::to_string(i) + ".off")),
                  contentOf(file("out" + std::to_string(i % 2) + ".off")));
    }
    const Outcome again = batch(text, {"-j", "1", "--force"});
    // One at a time, they end in order.
    std::size_t at = 0;
    for (int i = 1; i <= 20; ++i) {
        at = again.output.find("\"line\":" + std::to_string(i) + ",", at);
        EXPECT_NE(at, std::string::npos);
    }
}

TEST_F(Jobs, ParallelUnionsSideBySideEnd) {
    const std::string c = file("c.off", boxFile({1.5, 1.5, 1.5}, {3, 3, 3}));
    const std::string d = file("d.off", boxFile({-1, -1, -1}, {0.5, 0.5, 0.5}));
    std::string text;
    for (int i = 0; i < 8; ++i) {
        text += job("subtract", {a, b, c, d}, file("out" + std::to_string(i) + ".off"), {{"mode", "parallel"}});
    }
    EXPECT_EQ(batch(text, {"-j", "4"}).exitCode, 0);
    EXPECT_EQ(batch(text, {"-j", "4", "--force", "--threads", "1"}).exitCode, 0);
    EXPECT_EQ(batch(text, {"-j", "2", "--force", "--threads", "2"}).exitCode, 0);
}

TEST_F(Jobs, FromStdin) {
    const Outcome run = orvaReading(job("union", {a, b}, out), {"batch", "-", "-q"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(results(run).size(), 1U);
}

TEST_F(Jobs, NoneAtAll) {
    const Outcome run = batch("\n\n");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "orva: batch: 0 jobs, 0 done, 0 failed, 0 skipped\n");
    expectFailure(orva({"batch", file("missing.jsonl")}), 3,
                  file("missing.jsonl") + ": there is no such file; check the name");
}

TEST_F(Jobs, NamesBeyondAscii) {
    const std::string name = file("Würfel 箱.off");
    EXPECT_EQ(batch(job("union", {a, b}, name)).exitCode, 0);
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(name))), 15.0);
}

#ifndef _WIN32

TEST_F(Jobs, ResultsThatCannotBeTold) {
    file("jobs.jsonl", job("union", {a, b}, out) + job("union", {a, b}, file("out2.off")));
    const Outcome run = orvaAfter("exec >/dev/full", {"batch", jobs, "-j", "1"});
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_EQ(run.errors, "orva: stdout: writing failed; check where it leads\n");
    EXPECT_FALSE(fs::exists(file("out2.off"))); // nobody would learn of it
}

#endif

} // namespace
} // namespace orva::program

// --json: one object on stdout, whatever happens.
#include "program.hpp"
#include "report/report.hpp"
#include "samples.hpp"

namespace orva::program {
namespace {

class JsonOutput : public ProgramTest {
protected:
    const std::string a = file("a.off", boxFile({0, 0, 0}, {2, 2, 2}));
    const std::string b = file("b.off", boxFile({1, 1, 1}, {3, 3, 3}));
    const std::string out = file("out.off");

    // One line, which is parsed strictly: bytes that are no UTF-8 would throw.
    static Json objectIn(const Outcome& run) {
        EXPECT_TRUE(run.output.ends_with("}\n")) << run.output;
        EXPECT_EQ(run.output.find('\n'), run.output.size() - 1);
        return Json::parse(run.output);
    }

    static std::vector<std::string> namesIn(const Json& object) {
        std::vector<std::string> names;
        for (const auto& member : object.items()) names.push_back(member.key());
        return names;
    }
};

TEST_F(JsonOutput, OfABoolean) {
    const Outcome run = orva({"union", a, b, "-o", out, "--json", "--raw"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.errors.starts_with("orva: union: ")) << run.errors; // the summary stays
    const Json json = objectIn(run);
    EXPECT_EQ(namesIn(json), (std::vector<std::string>{"schema", "verb", "inputs", "output", "operation_seconds",
                                                       "warnings", "seconds"}));
    EXPECT_EQ(json["schema"], "orva/1");
    EXPECT_EQ(json["verb"], "union");
    EXPECT_EQ(json["inputs"].dump(), Json({{{"file", a}, {"format", "off"}, {"triangles", 12}},
                                           {{"file", b}, {"format", "off"}, {"triangles", 12}}})
                                         .dump());
    EXPECT_EQ(namesIn(json["output"]), (std::vector<std::string>{"file", "format", "triangles"}));
    EXPECT_EQ(json["output"]["triangles"], readAs(formatOf(out).read, contentOf(out)).vertices.size() / 3);
    EXPECT_EQ(json["warnings"], Json::array());
    EXPECT_GE(json["seconds"], json["operation_seconds"]);
}

TEST_F(JsonOutput, OfATidiedResult) {
    const Json json = objectIn(orva({"union", a, b, "-o", out, "--json"}));
    EXPECT_EQ(namesIn(json["output"]), (std::vector<std::string>{"file", "format", "triangles", "tidied"}));
    const Json& tidied = json["output"]["tidied"];
    EXPECT_EQ(namesIn(tidied),
              (std::vector<std::string>{"closed", "pieces", "open_edges", "largest_gap", "soup_triangles",
                                        "loops_removed", "loop_area", "moved_by_weld", "moved_by_zip", "moved_by_drop",
                                        "forced_ears", "faces_left", "scale"}));
    EXPECT_EQ(tidied["closed"], true);
    EXPECT_EQ(tidied["pieces"], 1);
    EXPECT_EQ(tidied["open_edges"], 0);
    EXPECT_GE(tidied["soup_triangles"], json["output"]["triangles"]);
}

TEST_F(JsonOutput, VerboseMeasures) {
    const Json json = objectIn(orva({"intersect", a, b, "-o", out, "--json", "-v"}));
    EXPECT_EQ(json["output"]["volume"], 1.0);
    EXPECT_EQ(json["output"]["open_edges"], 0);
}

TEST_F(JsonOutput, EmptyResultSaysWhy) {
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");
    const Json json = objectIn(orva({"intersect", a, empty, "-o", out, "--json", "-q"}));
    EXPECT_EQ(json["output"]["triangles"], 0);
    EXPECT_EQ(json["output"]["empty"], "empty, as every result of an empty mesh");
    EXPECT_EQ(json["warnings"].size(), 1U);
}

TEST_F(JsonOutput, OfConvert) {
    const Outcome run = orva({"convert", a, "-o", out, "--json"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(namesIn(objectIn(run)),
              (std::vector<std::string>{"schema", "verb", "inputs", "output", "warnings", "seconds"}));
}

void expectError(const Outcome& run, int code, const std::string& name, const std::string& message) {
    EXPECT_EQ(run.exitCode, code);
    EXPECT_EQ(run.errors, "orva: " + message + "\n"); // in both places
    const Json json = Json::parse(run.output);
    EXPECT_EQ(json["schema"], "orva/1");
    EXPECT_EQ(json["error"].dump(), Json({{"code", code}, {"name", name}, {"message", message}}).dump());
}

TEST_F(JsonOutput, OfFailures) {
    const std::string missing = file("missing.off");
    expectError(orva({"union", a, missing, "-o", out, "--json"}), 3, "cannot read",
                missing + ": there is no such file; check the name");
    expectError(orva({"convert", a, "-o", b, "--json"}), 6, "cannot write",
                b + ": exists already; use --force to replace it");
    expectError(orva({"convert", a, "-o", "-", "--json"}), 2, "usage",
                "-: a stream has no extension to tell its format; say it with --to (" + namesOfFormats() + ")");
}

TEST_F(JsonOutput, OfArgumentsThatAreWrong) {
    expectError(orva({"union", "--json", a, "-o", out}), 2, "usage", "B is required; see orva union --help");
    expectError(orva({"union", a, "-o", out, "--json"}), 2, "usage", "B is required; see orva union --help");
    EXPECT_EQ(orva({"union", a, "-o", out, "--", "--json"}).output, ""); // a file's name there
}

TEST_F(JsonOutput, AndTheMeshBothOnStdout) {
    expectError(orva({"convert", a, "-o", "-", "--to", "off", "--json"}), 2, "usage",
                "-: both the mesh and --json would go to stdout; name a file for the mesh");
}

TEST_F(JsonOutput, NamesBeyondAscii) {
    const std::string name = file("Würfel 箱 \xF0\x9F\xA7\x8A.off", contentOf(a));
    const Json json = objectIn(orva({"convert", name, "-o", out, "--json"}));
    EXPECT_EQ(json["inputs"][0]["file"], name);
}

#ifndef _WIN32

TEST_F(JsonOutput, NamesThatAreNoUtf8) {
    const std::string name = file("W\xFCrfel.off", contentOf(a));
    const Outcome run = orva({"convert", name, "-o", out, "--json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(objectIn(run)["inputs"][0]["file"], file("W\xEF\xBF\xBDrfel.off"));
    const Outcome failed = orva({"convert", file("\xFF\xFE.off"), "-o", out, "--force", "--json"});
    EXPECT_EQ(objectIn(failed)["error"]["code"], 3);
}

TEST_F(JsonOutput, OntoAFullDisk) {
    const Outcome run = orvaAfter("exec >/dev/full", {"convert", a, "-o", out, "--json"});
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_EQ(run.errors, "orva: stdout: writing failed; check where it leads\n");
}

#endif

} // namespace
} // namespace orva::program

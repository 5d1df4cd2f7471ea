// Results as union, subtract, intersect and tidy give them: closed by index and of few triangles.
#include "formats/obj.hpp"
#include "formats/off.hpp"
#include "formats/ply.hpp"
#include "formats/stl.hpp"
#include "measures/fitness.hpp"
#include "measures/volume.hpp"
#include "mesh/facet_normal.hpp"
#include "program.hpp"
#include "report/report.hpp"
#include "samples.hpp"

namespace orva::program {
namespace {

class Tidied : public ProgramTest {
protected:
    const std::string a = file("a.off", boxFile({0, 0, 0}, {2, 2, 2}));
    const std::string b = file("b.off", boxFile({1, 1, 1}, {3, 3, 3}));
    const std::string away = file("away.off", boxFile({5, 5, 5}, {6, 6, 6}));
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");
    const std::string result = file("result.off");

    static std::vector<Triangle> openBox() {
        std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {2, 2, 2});
        triangles.resize(10); // no top
        return triangles;
    }

    Model resultAt(const std::string& name) const { return modelAs(readOff, contentOf(name)); }

    static void expectFit(const Model& model, double volume) {
        const Fitness fitness = measureFitness(model);
        EXPECT_TRUE(fitness.ownIndices);
        EXPECT_TRUE(isEdgeManifold(fitness.byIndex));
        EXPECT_EQ(fitness.byIndex.umbrellas, 0U);
        EXPECT_EQ(fitness.degenerate, 0U);
        EXPECT_NEAR(fitness.volume, volume, 1e-9);
    }

    std::string countIn(const std::string& name) const { return std::to_string(countTriangles(resultAt(name).mesh)); }

    // The summary without its time.
    static std::string summaryOf(const Outcome& run) {
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return run.errors.substr(0, run.errors.rfind(", "));
    }

    int trianglesOf(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"-o", file("counted.off"), "--force", "--json"});
        return Json::parse(orva(arguments).output)["output"]["triangles"].get<int>();
    }
};

TEST_F(Tidied, ResultsAreClosedByIndexAndTheLineSaysSo) {
    const std::vector<std::pair<std::string, double>> verbs{{"union", 15}, {"subtract", 7}, {"intersect", 1}};
    for (const auto& [verb, volume] : verbs) {
        const Outcome run = orva({verb, a, b, "-o", result, "--force"});
        EXPECT_EQ(summaryOf(run),
                  "orva: " + verb + ": 12 + 12 triangles -> " + countIn(result) + " in 1 piece, closed");
        expectFit(resultAt(result), volume);
    }
    const Outcome apart = orva({"union", a, away, "-o", result, "--force"});
    EXPECT_EQ(summaryOf(apart), "orva: union: 12 + 12 triangles -> 24 in 2 pieces, closed");
}

TEST_F(Tidied, HaveFewerTrianglesThanRawOnes) {
    for (const std::string verb : {"union", "subtract", "intersect"}) {
        EXPECT_LE(trianglesOf({verb, a, b}), trianglesOf({verb, a, b, "--raw"})) << verb;
    }
    EXPECT_LT(trianglesOf({"union", a, b}), trianglesOf({"union", a, b, "--raw"}));
}

TEST_F(Tidied, FacesThatWereNotCutAreThoseOfTheInput) {
    ASSERT_EQ(orva({"union", a, away, "-o", result}).exitCode, 0);
    const Mesh mesh = resultAt(result).mesh;
    for (const Triangle& triangle : boxTriangles({5, 5, 5}, {6, 6, 6})) {
        bool found = false;
        for (std::size_t i = 0; i < mesh.vertices.size(); i += 3) {
            for (std::size_t k = 0; k < 3; ++k) {
                bool same = true;
                for (std::size_t j = 0; j < 3; ++j) {
                    const Vec3& here = mesh.vertices[i + (j + k) % 3].pos;
                    same = same && here.x == triangle[j].x && here.y == triangle[j].y && here.z == triangle[j].z;
                }
                found = found || same;
            }
        }
        EXPECT_TRUE(found);
    }
}

TEST_F(Tidied, MergingMoreLeavesFewerTriangles) {
    const int none = trianglesOf({"subtract", a, b, "--merge", "none"});
    const int cut = trianglesOf({"subtract", a, b, "--merge", "cut"});
    const int all = trianglesOf({"subtract", a, b, "--merge", "all"});
    EXPECT_GE(none, cut);
    EXPECT_GE(cut, all);
    EXPECT_EQ(cut, trianglesOf({"subtract", a, b}));
    for (const std::string merge : {"none", "cut", "all"}) {
        ASSERT_EQ(orva({"subtract", a, b, "-o", result, "--merge", merge, "--force"}).exitCode, 0);
        expectFit(resultAt(result), 7);
    }
}

TEST_F(Tidied, SubtractTakesManyCuttersInEveryMode) {
    const std::string c = file("c.off", boxFile({1.5, 1.5, 1.5}, {3, 3, 3}));
    const std::string d = file("d.off", boxFile({-1, -1, -1}, {0.5, 0.5, 0.5}));
    for (const std::string mode : {"sequential", "union", "parallel"}) {
        const Outcome run = orva({"subtract", a, b, c, away, d, "-o", result, "--force", "--mode", mode});
        EXPECT_NE(
            run.errors.find("subtract: 12 + 48 triangles in 4 meshes -> " + countIn(result) + " in 1 piece, closed, "),
            std::string::npos)
            << run.errors;
        expectFit(resultAt(result), 6.875);
    }
    const Outcome one = orva({"subtract", a, b, c, "-o", result, "--force", "--mode", "parallel", "--threads", "1"});
    EXPECT_TRUE(one.errors.starts_with("orva: warning: --mode: one thread only")) << one.errors;
}

TEST_F(Tidied, AnyNumberOfThreadsGivesTheSameBits) {
    ASSERT_EQ(orva({"subtract", a, b, "-o", result}).exitCode, 0);
    for (const std::string threads : {"1", "2", "7"}) {
        const std::string other = file("by-" + threads + ".off");
        ASSERT_EQ(orva({"subtract", a, b, "-o", other, "--threads", threads}).exitCode, 0);
        EXPECT_EQ(contentOf(other), contentOf(result));
    }
}

TEST_F(Tidied, VerboseAddsVolumes) {
    const Outcome run = orva({"union", "-v", a, b, "-o", result, "--json"});
    EXPECT_EQ(summaryOf(run),
              "orva: union: 12 + 12 triangles -> " + countIn(result) + " in 1 piece, closed, volume 8 + 8 -> 15");
    const Json output = Json::parse(run.output)["output"];
    EXPECT_DOUBLE_EQ(output["volume"].get<double>(), 15.0);
    EXPECT_EQ(output["open_edges"], 0);
}

TEST_F(Tidied, EmptyResultIsASuccessAndSaysSo) {
    EXPECT_EQ(summaryOf(orva({"intersect", a, away, "-o", result})),
              "orva: intersect: 12 + 12 triangles -> 0 (the result is empty: there is no place where all of the meshes "
              "are)");
    EXPECT_EQ(contentOf(result), "OFF\n0 0 0\n");
    EXPECT_EQ(orva({"intersect", a, away, "-o", result, "--strict", "--force"}).exitCode, 0);
}

TEST_F(Tidied, SolidsThatTouchAlongAnEdgeStayApartByIndex) {
    const std::string touching = file("touching.off", boxFile({2, 2, 0}, {4, 4, 2}));
    for (const std::string name : {"result.off", "result.obj", "result.ply"}) {
        ASSERT_EQ(orva({"union", a, touching, "-o", file(name)}).exitCode, 0);
        Notes notes;
        const Model model = readModel(formatOf(name), file(name), notes);
        expectFit(model, 16);
        EXPECT_EQ(measureFitness(model).byIndex.vertices, 16U) << name;
        EXPECT_EQ(measureFitness(model).nonManifoldEdges, 1U) << name; // by position
    }
}

TEST_F(Tidied, OpenResultIsAWarning) {
    const std::string open = file("open.off", writeAs(writeOff, meshOf(openBox())));
    const std::string under = file("under.off", boxFile({0, 0, -3}, {2, 2, -2}));
    const Outcome run = orva({"union", open, under, "-o", result});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.errors.find("\norva: warning: " + result +
                              ": the result is not closed: 4 open edges, the largest gap 1; check the inputs (orva "
                              "check), or close wider gaps (--close-gaps)\norva: union: 10 + 12 triangles -> "),
              std::string::npos)
        << run.errors;
    EXPECT_NE(run.errors.find(", not closed: 4 open edges, gaps up to 1, "), std::string::npos) << run.errors;
    EXPECT_EQ(orva({"union", open, under, "-o", result, "--force", "-q"}).errors, "");
}

TEST_F(Tidied, MeshesOfAnySize) {
    const std::string tiny = file("tiny.off", boxFile({0, 0, 0}, {2e-5, 2e-5, 2e-5}));
    const std::string other = file("other.off", boxFile({1e-5, 1e-5, 1e-5}, {3e-5, 3e-5, 3e-5}));
    const Outcome run = orva({"union", tiny, other, "-o", result, "--strict"});
    EXPECT_TRUE(run.errors.starts_with("orva: union: 12 + 12 triangles -> ")) << run.errors;
    EXPECT_NEAR(signedVolume(resultAt(result).mesh), 15e-15, 1e-19);
    const Outcome raw = orva({"union", tiny, other, "-o", result, "--force", "--raw"});
    EXPECT_TRUE(raw.errors.starts_with("orva: warning: " + tiny + ": it is 2e-05 across, ")) << raw.errors;
}

TEST_F(Tidied, NormalsOfTheInputsStay) {
    Model round = modelOf(box({0, 0, 0}, {2, 2, 2}));
    round.hasNormals = true;
    for (types::Vertex& vertex : round.mesh.vertices) vertex.normal = {0.6, 0, 0.8};
    Notes notes;
    const std::string smooth = file("smooth.obj", writeObj(round, {}, notes));
    const std::string obj = file("result.obj");
    ASSERT_EQ(orva({"union", smooth, away, "-o", obj}).exitCode, 0);
    const Model model = modelAs(readObj, contentOf(obj));
    ASSERT_TRUE(model.hasNormals);
    std::size_t kept = 0;
    for (const types::Vertex& vertex : model.mesh.vertices) kept += vertex.normal.x == 0.6 ? 1 : 0;
    EXPECT_EQ(kept, 36U);
    expectFit(model, 9);

    ASSERT_EQ(orva({"union", a, away, "-o", obj, "--force"}).exitCode, 0);
    EXPECT_FALSE(modelAs(readObj, contentOf(obj)).hasNormals);
}

TEST_F(Tidied, UnionRefusesAnEmptyOperandUnlessItMayBeLeftOut) {
    expectFailure(orva({"union", a, empty, "-o", result}), 4,
                  empty + ": it has no triangles; check that the right thing was exported, or leave out what is empty "
                          "with --allow-empty");
    ASSERT_EQ(orva({"union", empty, a, b, "-o", result, "--allow-empty"}).exitCode, 0);
    expectFit(resultAt(result), 15);
    EXPECT_EQ(summaryOf(orva({"union", empty, a, "-o", result, "--allow-empty", "--force"})),
              "orva: union: 12 + 0 triangles -> 12 in 1 piece, closed");
    expectFit(resultAt(result), 8);
    EXPECT_EQ(orva({"union", empty, empty, "-o", result, "--allow-empty", "--force"}).exitCode, 0);
    EXPECT_EQ(contentOf(result), "OFF\n0 0 0\n");
    // The others have nothing where one has nothing.
    for (const std::string verb : {"intersect", "subtract"}) {
        const Outcome run = orva({verb, a, empty, "-o", result, "--force"});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_NE(run.errors.find(" -> 0 (empty, as every result of an empty mesh), "), std::string::npos)
            << run.errors;
    }
}

TEST_F(Tidied, OptionsThatAreNone) {
    for (const std::string verb : {"union", "tidy"}) {
        const std::string help = "; see orva " + verb + " --help";
        for (const std::string word : {"0", "-1", "inf", "nan", "1e999"}) {
            expectFailure(orva({verb, a, b, "-o", result, "--tolerance=" + word}), 2,
                          "--tolerance: " + word + " is not a number above 0" + help);
            expectFailure(orva({verb, a, b, "-o", result, "--close-gaps=" + word}), 2,
                          "--close-gaps: " + word + " is not a number above 0" + help);
        }
        expectFailure(orva({verb, a, b, "-o", result, "--merge", "some"}), 2,
                      "--merge: some not in {none,cut,all}" + help);
    }
    EXPECT_EQ(orva({"union", a, b, "-o", result, "--tolerance", "1mm"}).exitCode, 2);
}

TEST_F(Tidied, RawExcludesWhatItDoesNotDo) {
    const std::vector<std::pair<std::string, std::string>> options{
        {"--merge", "cut"}, {"--tolerance", "1e-5"}, {"--close-gaps", "0.1"}};
    for (const auto& [name, value] : options) {
        expectFailure(orva({"union", a, b, "-o", result, "--raw", name, value}), 2,
                      name + " excludes --raw; see orva union --help");
    }
}

// ---- tidy ----

TEST_F(Tidied, RawResultMadeTidy) {
    const std::string raw = file("raw.stl");
    ASSERT_EQ(orva({"subtract", a, b, "-o", raw, "--raw"}).exitCode, 0);
    const std::size_t before = countTriangles(modelAs(readStl, contentOf(raw)).mesh);
    const Outcome run = orva({"tidy", raw, "-o", result, "--strict"});
    EXPECT_EQ(summaryOf(run),
              "orva: tidy: " + std::to_string(before) + " triangles -> " + countIn(result) + " in 1 piece, closed");
    expectFit(resultAt(result), 7);
    // What is tidy stays as it is.
    ASSERT_EQ(orva({"tidy", result, "-o", file("again.off")}).exitCode, 0);
    EXPECT_EQ(contentOf(file("again.off")), contentOf(result));
}

TEST_F(Tidied, SeveralFilesAreOneSurface) {
    std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {2, 2, 2});
    const std::string top = file("top.off", writeAs(writeOff, meshOf({triangles[10], triangles[11]})));
    triangles.resize(10);
    const std::string rest = file("rest.off", writeAs(writeOff, meshOf(triangles)));
    const Outcome run = orva({"tidy", rest, top, "-o", result, "--json"});
    EXPECT_EQ(summaryOf(run), "orva: tidy: 12 triangles in 2 files -> 12 in 1 piece, closed");
    expectFit(resultAt(result), 8);
    const Json json = Json::parse(run.output);
    EXPECT_EQ(json["inputs"].size(), 2U);
    EXPECT_EQ(json["output"]["tidied"]["closed"], true);
    EXPECT_GE(json["seconds"], json["operation_seconds"]);
}

TEST_F(Tidied, WhatStaysOpenIsAWarningOrAnError) {
    const std::string open = file("open.off", writeAs(writeOff, meshOf(openBox())));
    Outcome run = orva({"tidy", open, "-o", result});
    EXPECT_EQ(run.exitCode, 0);
    const std::string line = result + ": the result is not closed: 4 open edges, the largest gap 1; check the inputs "
                                      "(orva check), or close wider gaps (--close-gaps)\n";
    EXPECT_TRUE(run.errors.starts_with("orva: warning: " + line +
                                       "orva: tidy: 10 triangles -> 10 in 1 piece, not "
                                       "closed: 4 open edges, gaps up to 1, "))
        << run.errors;
    const std::string other = file("other.off");
    run = orva({"tidy", open, "-o", other, "--strict"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.errors.find("other.off: the result is not closed: 4 open edges, "), std::string::npos) << run.errors;
    EXPECT_FALSE(std::filesystem::exists(other));
}

TEST_F(Tidied, GapsAreClosedUpToTheWidthAskedFor) {
    std::vector<Triangle> triangles = openBox();
    for (Triangle& triangle : boxTriangles({0, 0, 0}, {2, 2, 2.01})) {
        if (triangle[0].z > 2 && triangle[1].z > 2 && triangle[2].z > 2) triangles.push_back(triangle);
    }
    const std::string gaping = file("gaping.off", writeAs(writeOff, meshOf(triangles)));
    EXPECT_EQ(orva({"tidy", gaping, "-o", result, "--strict"}).exitCode, 4);
    ASSERT_EQ(orva({"tidy", gaping, "-o", result, "--strict", "--close-gaps", "0.05"}).exitCode, 0);
    const Model model = resultAt(result);
    EXPECT_TRUE(isEdgeManifold(measureFitness(model).byIndex));
    EXPECT_NEAR(signedVolume(model.mesh), 8.0, 0.05);
}

TEST_F(Tidied, FromStdinToStdout) {
    const Outcome run =
        orvaReading(boxFile({0, 0, 0}, {2, 2, 2}), {"tidy", "-", "--from", "off", "-o", "-", "--to", "off", "-q"});
    EXPECT_EQ(run.exitCode, 0);
    expectFit(modelAs(readOff, run.output), 8);
}

TEST_F(Tidied, TidyOfNothing) {
    EXPECT_EQ(summaryOf(orva({"tidy", empty, "-o", result})), "orva: tidy: 0 triangles -> 0");
    EXPECT_EQ(contentOf(result), "OFF\n0 0 0\n");
}

TEST_F(Tidied, TidyDoesNotCarryOrigins) {
    const std::string ply = file("kept.ply");
    ASSERT_EQ(orva({"subtract", a, b, "-o", ply, "--keep-faces", "--raw"}).exitCode, 0);
    const Outcome run = orva({"tidy", ply, "-o", file("tidied.ply")});
    EXPECT_TRUE(run.errors.starts_with("orva: warning: " + ply + ": where its faces came from is not carried\n"))
        << run.errors;
    EXPECT_TRUE(modelAs(readPly, contentOf(file("tidied.ply"))).origins.empty());
}

} // namespace
} // namespace orva::program

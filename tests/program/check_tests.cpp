// check: what it says of meshes that are fit and of those that are not, and the exit codes.
#include "formats/off.hpp"
#include "program.hpp"
#include "report/report.hpp"
#include "samples.hpp"

namespace orva::program {
namespace {

class CheckVerb : public ProgramTest {
protected:
    static std::string openBox() {
        std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {2, 2, 2});
        triangles.pop_back();
        return writeAs(writeOff, meshOf(triangles));
    }

    const std::string box = file("box.off", boxFile({0, 0, 0}, {2, 2, 2}));
    const std::string open = file("open.off", openBox());
    const std::string missing = file("missing.off");
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");

    const std::string textOfBox = box + ": fit\n"
                                        "  triangles  12 in 1 part; 0 without area, 0 narrower than 1e-06, 0 double\n"
                                        "  edges      0 boundary, 0 non-manifold, 0 flipped; 0 open within 8e-06\n"
                                        "  by index   8 vertices: closed and edge-manifold; 0 open, 0 doubled, 0 "
                                        "turned; 0 umbrellas\n"
                                        "  crossings  0 pairs of triangles; 0 by less than 8e-06\n"
                                        "  volume     8\n"
                                        "  area       24\n"
                                        "  box        0 0 0 to 2 2 2\n";
    const std::string complaint =
        "3 edges have a triangle on one side only: the surface is open, gaps up to 1; close its holes";
    const std::string textOfOpen =
        open +
        ": unfit\n"
        "  triangles  11 in 1 part; 0 without area, 0 narrower than 1e-06, 0 double\n"
        "  edges      3 boundary, 0 non-manifold, 0 flipped; 3 open within 8e-06, gaps up to 1\n"
        "  by index   8 vertices: not edge-manifold; 3 open, 0 doubled, 0 turned; 0 umbrellas\n"
        "  crossings  0 pairs of triangles; 0 by less than 8e-06\n"
        "  volume     7.333333333\n"
        "  area       22\n"
        "  box        0 0 0 to 2 2 2\n"
        "  unfit:     " +
        complaint + "\n";
    const std::string lineOfMissing = "orva: " + missing + ": there is no such file; check the name\n";
};

TEST_F(CheckVerb, Fit) {
    const Outcome run = orva({"check", box});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, textOfBox);
    EXPECT_EQ(run.errors, "");
}

TEST_F(CheckVerb, Unfit) {
    const Outcome run = orva({"check", open});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.output, textOfOpen);
    EXPECT_EQ(run.errors, "");
}

TEST_F(CheckVerb, RawResultOfABooleanIsFitWithANote) {
    const std::string drill = file("drill.off", boxFile({0.5, 0.5, -1}, {1.5, 1.5, 3}));
    const std::string result = file("result.off");
    ASSERT_EQ(orva({"subtract", box, drill, "-o", result, "--raw"}).exitCode, 0);
    const Outcome run = orva({"check", result});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("\n  note:      "), std::string::npos) << run.output;
    EXPECT_EQ(run.output.find("unfit"), std::string::npos) << run.output;
}

TEST_F(CheckVerb, CrossingsAreUnfitAndTold) {
    std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {2, 2, 2});
    for (const Triangle& triangle : boxTriangles({1, 1, 1}, {3, 3, 3})) triangles.push_back(triangle);
    const std::string crossing = file("crossing.off", writeAs(writeOff, meshOf(triangles)));
    const Outcome run = orva({"check", crossing});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.output.find(" pairs of triangles cross, one of them near "), std::string::npos) << run.output;
    const Json json = Json::parse(orva({"check", "--json", crossing}).output);
    EXPECT_GT(json["inputs"][0]["crossing_pairs"].get<int>(), 0);
    EXPECT_EQ(json["inputs"][0]["complaints"].size(), 1U);
    EXPECT_EQ(json["inputs"][0]["by_index"]["edge_manifold"], true);
    EXPECT_EQ(orva({"intersect", crossing, box, "-o", file("out.off"), "--strict"}).exitCode, 4);
}

TEST_F(CheckVerb, StlHasNoIndicesOfItsOwn) {
    const std::string stl = file("box.stl");
    ASSERT_EQ(orva({"convert", box, "-o", stl}).exitCode, 0);
    const Outcome run = orva({"check", stl});
    EXPECT_NE(run.output.find("  by index   8 vertices (equal positions): closed and edge-manifold;"),
              std::string::npos)
        << run.output;
    EXPECT_EQ(Json::parse(orva({"check", stl, "--json"}).output)["inputs"][0]["by_index"]["own"], false);
}

TEST_F(CheckVerb, TrianglesWithVerticesOfTheirOwnAreFit) {
    Model model = modelOf(meshOf(boxTriangles({0, 0, 0}, {2, 2, 2})));
    for (std::uint32_t i = 0; i < 36; ++i) model.indices.push_back(i);
    Notes notes;
    const Outcome run = orva({"check", file("apart.off", writeOff(model, {}, notes))});
    EXPECT_EQ(run.exitCode, 0); // a boolean reads positions
    EXPECT_NE(run.output.find("  by index   36 vertices: not edge-manifold; 36 open, 0 doubled, 0 turned; 0 umbrellas"),
              std::string::npos)
        << run.output;
}

TEST_F(CheckVerb, WorstOfAllFilesDecides) {
    Outcome run = orva({"check", box, open});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.output, textOfBox + textOfOpen);
    run = orva({"check", open, box});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.output, textOfOpen + textOfBox);
}

TEST_F(CheckVerb, FileThatCannotBeReadStopsNoOther) {
    for (const std::vector<std::string>& files : {std::vector{missing, open, box}, std::vector{open, box, missing}}) {
        const Outcome run = orva({"check", files[0], files[1], files[2]});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_EQ(run.output, textOfOpen + textOfBox);
        EXPECT_EQ(run.errors, lineOfMissing);
    }
}

TEST_F(CheckVerb, NotANumberCannotBeRead) {
    const std::string nan = file("nan.off", "OFF\n3 1 0\n0 0 nan\n1 0 0\n0 1 0\n3 0 1 2\n");
    const Outcome run = orva({"check", nan});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors,
              "orva: " + nan + ": line 3: \"nan\" is not a finite number; repair the mesh or export it again\n");
}

TEST_F(CheckVerb, EmptyIsUnfit) {
    const Outcome run = orva({"check", empty});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_TRUE(run.output.starts_with(empty + ": unfit\n")) << run.output;
    EXPECT_TRUE(run.output.ends_with("  unfit:     it has no triangles, and a boolean with an empty mesh gives "
                                     "nothing; check that the right thing was exported\n"))
        << run.output;
}

TEST_F(CheckVerb, QuietLeavesTheExitCodeAndErrors) {
    Outcome run = orva({"check", "-q", box});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output + run.errors, "");
    run = orva({"check", open, box, "--quiet"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.output + run.errors, "");
    run = orva({"check", "-q", missing, open});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, lineOfMissing);
}

TEST_F(CheckVerb, Json) {
    const Outcome run = orva({"check", box, open, missing, "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.errors, lineOfMissing);
    const Json json = Json::parse(run.output);
    EXPECT_EQ(json["schema"], "orva/1");
    EXPECT_EQ(json["verb"], "check");
    ASSERT_EQ(json["inputs"].size(), 3U);

    const Json expected{{"file", box},
                        {"format", "off"},
                        {"fit", true},
                        {"complaints", Json::array()},
                        {"remarks", Json::array()},
                        {"triangles", 12},
                        {"parts", 1},
                        {"inside_out_parts", 0},
                        {"degenerate_triangles", 0},
                        {"thin_triangles", 0},
                        {"duplicate_triangles", 0},
                        {"boundary_edges", 0},
                        {"non_manifold_edges", 0},
                        {"flipped_edges", 0},
                        {"open_edges", 0},
                        {"largest_gap", 0.0},
                        {"crossing_pairs", 0},
                        {"shallow_crossing_pairs", 0},
                        {"by_index",
                         {{"own", true},
                          {"edge_manifold", true},
                          {"vertices", 8},
                          {"open_edges", 0},
                          {"doubled_edges", 0},
                          {"turned_edges", 0},
                          {"umbrellas", 0},
                          {"collapsed_triangles", 0}}},
                        {"volume", 8.0},
                        {"area", 24.0},
                        {"box", {{"low", {0.0, 0.0, 0.0}}, {"high", {2.0, 2.0, 2.0}}}}};
    EXPECT_EQ(json["inputs"][0].dump(), expected.dump());
    EXPECT_EQ(json["inputs"][1]["fit"], false);
    EXPECT_EQ(json["inputs"][1]["complaints"], Json{complaint});
    EXPECT_EQ(json["inputs"][1]["open_edges"], 3);
    EXPECT_EQ(json["inputs"][2].dump(), Json({{"file", missing},
                                              {"format", "off"},
                                              {"error",
                                               {{"code", 3},
                                                {"name", "cannot read"},
                                                {"message", missing + ": there is no such file; check the name"}}}})
                                            .dump());
}

TEST_F(CheckVerb, WhatIsTooLargeForANumberIsNullInJson) {
    const std::string huge = file("huge.off", boxFile({0, 0, 0}, {1e300, 1e300, 1e300}));
    const Json json = Json::parse(orva({"check", huge, "--json"}).output);
    EXPECT_TRUE(json["inputs"][0]["volume"].is_null());
    EXPECT_FALSE(json["inputs"][0]["fit"].get<bool>());
}

TEST_F(CheckVerb, Arguments) {
    expectFailure(orva({"check"}), 2, "A is required; see orva check --help");
    const Outcome run = orva({"check", box, file("part.xyz")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, ""); // nothing is read before all names are known to be good
    EXPECT_TRUE(run.errors.starts_with("orva: " + file("part.xyz") + ": no format is known by the extension .xyz"));
    expectFailure(orva({"check", "-"}), 2,
                  "-: a stream has no extension to tell its format; say it with --from (" + namesOfFormats() + ")");
    expectFailure(orva({"check", box, "-o", "x"}), 2,
                  "The following argument was not expected: -o; see orva check --help");
}

} // namespace
} // namespace orva::program

// union, subtract and intersect with --raw: what they write and what they say.
#include "formats/off.hpp"
#include "measures/closedness.hpp"
#include "measures/volume.hpp"
#include "program.hpp"
#include "samples.hpp"

#include "orva/bspcsg.hpp"

namespace orva::program {
namespace {

// Two boxes of volume 8 that have a unit cube in common.
class RawBoolean : public ProgramTest {
protected:
    const std::string a = file("a.off", boxFile({0, 0, 0}, {2, 2, 2}));
    const std::string b = file("b.off", boxFile({1, 1, 1}, {3, 3, 3}));
    const std::string away = file("away.off", boxFile({5, 5, 5}, {6, 6, 6}));
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");
    const std::string result = file("result.off");
    const std::string emptyMesh =
        ": it has no triangles, and a boolean with an empty mesh gives nothing; check that the "
        "right thing was exported";

    Outcome raw(std::vector<std::string> arguments) const {
        arguments.emplace_back("--raw");
        return orva(arguments);
    }

    // A success with that line, which stands here without "orva: " and without the time at its end.
    void expectLine(const Outcome& run, const std::string& line) const {
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output, "");
        std::string said = run.errors;
        ASSERT_TRUE(said.ends_with(" s\n")) << said;
        const std::size_t time = said.rfind(", ");
        ASSERT_NE(time, std::string::npos) << said;
        const std::string seconds = said.substr(time + 2, said.size() - time - 5);
        EXPECT_EQ(seconds.find_first_not_of("0123456789."), std::string::npos) << said;
        EXPECT_EQ(said.substr(0, time), "orva: " + line);
    }

    // The same after a warning.
    void expectWarning(Outcome run, const std::string& warning, const std::string& line) const {
        const std::string text = "orva: warning: " + warning + "\n";
        ASSERT_TRUE(run.errors.starts_with(text)) << run.errors;
        run.errors.erase(0, text.size());
        expectLine(run, line);
    }

    static std::vector<Triangle> openBox() {
        std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {2, 2, 2});
        triangles.resize(10); // no top
        return triangles;
    }

    std::string countIn(const std::string& name) const {
        return std::to_string(readAs(readOff, contentOf(name)).vertices.size() / 3);
    }

    void expectVolume(const std::string& verb, double volume) const {
        const Outcome run = raw({verb, a, b, "-o", result, "--force"});
        expectLine(run, verb + ": 12 + 12 triangles -> " + countIn(result));
        const Mesh mesh = readAs(readOff, contentOf(result));
        EXPECT_DOUBLE_EQ(signedVolume(mesh), volume);
        EXPECT_EQ(measureClosedness(mesh, CLOSING_TOLERANCE).openEdges, 0U);
    }
};

TEST_F(RawBoolean, Union) {
    expectVolume("union", 15);
}
TEST_F(RawBoolean, Subtract) {
    expectVolume("subtract", 7);
}
TEST_F(RawBoolean, Intersect) {
    expectVolume("intersect", 1);
}

TEST_F(RawBoolean, QuietSaysNothing) {
    const Outcome run = raw({"union", a, b, "-o", result, "-q"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(raw({"union", "--quiet", a, b, "--output", result, "--force"}).errors, "");
}

TEST_F(RawBoolean, VerboseMeasuresTheResult) {
    const Outcome run = raw({"union", "-v", a, b, "-o", result});
    expectLine(run, "union: 12 + 12 triangles -> " + countIn(result) + ", volume 8 + 8 -> 15, closed within 8e-06");
}

TEST_F(RawBoolean, VerboseTellsThatTheResultIsOpen) {
    const std::string open = file("open.off", writeAs(writeOff, meshOf(openBox())));
    const std::string under = file("under.off", boxFile({0, 0, -3}, {2, 2, -2}));
    const Outcome run = raw({"union", "--verbose", open, under, "-o", result});
    // From the middle of the box, the missing top would add a sixth of its volume. The result's middle is 1.5 lower.
    const std::string holes =
        "4 edges have a triangle on one side only: the surface is open, gaps up to 1; close its holes";
    expectWarning(run, open + ": " + holes,
                  "union: 10 + 12 triangles -> " + countIn(result) +
                      ", volume 6.666666667 + 4 -> 8.666666667, "
                      "not closed within 8e-06: 4 open edges, gaps up to 1");
}

TEST_F(RawBoolean, EmptyResultIsASuccessAndSaysSo) {
    const std::string apart = " (the result is empty: there is no place where all of the meshes are)";
    expectLine(raw({"intersect", a, away, "-o", result}), "intersect: 12 + 12 triangles -> 0" + apart);
    EXPECT_EQ(contentOf(result), "OFF\n0 0 0\n");
    expectLine(raw({"intersect", "-v", a, away, "-o", file("result.stl")}),
               "intersect: 12 + 12 triangles -> 0" + apart + ", volume 8 + 1 -> 0, closed within 8e-06");
    EXPECT_EQ(contentOf(file("result.stl")).size(), 84U);
}

TEST_F(RawBoolean, EmptyOperandEmptiesTheResultAndTheLineSaysWhy) {
    const std::string why = " (empty, as every result of an empty mesh)";
    const std::string warning = empty + emptyMesh;
    expectWarning(raw({"intersect", empty, b, "-o", result}), warning, "intersect: 0 + 12 triangles -> 0" + why);
    expectWarning(raw({"subtract", a, empty, "-o", result, "--force"}), warning,
                  "subtract: 12 + 0 triangles -> 0" + why);
}

TEST_F(RawBoolean, UnionRefusesAnEmptyOperandUnlessItMayBeLeftOut) {
    const std::string refusal = empty + ": it has no triangles; check that the right thing was exported, or leave out "
                                        "what is empty with --allow-empty";
    expectFailure(raw({"union", a, empty, "-o", result}), 4, refusal);
    expectFailure(raw({"union", empty, empty, "-o", result, "-q"}), 4, refusal);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.off", "away.off", "b.off", "empty.off"}));

    ASSERT_EQ(raw({"union", a, b, "-o", result}).exitCode, 0);
    const std::string without = file("without.off");
    expectLine(raw({"union", empty, a, empty, b, "-o", without, "--allow-empty", "--strict"}),
               "union: 12 + 12 triangles -> " + countIn(result));
    EXPECT_EQ(contentOf(without), contentOf(result));
    // Of one mesh that is left, the union is that mesh; of none, nothing.
    expectLine(raw({"union", empty, a, "-o", result, "--allow-empty", "--force"}), "union: 12 + 0 triangles -> 12");
    EXPECT_EQ(contentOf(result), contentOf(a));
    EXPECT_EQ(raw({"union", empty, empty, "-o", result, "--allow-empty", "--force"}).exitCode, 0);
    EXPECT_EQ(contentOf(result), "OFF\n0 0 0\n");
    EXPECT_EQ(raw({"intersect", a, b, "-o", file("out.off"), "--allow-empty"}).exitCode,
              2); // that verb has no such option
}

TEST_F(RawBoolean, IsTheLibrarysOwnResult) {
    Mesh expected;
    bspcsg::subtractMesh(expected, readAs(readOff, contentOf(a)), readAs(readOff, contentOf(b)));
    ASSERT_EQ(raw({"subtract", a, b, "-o", result}).exitCode, 0);
    EXPECT_EQ(contentOf(result), writeAs(writeOff, expected));
}

TEST_F(RawBoolean, SubtractTakesAllOfTheBase) {
    const std::string around = file("around.off", boxFile({-1, -1, -1}, {4, 4, 4}));
    expectLine(raw({"subtract", a, around, "-o", result}), "subtract: 12 + 12 triangles -> 0 (the result is empty)");
}

TEST_F(RawBoolean, StrictRefusesUnfitInputs) {
    const std::string open = file("open.off", writeAs(writeOff, meshOf(openBox())));
    const std::string holes =
        ": 4 edges have a triangle on one side only: the surface is open, gaps up to 1; close its holes";
    expectFailure(raw({"union", a, open, "-o", result, "--strict"}), 4, open + holes);
    expectFailure(raw({"subtract", a, empty, "-o", result, "--strict", "-q"}), 4, empty + emptyMesh);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.off", "away.off", "b.off", "empty.off", "open.off"}));
    EXPECT_EQ(raw({"union", a, b, "-o", result, "--strict"}).exitCode, 0);
}

TEST_F(RawBoolean, QuietLeavesWarningsOut) {
    EXPECT_EQ(raw({"intersect", a, empty, "-o", result, "-q"}).errors, "");
}

TEST_F(RawBoolean, AnyNumberOfThreadsGivesTheSameBits) {
    ASSERT_EQ(raw({"subtract", a, b, "-o", result}).exitCode, 0);
    for (const std::string threads : {"1", "2", "7"}) {
        const std::string other = file("by-" + threads + ".off");
        expectLine(raw({"subtract", a, b, "-o", other, "--threads", threads}),
                   "subtract: 12 + 12 triangles -> " + countIn(result));
        EXPECT_EQ(contentOf(other), contentOf(result));
    }
    expectFailure(raw({"union", a, b, "-o", result, "--threads", "0"}), 2,
                  "--threads: Value 0 not in range 1 to 1024; see orva union --help");
}

TEST_F(RawBoolean, OneThreadDoesNotWaitForAnother) {
    const std::string c = file("c.off", boxFile({1.5, 1.5, 1.5}, {3, 3, 3}));
    const std::string warning = "--mode: one thread only: merging the cutters in turn, as with --mode union";
    const Outcome run = raw({"subtract", a, b, c, away, "-o", result, "--mode", "parallel", "--threads", "1"});
    expectWarning(run, warning, "subtract: 12 + 36 triangles in 3 meshes -> " + countIn(result));
    const Outcome two =
        raw({"subtract", a, b, c, away, "-o", result, "--force", "--mode", "parallel", "--threads", "2"});
    expectLine(two, "subtract: 12 + 36 triangles in 3 meshes -> " + countIn(result));
}

#ifndef _WIN32

TEST_F(RawBoolean, TwoThreadsOnOneProcessor) {
    const std::string c = file("c.off", boxFile({1.5, 1.5, 1.5}, {3, 3, 3}));
    const std::string oneProcessor =
        "taskset -p -c \"$(taskset -p -c $$ | sed 's/.*: *\\([0-9]*\\).*/\\1/')\" $$ >/dev/null";
    const Outcome run = orvaAfter(
        oneProcessor, {"subtract", a, b, c, away, "-o", result, "--mode", "parallel", "--threads", "2", "--raw"});
    expectLine(run, "subtract: 12 + 36 triangles in 3 meshes -> " + countIn(result));
}

#endif

TEST_F(RawBoolean, SubtractTakesManyCuttersInEveryMode) {
    // Two of the cutters overlap, one is away.
    const std::string c = file("c.off", boxFile({1.5, 1.5, 1.5}, {3, 3, 3}));
    const std::string d = file("d.off", boxFile({-1, -1, -1}, {0.5, 0.5, 0.5}));
    for (const std::string mode : {"sequential", "union", "parallel"}) {
        Outcome run = raw({"subtract", a, b, c, away, d, "-o", result, "--force", "--mode", mode});
        if (run.errors.starts_with("orva: warning: --mode: one thread only"))
            run.errors.erase(0, run.errors.find('\n') + 1);
        expectLine(run, "subtract: 12 + 48 triangles in 4 meshes -> " + countIn(result));
        EXPECT_NEAR(signedVolume(readAs(readOff, contentOf(result))), 6.875, 1e-12) << mode;
    }
    expectWarning(raw({"subtract", a, b, empty, "-o", result, "--force", "--mode", "union"}), empty + emptyMesh,
                  "subtract: 12 + 12 triangles in 2 meshes -> 0 (empty, as every result of an empty mesh)");
}

TEST_F(RawBoolean, SubtractGoesInTurnUnlessToldOtherwise) {
    const std::string d = file("d.off", boxFile({-1, -1, -1}, {0.5, 0.5, 0.5}));
    ASSERT_EQ(raw({"subtract", a, b, d, "-o", result}).exitCode, 0);
    ASSERT_EQ(raw({"subtract", a, b, d, "-o", file("sequential.off"), "--mode", "sequential"}).exitCode, 0);
    EXPECT_EQ(contentOf(result), contentOf(file("sequential.off")));
}

TEST_F(RawBoolean, SubtractTakesNoOtherMode) {
    expectFailure(raw({"subtract", a, b, "-o", result, "--mode", "fast"}), 2,
                  "--mode: fast not in {sequential,union,parallel}; see orva subtract --help");
    expectFailure(raw({"subtract", a, "-o", result}), 2, "CUTTER is required; see orva subtract --help");
}

TEST_F(RawBoolean, UnionAndIntersectTakeManyMeshesInTurn) {
    const std::string c = file("c.off", boxFile({2, 2, 2}, {4, 4, 4}));
    Outcome run = raw({"union", a, b, c, away, "-o", result});
    expectLine(run, "union: 12 + 36 triangles in 3 meshes -> " + countIn(result));
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(result))), 8 + 7 + 7 + 1);
    ASSERT_EQ(raw({"union", a, b, "-o", file("ab.off")}).exitCode, 0);
    ASSERT_EQ(raw({"union", file("ab.off"), c, "-o", file("abc.off")}).exitCode, 0);
    ASSERT_EQ(raw({"union", file("abc.off"), away, "-o", file("abcd.off")}).exitCode, 0);
    EXPECT_EQ(contentOf(result), contentOf(file("abcd.off")));

    const std::string d = file("d.off", boxFile({0, 0, 1.5}, {3, 3, 3}));
    run = raw({"intersect", a, b, d, "-o", result, "--force"});
    expectLine(run, "intersect: 12 + 24 triangles in 2 meshes -> " + countIn(result));
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(result))), 0.5);
}

TEST_F(RawBoolean, FormatsMix) {
    const std::string stl = file("b.STL");
    ASSERT_EQ(orva({"convert", b, "-o", stl}).exitCode, 0);
    EXPECT_EQ(raw({"subtract", a, stl, "-o", file("result.stl")}).exitCode, 0);
    EXPECT_EQ(raw({"subtract", a, b, "-o", file("expected.stl")}).exitCode, 0);
    EXPECT_EQ(contentOf(file("result.stl")), contentOf(file("expected.stl")));
}

TEST_F(RawBoolean, OutputReplacesItsOwnInput) {
    ASSERT_EQ(raw({"subtract", a, b, "-o", result}).exitCode, 0);
    EXPECT_EQ(raw({"subtract", a, b, "-o", a, "--force"}).exitCode, 0);
    EXPECT_EQ(contentOf(a), contentOf(result));
}

TEST_F(RawBoolean, SameFileTwice) {
    ASSERT_EQ(raw({"union", a, a, "-o", result}).exitCode, 0);
    EXPECT_DOUBLE_EQ(signedVolume(readAs(readOff, contentOf(result))), 8.0);
}

TEST_F(RawBoolean, BrokenSecondMeshIsNamed) {
    const std::string broken = file("broken.off", "OFF\n");
    expectFailure(raw({"union", a, broken, "-o", result}), 3,
                  broken + ": line 2: \"\" is not a number of vertices; repair the mesh or export it again");
}

} // namespace
} // namespace orva::program

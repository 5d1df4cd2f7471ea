// union, subtract and intersect: what they write and what they say.
#include "formats/off.hpp"
#include "measures/closedness.hpp"
#include "measures/volume.hpp"
#include "program.hpp"
#include "samples.hpp"

#include <regex>

namespace orva::program {
namespace {

// Two boxes of volume 8 that have a unit cube in common.
class BooleanVerb : public ProgramTest {
protected:
    const std::string a = file("a.off", boxFile({0, 0, 0}, {2, 2, 2}));
    const std::string b = file("b.off", boxFile({1, 1, 1}, {3, 3, 3}));
    const std::string away = file("away.off", boxFile({5, 5, 5}, {6, 6, 6}));
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");
    const std::string result = file("result.off");

    void expectVolume(const std::string& verb, double volume) const {
        const Outcome run = orva({verb, a, b, "-o", result});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output, "");
        EXPECT_TRUE(std::regex_match(run.errors,
                                     std::regex("orva: " + verb + R"(: 12 \+ 12 triangles -> \d+, \d+\.\d{3} s\n)")))
            << run.errors;
        const Mesh mesh = readOff(contentOf(result));
        EXPECT_DOUBLE_EQ(signedVolume(mesh), volume);
        EXPECT_EQ(measureClosedness(mesh, CLOSING_TOLERANCE).openEdges, 0U);
    }

    void expectLine(const Outcome& run, const std::string& pattern) const {
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_TRUE(std::regex_match(run.errors, std::regex(pattern + "\n"))) << run.errors;
    }
};

TEST_F(BooleanVerb, Union) {
    expectVolume("union", 15);
}
TEST_F(BooleanVerb, Subtract) {
    expectVolume("subtract", 7);
}
TEST_F(BooleanVerb, Intersect) {
    expectVolume("intersect", 1);
}

TEST_F(BooleanVerb, QuietSaysNothing) {
    const Outcome run = orva({"union", a, b, "-o", result, "-q"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(orva({"union", "--quiet", a, b, "--output", result}).errors, "");
}

TEST_F(BooleanVerb, VerboseMeasuresTheResult) {
    expectLine(orva({"union", "-v", a, b, "-o", result}),
               R"(orva: union: 12 \+ 12 triangles -> \d+, volume 8 \+ 8 -> 15, closed within 8e-06, \d+\.\d{3} s)");
}

TEST_F(BooleanVerb, VerboseTellsThatTheResultIsOpen) {
    std::vector<Triangle> open = boxTriangles({0, 0, 0}, {2, 2, 2});
    open.resize(10); // no top
    expectLine(orva({"union", "--verbose", file("open.off", writeOff(meshOf(open))), away, "-o", result}),
               R"(orva: union: 10 \+ 12 triangles -> \d+, volume \S+ \+ 1 -> \S+, )"
               R"(not closed within 8e-06: 4 open edges, gaps up to 1, \d+\.\d{3} s)");
}

TEST_F(BooleanVerb, EmptyResultIsASuccessAndSaysSo) {
    expectLine(orva({"intersect", a, away, "-o", result}),
               R"(orva: intersect: 12 \+ 12 triangles -> 0 \(the result is empty\), \d+\.\d{3} s)");
    EXPECT_EQ(contentOf(result), "OFF\n0 0 0\n");
    expectLine(orva({"intersect", "-v", a, away, "-o", file("result.stl")}),
               R"(orva: intersect: 12 \+ 12 triangles -> 0 \(the result is empty\), )"
               R"(volume 8 \+ 1 -> 0, closed within 8e-06, \d+\.\d{3} s)");
    EXPECT_EQ(contentOf(file("result.stl")).size(), 84U);
}

TEST_F(BooleanVerb, EmptyOperandEmptiesTheResultAndTheLineSaysWhy) {
    const std::string pattern = R"( triangles -> 0 \(empty, as every result of an empty mesh\), \d+\.\d{3} s)";
    expectLine(orva({"union", empty, b, "-o", result}), R"(orva: union: 0 \+ 12)" + pattern);
    expectLine(orva({"subtract", a, empty, "-o", result}), R"(orva: subtract: 12 \+ 0)" + pattern);
}

TEST_F(BooleanVerb, FormatsMix) {
    const std::string stl = file("b.STL");
    ASSERT_EQ(orva({"convert", b, "-o", stl}).exitCode, 0);
    EXPECT_EQ(orva({"subtract", a, stl, "-o", file("result.stl")}).exitCode, 0);
    EXPECT_EQ(orva({"subtract", a, b, "-o", file("expected.stl")}).exitCode, 0);
    EXPECT_EQ(contentOf(file("result.stl")), contentOf(file("expected.stl")));
}

TEST_F(BooleanVerb, OutputReplacesItsOwnInput) {
    ASSERT_EQ(orva({"subtract", a, b, "-o", result}).exitCode, 0);
    EXPECT_EQ(orva({"subtract", a, b, "-o", a}).exitCode, 0);
    EXPECT_EQ(contentOf(a), contentOf(result));
}

TEST_F(BooleanVerb, SameFileTwice) {
    ASSERT_EQ(orva({"union", a, a, "-o", result}).exitCode, 0);
    EXPECT_DOUBLE_EQ(signedVolume(readOff(contentOf(result))), 8.0);
}

TEST_F(BooleanVerb, BrokenSecondMeshIsNamed) {
    const std::string broken = file("broken.off", "OFF\n");
    expectFailure(orva({"union", a, broken, "-o", result}), 3,
                  broken + ": line 2: \"\" is not a number of vertices; repair the mesh or export it again");
}

} // namespace
} // namespace orva::program

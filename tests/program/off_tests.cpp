// OFF: what is read, what is refused and with which words, what is written.
#include "formats/off.hpp"

#include "program.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orva::program {
namespace {

const std::string square = "OFF\n4 2 5\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2 3\n";

// The positions as the file for the same mesh has them.
std::string reread(const std::string& text) {
    return writeAs(writeOff, readAs(readOff, text));
}

std::string in(std::size_t line, const std::string& word) {
    return "line " + std::to_string(line) + ": \"" + word + "\" ";
}

std::string refusal(const std::string& text) {
    return refusalOf(readOff, text);
}

const std::string repair = "; repair the mesh or export it again";
const std::string cutShort = "; it is cut short or its counts are wrong, export it again";

// ---- read ----

TEST(OffRead, Triangles) {
    const Mesh mesh = readAs(readOff, square);
    ASSERT_EQ(mesh.vertices.size(), 6U);
    EXPECT_EQ(mesh.vertices[4].pos.x, 1.0);
    EXPECT_EQ(mesh.vertices[4].pos.y, 1.0);
}

TEST(OffRead, NormalsAreThoseOfTheTriangles) {
    const Mesh mesh = readAs(readOff, "OFF 4 2 0  0 0 0  0 3 4  0 6 8  5 0 0  3 0 3 1\n3 0 1 2\n");
    ASSERT_EQ(mesh.vertices.size(), 6U);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(mesh.vertices[static_cast<std::size_t>(i)].normal.x, 0.0);
        EXPECT_DOUBLE_EQ(mesh.vertices[static_cast<std::size_t>(i)].normal.y, -0.8);
        EXPECT_DOUBLE_EQ(mesh.vertices[static_cast<std::size_t>(i)].normal.z, 0.6);
    }
    for (std::size_t i = 3; i < 6; ++i) { // without area
        const Vec3& normal = mesh.vertices[i].normal;
        EXPECT_TRUE(normal.x == 0.0 && normal.y == 0.0 && normal.z == 0.0);
    }
}

TEST(OffRead, PolygonsAsFans) {
    EXPECT_EQ(reread("OFF\n4 1 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n"), reread(square));
}

TEST(OffRead, FacesOfFewerThanThreeCornersArePassedOver) {
    EXPECT_EQ(reread("OFF\n3 4 0\n0 0 0\n1 0 0\n1 1 0\n0\n1 2\n2 0 1\n3 0 1 2\n"),
              "OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n3 0 1 2\n");
}

TEST(OffRead, TrianglesKnowTheirFaces) {
    const std::string vertices = "\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n";
    EXPECT_EQ(modelAs(readOff, "OFF 4 2" + vertices + "3 0 1 2\n4 0 1 2 3\n").faces,
              (std::vector<std::uint32_t>{0, 1, 1}));
    EXPECT_EQ(modelAs(readOff, "OFF 4 3" + vertices + "3 0 1 2\n2 0 1\n3 0 2 3\n").faces,
              (std::vector<std::uint32_t>{0, 2}));
    EXPECT_EQ(modelAs(readOff, "OFF 4 2" + vertices + "1 0\n3 0 2 3\n").faces, (std::vector<std::uint32_t>{1}));
    EXPECT_EQ(modelAs(readOff, square).faces, std::vector<std::uint32_t>()); // each is its own
}

TEST(OffRead, CommentsAndBlankLines) {
    EXPECT_EQ(reread("# made by hand\n\nOFF # yes\n# four, two\n4 2 5#\n\n0 0 0 # first\n1 0 0\n\n1 1 0\n0 1 0#\n"
                     "3 0 1 2# 9\n#3 1 2 3\n3 0 2 3\n\n# the end\n\n"),
              reread(square));
}

TEST(OffRead, WindowsLineEnds) {
    std::string text;
    for (const char c : square) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    EXPECT_EQ(reread(text), reread(square));
}

TEST(OffRead, LineEndsOfOldMacintoshes) {
    std::string text = square;
    for (char& c : text) c = c == '\n' ? '\r' : c;
    EXPECT_EQ(reread(text), reread(square));
    EXPECT_EQ(refusal("OFF\r1 0 0\r\n0 0\rx\n"), "line 4: \"x\" is not a finite number" + repair);
}

TEST(OffRead, ByteOrderMark) {
    EXPECT_EQ(reread("\xEF\xBB\xBF" + square), reread(square));
}

TEST(OffRead, NoLineEndAtTheEnd) {
    EXPECT_EQ(reread(square.substr(0, square.size() - 1)), reread(square));
}

TEST(OffRead, NoNumberOfEdges) {
    EXPECT_EQ(reread("OFF\n3 1\n0 0 0\n1 0 0\n1 1 0\n3 0 1 2"), reread("OFF 3 1 3\n0 0 0 1 0 0 1 1 0 3 0 1 2"));
}

TEST(OffRead, ColoursBehindFaces) {
    EXPECT_EQ(reread("OFF\n4 2 5\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2  255 0 0\n3 0 2 3 0.5 0.5 0.5 1 # red\n"),
              reread(square));
}

TEST(OffRead, ColoursAndNormalsBehindVertices) {
    EXPECT_EQ(reread("COFF\n4 2 5\n0 0 0 1 0 0 1\n1 0 0 255 255 0\n1 1 0\n0 1 0 1 1 1 1\n3 0 1 2\n3 0 2 3\n"),
              reread(square));
    EXPECT_EQ(reread("NOFF\n4 2 5\n0 0 0 0 0 1\n1 0 0 0 0 1\n1 1 0 0 0 1\n0 1 0 0 0 1\n3 0 1 2\n3 0 2 3\n"),
              reread(square));
}

TEST(OffRead, NumbersInEveryNotation) {
    const Mesh mesh = readAs(readOff, "OFF 3 1 0  +1 -2.50 .5  1e-3 1E+2 -0  5. 00.1 1e-320  3 0 1 2");
    EXPECT_EQ(mesh.vertices[0].pos.x, 1.0);
    EXPECT_EQ(mesh.vertices[0].pos.y, -2.5);
    EXPECT_EQ(mesh.vertices[0].pos.z, 0.5);
    EXPECT_EQ(mesh.vertices[1].pos.x, 0.001);
    EXPECT_EQ(mesh.vertices[1].pos.y, 100.0);
    EXPECT_EQ(mesh.vertices[2].pos.x, 5.0);
    EXPECT_EQ(mesh.vertices[2].pos.y, 0.1);
    EXPECT_EQ(mesh.vertices[2].pos.z, 1e-320);
}

// ---- refused ----

TEST(OffRefused, SomethingElse) {
    const std::string advice = ", not with OFF; check that the extension fits the content";
    EXPECT_EQ(refusal("ply\nformat ascii 1.0\n"), "not an OFF file: line 1 begins with \"ply\"" + advice);
    EXPECT_EQ(refusal(""), "not an OFF file: line 1 begins with \"\"" + advice);
    EXPECT_EQ(refusal("\n\n4 2 5\n"), "not an OFF file: line 3 begins with \"4\"" + advice);
    EXPECT_EQ(refusal("\xff\xd8\xff\xe0\x01JFIF"), "not an OFF file: line 1 begins with \"?????JFIF\"" + advice);
    EXPECT_EQ(refusal(std::string(1000000, 'x')),
              "not an OFF file: line 1 begins with \"xxxxxxxxxxxxxxxxxxxxxxxx...\"" + advice);
}

TEST(OffRefused, BinaryOff) {
    EXPECT_EQ(refusal("OFF BINARY\n\1\2\3"), "line 1: \"BINARY\" is not a number of vertices" + repair);
}

TEST(OffRefused, CountsThatAreNone) {
    EXPECT_EQ(refusal("OFF\n-4 2 0\n"), "line 2: \"-4\" is not a number of vertices" + repair);
    EXPECT_EQ(refusal("OFF\n4 2.5 0\n"), "line 2: \"2.5\" is not a number of faces" + repair);
    EXPECT_EQ(refusal("OFF\n99999999999999999999 2 0\n"),
              "line 2: \"99999999999999999999\" is not a number of vertices" + repair);
    EXPECT_EQ(refusal("OFF\n4"), "line 2: \"\" is not a number of faces" + repair);
}

TEST(OffRefused, CoordinatesThatAreNoFiniteNumber) {
    const auto with = [](const std::string& word) { return "OFF\n3 1 0\n0 0 0\n1 " + word + " 0\n1 1 0\n3 0 1 2\n"; };
    for (const std::string word : {"nan", "-NaN", "inf", "1e999", "0x10", "1,5,5", "1.0f", "--1", "+-1", "one"}) {
        EXPECT_EQ(refusal(with(word)), in(4, word) + "is not a finite number" + repair);
    }
}

TEST(OffRefused, DecimalCommas) {
    for (const std::string word : {"1,5", "-0,25", "1,0e-3"}) {
        EXPECT_EQ(refusal("OFF\n3 1 0\n0 0 0\n1 " + word + " 0\n1 1 0\n3 0 1 2\n"),
                  in(4, word) + "has a decimal comma; export it with points");
    }
}

TEST(OffRefused, IndicesOutOfRange) {
    const auto with = [](const std::string& word) { return "OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n\n3 0 1 " + word + "\n"; };
    for (const std::string word : {"3", "-1", "1.0", "4294967296", "18446744073709551616", "x"}) {
        EXPECT_EQ(refusal(with(word)), in(7, word) + "is not the index of one of the 3 vertices" + repair);
    }
}

TEST(OffRefused, FacesWithoutANumberOfCorners) {
    EXPECT_EQ(refusal("OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n-3 0 1 2\n"),
              "line 6: \"-3\" is not the number of a face's corners" + repair);
}

TEST(OffRefused, FilesCutShort) {
    EXPECT_EQ(refusal("OFF\n3 1 0\n0 0 0\n1 0"), "the file ends at line 4 after 1 of 3 vertices" + cutShort);
    EXPECT_EQ(refusal("OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n"), "the file ends at line 6 after 0 of 1 faces" + cutShort);
    EXPECT_EQ(refusal("OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n3 0 1"),
              "the file ends at line 6 after 0 of 1 faces" + cutShort);
}

TEST(OffRefused, CountsThatPromiseTooMuch) {
    EXPECT_EQ(refusal("OFF\n1000000000000000000 1 0\n0 0 0\n"),
              "the file ends at line 4 after 1 of 1000000000000000000 vertices" + cutShort);
    EXPECT_EQ(refusal("OFF\n1 1000000000000000000 0\n0 0 0\n3 0 0 0\n"),
              "the file ends at line 5 after 1 of 1000000000000000000 faces" + cutShort);
    EXPECT_EQ(refusal("OFF\n1 1 0\n0 0 0\n1000000000000000000 0 0 0\n"),
              "the file ends at line 5 after 0 of 1 faces" + cutShort);
}

TEST(OffRefused, CountsThatPromiseTooLittle) {
    EXPECT_EQ(refusal("OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n3 0 1 2\n3 2 1 0\n"),
              "line 7: more follows than the announced 1 faces" + repair);
}

// ---- written ----

TEST(OffWritten, EqualCornersAreOneVertex) {
    EXPECT_EQ(writeAs(writeOff, readAs(readOff, square)), "OFF\n4 2 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2 3\n");
    EXPECT_EQ(writeAs(writeOff, box({0, 0, 0}, {1, 1, 1})).substr(0, 11), "OFF\n8 12 0\n");
}

TEST(OffWritten, PositiveAndNegativeZeroAreOneVertex) {
    EXPECT_EQ(
        writeAs(writeOff, meshOf({{{{0.0, 1, 2}, {3, 4, 5}, {6, 7, 8}}}, {{{-0.0, 1, 2}, {6, 7, 8}, {9, 9, 9}}}})),
        "OFF\n4 2 0\n0 1 2\n3 4 5\n6 7 8\n9 9 9\n3 0 1 2\n3 0 2 3\n");
}

TEST(OffWritten, NoTriangles) {
    EXPECT_EQ(writeAs(writeOff, {}), "OFF\n0 0 0\n");
    EXPECT_TRUE(readAs(readOff, "OFF\n0 0 0\n").vertices.empty());
}

TEST(OffWritten, EveryDoubleComesBack) {
    using Limits = std::numeric_limits<double>;
    const std::vector<double> values{0.1,
                                     1.0 / 3,
                                     -1.0 / 3,
                                     Limits::max(),
                                     Limits::lowest(),
                                     Limits::min(),
                                     Limits::denorm_min(),
                                     -0.0,
                                     1 + Limits::epsilon(),
                                     123456789.123456789,
                                     1e22,
                                     9007199254740993.0};
    for (const double value : values) {
        const Mesh mesh = readAs(readOff, writeAs(writeOff, meshOf({{{{value, 1, 2}, {3, value, 5}, {6, 7, value}}}})));
        for (const double read : {mesh.vertices[0].pos.x, mesh.vertices[1].pos.y, mesh.vertices[2].pos.z}) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value)) << value;
        }
    }
}

// ---- by the program ----

using OffFile = ProgramTest;

TEST_F(OffFile, IsRefusedByNameAndLine) {
    const std::string name = file("broken.off", "OFF\n3 1 0\n0 0 0\n1 nan 0\n1 1 0\n3 0 1 2\n");
    expectFailure(orva({"convert", name, "-o", file("out.off")}), 3,
                  name + ": line 4: \"nan\" is not a finite number" + repair);
    EXPECT_EQ(files(), std::vector<std::string>{"broken.off"});
}

TEST_F(OffFile, SurvivesReadingAndWriting) {
    const std::string text = "OFF\n3 1 0\n0.1 1e-17 -3\n1 0.30000000000000004 0\n1 1 1e+300\n3 0 1 2\n";
    const std::string copy = file("copy.off");
    EXPECT_EQ(orva({"convert", file("a.off", text), "-o", copy}).exitCode, 0);
    EXPECT_EQ(contentOf(copy), text);
}

} // namespace
} // namespace orva::program

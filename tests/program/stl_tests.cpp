// Binary STL: what is read, what is refused and with which words, what is written.
#include "formats/stl.hpp"

#include "failure.hpp"
#include "program.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orva::program {
namespace {

std::string refusal(const std::string& bytes) {
    return refusalOf(readStl, bytes);
}

std::string unwritable(double coordinate) {
    try {
        writeAs(writeStl, meshOf({{{{coordinate, 0, 0}, {1, 0, 0}, {0, 1, 0}}}}));
        return "nothing was refused";
    } catch (const MeshError& error) {
        return error.what();
    }
}

// ---- read ----

TEST(StlRead, PositionsInSinglePrecision) {
    const Mesh mesh = readAs(readStl, stlFile(1, stlTriangle()));
    ASSERT_EQ(mesh.vertices.size(), 3U);
    EXPECT_EQ(mesh.vertices[0].pos.x, 1.5);
    EXPECT_EQ(mesh.vertices[1].pos.y, static_cast<double>(0.1F));
    EXPECT_EQ(mesh.vertices[2].pos.z, static_cast<double>(-3e-5F));
}

TEST(StlRead, NormalsAreThoseOfTheTrianglesNotThoseInTheFile) {
    for (const types::Vertex& vertex : readAs(readStl, stlFile(1, stlTriangle())).vertices) {
        EXPECT_EQ(vertex.normal.x, -1.0);
        EXPECT_EQ(vertex.normal.y, 0.0);
        EXPECT_EQ(vertex.normal.z, 0.0);
    }
}

TEST(StlRead, TriangleWithoutAreaHasNoNormal) {
    for (const types::Vertex& vertex : readAs(readStl, stlFile(1, std::vector<float>(12, 1.0F))).vertices) {
        EXPECT_TRUE(vertex.normal.x == 0.0 && vertex.normal.y == 0.0 && vertex.normal.z == 0.0);
    }
}

TEST(StlRead, BinaryFileWhoseHeaderSaysSolid) {
    EXPECT_EQ(readAs(readStl, stlFile(1, stlTriangle(), "solid part")).vertices.size(), 3U);
}

TEST(StlRead, NoTriangles) {
    EXPECT_TRUE(readAs(readStl, stlFile(0, {})).vertices.empty());
}

// ---- refused ----

TEST(StlRefused, ShorterThanTheHeader) {
    EXPECT_EQ(refusal(""), "not an STL file: it ends after 0 bytes, within the header of 84; export it again");
    EXPECT_EQ(refusal(std::string(83, 'x')),
              "not an STL file: it ends after 83 bytes, within the header of 84; export it again");
}

TEST(StlRefused, CountsThatDoNotMatchTheSize) {
    EXPECT_EQ(refusal(stlFile(2, stlTriangle())),
              "not a whole STL file: at byte 80 it announces 2 triangles, which take 184 bytes, but it has 134 bytes; "
              "export it again");
    EXPECT_EQ(refusal(stlFile(0, stlTriangle())),
              "not a whole STL file: at byte 80 it announces 0 triangles, which take 84 bytes, but it has 134 bytes; "
              "export it again");
    EXPECT_EQ(
        refusal(stlFile(4294967295U, {})),
        "not a whole STL file: at byte 80 it announces 4294967295 triangles, which take 214748364834 bytes, but it "
        "has 84 bytes; export it again");
}

TEST(StlRefused, BinaryFileCutShortWhoseHeaderSaysSolid) {
    EXPECT_EQ(refusal(stlFile(2, stlTriangle(), "solid part")),
              "not a whole STL file: at byte 80 it announces 2 triangles, which take 184 bytes, but it has 134 bytes; "
              "export it again");
}

TEST(StlRefused, CoordinatesThatAreNoFiniteNumber) {
    std::vector<float> floats = stlTriangle();
    const std::vector<float> second = stlTriangle();
    floats.insert(floats.end(), second.begin(), second.end());
    for (const float value : {std::nanf(""), std::numeric_limits<float>::infinity()}) {
        floats[12 + 3 + 4] = value;
        EXPECT_EQ(refusal(stlFile(2, floats)),
                  "the coordinate at byte 162 is not a finite number; repair the mesh or export it again");
    }
}

TEST(StlRead, NormalsInTheFileMayBeAnything) {
    std::vector<float> floats = stlTriangle();
    floats[0] = std::nanf("");
    EXPECT_EQ(readAs(readStl, stlFile(1, floats)).vertices.size(), 3U);
}

// ---- written ----

TEST(StlWritten, IsWhatWasRead) {
    const std::string bytes = writeAs(writeStl, box({0.1, 0.2, 0.3}, {1.1, 1.2, 1.3}));
    EXPECT_EQ(bytes.size(), 84U + 12 * 50);
    EXPECT_EQ(writeAs(writeStl, readAs(readStl, bytes)), bytes);
}

TEST(StlWritten, HeaderDoesNotSaySolid) {
    EXPECT_FALSE(writeAs(writeStl, {}).starts_with("solid"));
}

TEST(StlWritten, NormalsFitTheWrittenPositions) {
    // In double precision this triangle has area; its corners fall together in single precision.
    const double near = 1.0 + 1e-12;
    const std::string bytes = writeAs(writeStl, meshOf({{{{1, 1, 1}, {near, 1, 1}, {1, near, 1}}}}));
    EXPECT_EQ(bytes.substr(84, 12), std::string(12, '\0'));
}

TEST(StlWritten, CoordinatesBeyondSinglePrecisionAreRefused) {
    EXPECT_EQ(unwritable(1e39), "a coordinate of the result is too large for single precision; write .off");
    EXPECT_EQ(unwritable(-1e300), "a coordinate of the result is too large for single precision; write .off");
    EXPECT_EQ(unwritable(static_cast<double>(std::numeric_limits<float>::max())), "nothing was refused");
}

// ---- by the program ----

using StlFile = ProgramTest;

TEST_F(StlFile, SurvivesReadingAndWriting) {
    const std::string first = file("first.stl");
    const std::string middle = file("middle.off");
    const std::string last = file("last.stl");
    ASSERT_EQ(orva({"convert", file("box.off", boxFile({0.1, 0, 0}, {1, 1.7, 1e-3})), "-o", first}).exitCode, 0);
    ASSERT_EQ(orva({"convert", first, "-o", middle}).exitCode, 0);
    ASSERT_EQ(orva({"convert", middle, "-o", last}).exitCode, 0);
    EXPECT_EQ(contentOf(last), contentOf(first));
}

TEST_F(StlFile, IsRefusedByName) {
    const std::string name = file("part.stl", "solid part\nfacet\n");
    expectFailure(orva({"convert", name, "-o", file("out.off")}), 3,
                  name + ": the file ends at line 3 before its endsolid; it is cut short, export it again");
}

TEST_F(StlFile, IsNotWrittenWithCoordinatesBeyondSinglePrecision) {
    const std::string out = file("out.stl");
    const std::string huge = file("huge.off", "OFF\n3 1 0\n1e39 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
    expectFailure(orva({"convert", huge, "-o", out}), 6,
                  out + ": a coordinate of the result is too large for single precision; write .off");
    EXPECT_EQ(files(), std::vector<std::string>{"huge.off"});
}

} // namespace
} // namespace orva::program

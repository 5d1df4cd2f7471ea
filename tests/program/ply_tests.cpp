// PLY: what is read, what is refused and with which words, what is written.
#include "formats/ply.hpp"

#include "failure.hpp"
#include "formats/bytes.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace orva::program {
namespace {

const std::string positions = "property float x\nproperty float y\nproperty float z\n";
const std::string indices = "property list uchar int vertex_indices\n";

std::string header(const std::string& form, const std::string& elements) {
    return "ply\nformat " + form + " 1.0\n" + elements + "end_header\n";
}

std::string ascii(const std::string& vertices, const std::string& faces, const std::string& content) {
    return header("ascii", "element vertex 3\n" + vertices + "element face 1\n" + faces) + content;
}

const std::string triangle = ascii(positions, indices, "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");

std::string reread(const std::string& bytes) {
    Notes notes;
    return writeTextPly(modelAs(readPly, bytes), {}, notes);
}

// The sample's numbers in every place of a type.
template <typename T> void append(std::string& bytes, ByteOrder order, std::initializer_list<int> values) {
    for (const int value : values) appendNumber(bytes, static_cast<T>(value), order);
}

TEST(PlyRead, TextAndBothByteOrders) {
    const std::string expected = reread(triangle);
    EXPECT_NE(expected.find("\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n"), std::string::npos);
    for (const ByteOrder order : {ByteOrder::Little, ByteOrder::Big}) {
        std::string bytes = header(order == ByteOrder::Little ? "binary_little_endian" : "binary_big_endian",
                                   "element vertex 3\nproperty short x\nproperty list ushort double skipped\n"
                                   "property double y\nproperty char z\nproperty uint8 red\nelement empty 4294967295\n"
                                   "element edge 2\nproperty int16 a\nproperty uint16 b\nelement face 1\n"
                                   "property float quality\nproperty list int ushort vertex_index\n");
        for (const int corner : {0, 1, 2}) {
            append<std::int16_t>(bytes, order, {corner == 1});
            append<std::uint16_t>(bytes, order, {corner});
            for (int i = 0; i < corner; ++i) append<double>(bytes, order, {7});
            append<double>(bytes, order, {corner == 2});
            append<char>(bytes, order, {0, 99});
        }
        append<std::int16_t>(bytes, order, {1, 2, 3, 4});
        append<float>(bytes, order, {5});
        append<std::int32_t>(bytes, order, {3});
        append<std::uint16_t>(bytes, order, {0, 1, 2});
        EXPECT_EQ(reread(bytes), expected);
        EXPECT_EQ(reread(bytes + "\r\n"), expected);
    }
}

TEST(PlyRead, EveryLineEnd) {
    for (const std::string end : {"\r\n", "\r"}) {
        std::string text;
        for (const char c : triangle) text += c == '\n' ? end : std::string(1, c);
        EXPECT_EQ(reread(text), reread(triangle));
        // Binary content may begin with the byte of a line end.
        const std::string binary = "ply" + end + "format binary_little_endian 1.0" + end + "element vertex 1" + end +
                                   "property uchar x" + end + "property uchar y" + end + "property uchar z" + end +
                                   "element face 0" + end + "property list uchar int vertex_indices" + end +
                                   "end_header" + end + "\n\n\n";
        EXPECT_EQ(refusalOf(readPly, binary), "nothing was refused");
    }
}

TEST(PlyRead, CommentsAndByteOrderMark) {
    EXPECT_EQ(reread("\xEF\xBB\xBF"
                     "ply\ncomment made by hand\nobj_info 7\n" +
                     triangle.substr(4)),
              reread(triangle));
}

TEST(PlyRead, NormalsAndTextureCoordinatesByAnyOfTheirNames) {
    for (const std::string names : {"s t", "u v", "texture_u texture_v"}) {
        const std::size_t space = names.find(' ');
        const std::string text =
            ascii(positions + "property float nx\nproperty float ny\nproperty float nz\n" + "property float " +
                      names.substr(0, space) + "\nproperty float " + names.substr(space + 1) + "\n",
                  indices, "0 0 0 0 0 -1 .5 1\n1 0 0 0 0 -1 0 0\n0 1 0 0 0 -1 0 0\n3 0 1 2\n");
        const Model model = modelAs(readPly, text);
        EXPECT_TRUE(model.hasNormals && model.hasTexture);
        EXPECT_EQ(model.mesh.vertices[0].normal.z, -1.0);
        EXPECT_EQ(model.mesh.vertices[0].aux, (std::array<double, 2>{0.5, 1}));
    }
    EXPECT_FALSE(modelAs(readPly, triangle).hasNormals);
}

TEST(PlyRead, OriginsComeBackAsTheyWere) {
    Model model;
    model.mesh = meshOf({{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}, {{{0, 0, 0}, {0, 1, 0}, {0, 0, 1}}}});
    model.origins = {{0, 7}, {0xFFFFFFFF, 0xFFFFFFFF}};
    for (const auto write : {writePly, writePlyBigEndian, writeTextPly}) {
        Notes notes;
        const Model read = modelAs(readPly, write(model, {}, notes));
        ASSERT_EQ(read.origins.size(), 2U);
        EXPECT_TRUE(read.origins[0].mesh == 0 && read.origins[0].face == 7);
        EXPECT_TRUE(read.origins[1].mesh == 0xFFFFFFFF && read.origins[1].face == 0xFFFFFFFF);
    }
    const std::string fan =
        header("ascii", "element vertex 4\n" + positions + "element face 1\nproperty int source_face\n" + indices +
                            "property int source_mesh\n") +
        "0 0 0\n1 0 0\n1 1 0\n0 1 0\n5 4 0 1 2 3 6\n";
    const Model read = modelAs(readPly, fan);
    ASSERT_EQ(read.origins.size(), 2U); // both triangles of the face
    EXPECT_TRUE(read.origins[1].mesh == 6 && read.origins[1].face == 5);
    EXPECT_EQ(read.faces, (std::vector<std::uint32_t>{0, 0}));
}

TEST(PlyRead, FileWithoutFacesSaysSo) {
    Notes notes;
    EXPECT_TRUE(readPly(header("ascii", "element vertex 1\n" + positions) + "0 0 0\n", notes).mesh.vertices.empty());
    EXPECT_EQ(notes, Notes{"the file has 1 vertices and no faces"});
}

TEST(PlyRefused, InOneLineThatSaysWhereAndWhatToDo) {
    const std::string repair = "; repair the mesh or export it again";
    const std::string cut = "; it is cut short or its counts are wrong, export it again";
    const std::string faces = "element face 1\n" + indices;
    const std::string vertices = "element vertex 1\n" + positions;
    const std::string little = "binary_little_endian";
    const std::string nan = std::string("\0\0\xC0\x7F", 4);
    const struct {
        std::string bytes;
        std::string message;
    } cases[]{
        {"OFF\n",
         "not a PLY file: line 1 begins with \"OFF\", not with ply; check that the extension fits the content"},
        {"ply\nformat ascii 1.0\n", "the file ends at line 3 within its header; it is cut short, export it again"},
        {"ply\nformat xml 1.0\n",
         "line 2: \"xml\" is none of ascii, binary_little_endian and binary_big_endian" + repair},
        {"ply\nend_header\n", "line 2: the header does not say whether the content is text or binary" + repair},
        {"ply\nelement vertex -1\n", "line 2: \"-1\" is not a number of elements" + repair},
        {"ply\nproperty float x\n", "line 2: a property stands before the first element" + repair},
        {"ply\nelement vertex 1\nproperty half x\n", "line 3: \"half\" is not a type of numbers" + repair},
        {"ply\nelement vertex 1\nproperty float\n", "line 3: the property has no name" + repair},
        {"ply\nelement face 1\nproperty list float int i\n",
         "line 3: the length of a list has to be a whole number" + repair},
        {"ply\nelements\n", "line 2: \"elements\" is no word of a PLY header" + repair},
        {header("ascii", "element vertex 1\nproperty float x\n"), "the vertices have no x, y and z; export it again"},
        {header("ascii", vertices + vertices) + "0 0 0 ", "the element vertex is there twice; export it again"},
        {header("ascii", faces), "the faces stand before the vertices; export it again"},
        {header("ascii", vertices + "element face 1\nproperty list uchar float vertex_indices\n") + "0 0 0",
         "the faces have no list of whole numbers vertex_indices; export it again"},
        {header("ascii", vertices) + "0 0 nan", "line 8: \"nan\" is not a finite number" + repair},
        {header("ascii", vertices) + "0 0 0,1", "line 8: \"0,1\" has a decimal comma; export it with points"},
        {header("ascii", vertices) + "0 0", "the file ends at line 8 after 0 of 1 vertices" + cut},
        {header("ascii", vertices) + "0 0 0 0", "line 8: more follows than the header announces" + repair},
        {header("ascii", vertices + faces) + "0 0 0\n3 0 1 0",
         "line 11: 1 is not the index of one of the 1 vertices" + repair},
        {header("ascii", vertices + faces) + "0 0 0\n3 0 0.5 0", "line 11: \"0.5\" is not a whole number" + repair},
        {header("ascii", vertices + faces) + "0 0 0\n-3", "line 11: -3 is not the length of a list" + repair},
        {header("ascii", vertices + faces) + "0 0 0\n4000000000 0 0",
         "the file ends at line 11 after 0 of 1 faces" + cut},
        {header("ascii", vertices + "element face 1\nproperty int source_mesh\nproperty int source_face\n" + indices) +
             "0 0 0\n-1 0 0",
         "line 13: -1 is no source_mesh" + repair},
        {header("ascii", "element edge 4000000000000000000\nproperty int a\n") + "0 0",
         "the file ends at line 6 after 2 of 4000000000000000000 \"edge\" elements" + cut},
        {header(little, "element vertex 4294967295\n" + positions) + std::string(12, '\0'),
         "the file ends at byte 136 after 1 of 4294967295 vertices" + cut},
        {header(little, vertices) + std::string(8, '\0') + nan, "byte 123: this is not a finite number" + repair},
        {header(little, vertices) + std::string(13, '\0'), "byte 127: more follows than the header announces" + repair},
        {header(little, vertices + faces) + std::string(12, '\0') + "\3" + std::string("\0\0\0\0\xFF\xFF\xFF\xFF", 8),
         "byte 186: -1 is not the index of one of the 1 vertices" + repair},
        {header(little, vertices + "element face 1\nproperty list uint double skipped\n" + indices) +
             std::string(12, '\0') + "\xFF\xFF\xFF\xFF",
         "the file ends at byte 219 after 0 of 1 faces" + cut},
    };
    for (const auto& [bytes, message] : cases) EXPECT_EQ(refusalOf(readPly, bytes), message);
}

TEST(PlyWritten, WhatTheModelHasAndNoMore) {
    EXPECT_EQ(writeAs(writeTextPly, readAs(readPly, triangle)),
              "ply\nformat ascii 1.0\ncomment written by orva\nelement vertex 3\nproperty double x\nproperty double y\n"
              "property double z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n0 0 0\n1 0 0\n"
              "0 1 0\n3 0 1 2\n");
}

TEST(PlyWritten, CornersThatDifferOnlyInTheirNormalsAreTwoVertices) {
    Model model;
    model.mesh = box({0, 0, 0}, {1, 1, 1});
    Notes notes;
    EXPECT_NE(writePly(model, {}, notes).find("element vertex 8\n"), std::string::npos);
    model.hasNormals = true;
    EXPECT_NE(writePly(model, {}, notes).find("element vertex 24\n"), std::string::npos);
}

} // namespace
} // namespace orva::program

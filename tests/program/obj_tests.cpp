// OBJ: what is read, what is refused and with which words, what is written.
#include "formats/obj.hpp"

#include "failure.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

namespace orva::program {
namespace {

const std::string corners = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";
const std::string written = "# written by orva\n";

std::string reread(const std::string& text) {
    Notes notes;
    return writeObj(modelAs(readObj, text), {}, notes);
}

TEST(ObjRead, FacesByPositionsAlone) {
    const std::string square = written + corners + "f 1 2 3\nf 1 3 4\n";
    EXPECT_EQ(reread(corners + "f 1 2 3\nf 1 3 4\n"), square);
    EXPECT_EQ(reread(corners + "f 1 2 3 4\n"), square);
    EXPECT_EQ(reread(corners + "f -4 -3 -2 -1\n"), square);
    EXPECT_EQ(reread(corners + "f 1// 2/ 3 4\n"), square);
    EXPECT_EQ(reread(corners + "f 1 \\\n 2 3\\\r\n 4"), square);
    EXPECT_EQ(reread("v 0 0 0 1.0\nv 1 0 0 1 0.5 0.5\nv 1 1 0 # corner\nv 0 1 0\n#f 1 1 1\n\nf 1 2 3 4"), square);
}

TEST(ObjRead, OtherKeywordsArePassedOver) {
    EXPECT_EQ(reread("mtllib a b.mtl\no part\n" + corners +
                     "g left right\nusemtl red\ns off\nl 1 2\np 1\nfoo 7 \\\n f\n"
                     "f 1 2 3\n"),
              written + "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n");
    EXPECT_EQ(reread("# nothing\n"), written);
    EXPECT_EQ(reread(""), written);
}

TEST(ObjRead, NormalsAndTextureCoordinatesWhereTheyAre) {
    const std::string attributes = "vt 0.5 0.25 9\nvt 1\nvn 0 0 -2\n";
    const Model all = modelAs(readObj, corners + attributes + "f 1/1/1 2/2/1 3/-1/-1\n");
    EXPECT_TRUE(all.hasNormals && all.hasTexture);
    EXPECT_EQ(all.mesh.vertices[0].aux, (std::array<double, 2>{0.5, 0.25}));
    EXPECT_EQ(all.mesh.vertices[1].aux, (std::array<double, 2>{1, 0}));
    EXPECT_EQ(all.mesh.vertices[2].normal.z, -2.0);

    const Model some = modelAs(readObj, corners + attributes + "f 1//1 2 3\n");
    EXPECT_TRUE(some.hasNormals);
    EXPECT_FALSE(some.hasTexture);
    EXPECT_EQ(some.mesh.vertices[0].normal.z, -2.0);
    EXPECT_EQ(some.mesh.vertices[1].normal.z, 1.0); // that of its triangle

    const Model texture = modelAs(readObj, corners + attributes + "f 1/1 2/2 3\n");
    EXPECT_TRUE(texture.hasTexture);
    EXPECT_FALSE(texture.hasNormals);
    EXPECT_EQ(texture.mesh.vertices[2].aux, (std::array<double, 2>{0, 0}));
}

TEST(ObjRead, TrianglesKnowTheirFaces) {
    EXPECT_EQ(modelAs(readObj, corners + "f 1 2 3\nf 1 2\nf 1 2 3 4\n").faces, (std::vector<std::uint32_t>{0, 2, 2}));
}

TEST(ObjRefused, InOneLineThatSaysWhereAndWhatToDo) {
    const std::string repair = "; repair the mesh or export it again";
    const struct {
        std::string text;
        std::string message;
    } cases[]{
        {"ply\nformat ascii 1.0\n",
         "not an OBJ file: line 1 begins with \"ply\"; check that the extension fits the content"},
        {"v 0 0", "line 1: too few numbers behind v" + repair},
        {"v 0 0 0\nvn 0 0\n1", "line 2: too few numbers behind vn" + repair},
        {"\nvt\n", "line 2: too few numbers behind vt" + repair},
        {"v 0 0 -nan(ind)", "line 1: \"-nan(ind)\" is not a finite number" + repair},
        {"v 0 0 1e999", "line 1: \"1e999\" is not a finite number" + repair},
        {"v 0 0,5 0", "line 1: \"0,5\" has a decimal comma; export it with points"},
        {corners + "f 1 2 5", "line 5: \"5\" is not the number of one of the 4 positions above" + repair},
        {corners + "f 1 2 0", "line 5: \"0\" is not the number of one of the 4 positions above" + repair},
        {corners + "f -5 2 1", "line 5: \"-5\" is not the number of one of the 4 positions above" + repair},
        {corners + "f 9223372036854775808 1 2",
         "line 5: \"9223372036854775808\" is not the number of one of the 4 positions above" + repair},
        {corners + "f -9223372036854775808 1 2",
         "line 5: \"-9223372036854775808\" is not the number of one of the 4 positions above" + repair},
        {corners + "f //1 2 3", "line 5: \"\" is not the number of one of the 4 positions above" + repair},
        {corners + "f 1/1 2 3", "line 5: \"1\" is not the number of one of the 0 texture coordinates above" + repair},
        {corners + "vn 0 0 1\nf 1//2 2 3", "line 6: \"2\" is not the number of one of the 1 normals above" + repair},
        {corners + "f 1/1/1/1 2 3", "line 5: \"1/1/1/1\" has more than three numbers for a corner" + repair},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(refusalOf(readObj, text), message);
}

TEST(ObjWritten, EqualValuesOnceEachOnItsOwn) {
    const std::string text =
        written + corners + "vt 0 0\nvt 1 0.5\nvn 0 0 1\n" + "f 1/1/1 2/2/1 3/1/1\nf 1/2/1 3/1/1 4/1/1\n";
    EXPECT_EQ(reread(text), text);
    EXPECT_EQ(reread(corners + "vn 0 0 1\nf 1//1 2//1 3//1\n"),
              written + "v 0 0 0\nv 1 0 0\nv 1 1 0\nvn 0 0 1\nf 1//1 2//1 3//1\n");
    EXPECT_EQ(reread(corners + "vt 0 0\nf 1/1 2/1 3/1\n"),
              written + "v 0 0 0\nv 1 0 0\nv 1 1 0\nvt 0 0\nf 1/1 2/1 3/1\n");
}

} // namespace
} // namespace orva::program

// STL as text: what is read, what is refused and with which words, what is written.
#include "formats/stl_text.hpp"

#include "failure.hpp"
#include "formats/stl.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

namespace orva::program {
namespace {

const std::string facet =
    "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1e-1 0\nendloop\nendfacet\n";
const std::string part = "solid part\n" + facet + "endsolid part\n";

TEST(TextStlRead, IsToldByItsContent) {
    const Mesh mesh = readAs(readStl, part);
    ASSERT_EQ(mesh.vertices.size(), 3U);
    EXPECT_EQ(mesh.vertices[2].pos.y, 0.1);
    EXPECT_EQ(mesh.vertices[2].normal.z, 1.0);
    EXPECT_EQ(readAs(readStl, "\xEF\xBB\xBF\r\n " + part).vertices.size(), 3U);
}

TEST(TextStlRead, SolidsOneBehindTheOther) {
    EXPECT_EQ(readAs(readStl, part + "\n" + part).vertices.size(), 6U);
    EXPECT_EQ(readAs(readStl, "solid\nendsolid\n" + part).vertices.size(), 3U);
}

TEST(TextStlRead, WordsInUpperCaseAndAnyLayout) {
    EXPECT_EQ(readAs(readStl, "SOLID x y z\rFACET NORMAL nan nan nan OUTER LOOP VERTEX 0 0 0 Vertex 1 0 0\r"
                              "VERTEX +0 1. 0 ENDLOOP ENDFACET ENDSOLID x y z\r")
                  .vertices.size(),
              3U);
}

TEST(TextStlRefused, InOneLineThatSaysWhereAndWhatToDo) {
    const std::string cut = "; it is cut short, export it again";
    const std::string repair = "; repair the mesh or export it again";
    const struct {
        std::string text;
        std::string message;
    } cases[]{
        {"solid\n" + facet, "the file ends at line 9 before its endsolid" + cut},
        {"solid", "the file ends at line 1 before its endsolid" + cut},
        {"solid\nfacet normal 0 0", "the file ends at line 2 before its endsolid" + cut},
        {"solid\nfacet normal 0 0 1\nouter lop", "line 3: \"lop\" stands where loop belongs" + repair},
        {"solid\nfacets", "line 2: \"facets\" stands where facet or endsolid belongs" + repair},
        {part + "more", "line 10: \"more\" stands where solid belongs" + repair},
        {"solid\nfacet normal 0 0 1 outer loop\nvertex 0 0 inf", "line 3: \"inf\" is not a finite number" + repair},
        {"solid\nfacet normal 0 0 1 outer loop\nvertex 0 0 0,5",
         "line 3: \"0,5\" has a decimal comma; export it with points"},
        {"solid\nfacet normal 0 0 1 outer loop vertex 0 0 0 vertex 0 0 0\nendloop",
         "line 3: \"endloop\" stands where vertex belongs" + repair},
        {"solid\nfacet normal 0 0 1 outer loop vertex 0 0 0 vertex 0 0 0 vertex 0 0 0\nvertex",
         "line 3: \"vertex\" stands where endloop belongs" + repair},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(refusalOf(readStl, text), message);
}

TEST(TextStlWritten, FormIsThatOfEveryOtherProgram) {
    EXPECT_EQ(writeAs(writeTextStl, readAs(readStl, part)),
              "solid orva\n  facet normal 0 0 1\n    outer loop\n      vertex 0 0 0\n      vertex 1 0 0\n"
              "      vertex 0 0.1 0\n    endloop\n  endfacet\nendsolid orva\n");
}

TEST(TextStlWritten, DigitsThatAreAskedForDecideWhatCollapses) {
    Model model;
    model.mesh = meshOf({{{{1, 0, 0}, {1.004, 0, 0}, {1, 1, 0}}}, {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}});
    Notes notes;
    writeTextStl(model, {}, notes);
    EXPECT_EQ(notes, Notes());
    const std::string text = writeTextStl(model, {2}, notes);
    EXPECT_EQ(notes, Notes{"1 of 2 triangles collapse in 2 digits: nothing is left of their area; .ply, .obj and .off "
                           "keep them"});
    EXPECT_EQ(text.substr(0, 32), "solid orva\n  facet normal 0 0 0\n"); // of what is written
}

} // namespace
} // namespace orva::program

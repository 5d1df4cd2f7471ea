// A file's own vertices: kept by readers, written by writers, also where two lie in one position.
#include "formats/glb.hpp"
#include "formats/obj.hpp"
#include "formats/off.hpp"
#include "formats/ply.hpp"
#include "formats/stl.hpp"
#include "measures/fitness.hpp"
#include "mesh/shared_vertices.hpp"
#include "program.hpp"
#include "samples.hpp"

#include <algorithm>

namespace orva::program {
namespace {

using Indices = std::vector<std::uint32_t>;

// Two triangles that touch along an edge, whose positions each of them has on its own; the second vertex is unused.
const std::string offFile = "OFF\n7 2 0\n0 0 0\n9 9 9\n1 0 0\n0 1 0\n1 0 0\n0 1 0\n1 1 0\n3 0 2 3\n3 4 6 5\n";

Manifold manifoldOf(const Model& model) {
    return measureFitness(model).byIndex;
}

// Two boxes that touch along an edge, each with vertices of its own: edge-manifold by index alone.
Model touchingBoxes() {
    Model model;
    for (const auto& triangles : {boxTriangles({0, 0, 0}, {1, 1, 1}), boxTriangles({1, 1, 0}, {2, 2, 1})}) {
        const Mesh part = meshOf(triangles);
        const auto base = static_cast<std::uint32_t>(model.mesh.vertices.empty() ? 0 : 8);
        for (const std::size_t corner : shareVertices(part).corners) {
            model.indices.push_back(base + static_cast<std::uint32_t>(corner));
        }
        model.mesh.vertices.insert(model.mesh.vertices.end(), part.vertices.begin(), part.vertices.end());
    }
    return model;
}

TEST(Indices, OfOff) {
    const Model model = modelAs(readOff, offFile);
    EXPECT_EQ(model.indices, (Indices{0, 2, 3, 4, 6, 5}));
    EXPECT_EQ(manifoldOf(model).openEdges, 6U);
    EXPECT_EQ(manifoldOf(model).vertices, 6U);
}

TEST(Indices, OfFacesWithManyCorners) {
    const Model model = modelAs(readOff, "OFF\n4 2 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n2 0 1\n");
    EXPECT_EQ(model.indices, (Indices{0, 1, 2, 0, 2, 3}));
}

TEST(Indices, OfObj) {
    const Model model =
        modelAs(readObj, "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 1\nf 1/1 2/1 3/1\nf -3/2 -1/2 -2/2\n");
    EXPECT_EQ(model.indices, (Indices{0, 1, 2, 0, 2, 1})); // by positions alone
}

TEST(Indices, OfPly) {
    const Model model = modelAs(readPly, "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
                                         "property float z\nelement face 2\nproperty list uchar int vertex_indices\n"
                                         "end_header\n0 0 0\n1 0 0\n0 1 0\n0 0 0\n3 0 1 2\n3 3 2 1\n");
    EXPECT_EQ(model.indices, (Indices{0, 1, 2, 3, 2, 1}));
}

TEST(Indices, OfStlAreNone) {
    const Model model = modelAs(readStl, stlFile(1, stlTriangle()));
    EXPECT_TRUE(model.indices.empty());
    EXPECT_EQ(verticesOf(model).positions.size(), 3U);
}

TEST(Indices, OfGlb) {
    Notes notes;
    const Model before = touchingBoxes();
    const Model model = modelAs(readGlb, writeGlb(before, {}, notes));
    ASSERT_EQ(model.indices.size(), 72U);
    EXPECT_EQ(*std::max_element(model.indices.begin(), model.indices.end()), 15U);
    EXPECT_TRUE(isEdgeManifold(manifoldOf(model)));
}

TEST(Indices, VerticesComeInTheOrderOfFirstUse) {
    Model model = modelAs(readOff, offFile);
    const SharedVertices shared = verticesOf(model);
    EXPECT_EQ(shared.corners, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
    ASSERT_EQ(shared.positions.size(), 6U);
    EXPECT_EQ(shared.positions[4].y, 1.0);
    model.indices.clear();
    EXPECT_EQ(verticesOf(model).positions.size(), 4U);
}

TEST(Indices, AreWritten) {
    const Model before = touchingBoxes();
    ASSERT_TRUE(isEdgeManifold(manifoldOf(before)));
    const std::vector<std::pair<decltype(Format::write), decltype(Format::read)>> formats{{writeOff, readOff},
                                                                                          {writeObj, readObj},
                                                                                          {writePly, readPly},
                                                                                          {writeTextPly, readPly},
                                                                                          {writePlyBigEndian, readPly}};
    for (const auto& [write, read] : formats) {
        Notes notes;
        const Model after = modelAs(read, write(before, {}, notes));
        EXPECT_EQ(after.indices, before.indices);
        EXPECT_TRUE(isEdgeManifold(manifoldOf(after)));
        EXPECT_EQ(manifoldOf(after).umbrellas, 0U);
    }
    Notes notes;
    Model without = before;
    without.indices.clear();
    EXPECT_EQ(manifoldOf(modelAs(readOff, writeOff(without, {}, notes))).doubledEdges, 1U);
}

TEST(Indices, SurviveNormalsInObj) {
    Model before = touchingBoxes(); // each triangle's own normal: hard edges everywhere
    before.hasNormals = true;
    Notes notes;
    EXPECT_EQ(modelAs(readObj, writeObj(before, {}, notes)).indices, before.indices);
    // In PLY a vertex has one normal, so there are more vertices then.
    EXPECT_FALSE(isEdgeManifold(manifoldOf(modelAs(readPly, writePly(before, {}, notes)))));
}

class IndicesInFiles : public ProgramTest {};

TEST_F(IndicesInFiles, AreConverted) {
    Notes notes;
    const std::string boxes = file("boxes.off", writeOff(touchingBoxes(), {}, notes));
    ASSERT_EQ(orva({"convert", boxes, "-o", file("boxes.ply"), "--scale", "3", "--move", "1", "2", "3"}).exitCode, 0);
    ASSERT_EQ(orva({"convert", file("boxes.ply"), "-o", file("boxes.obj")}).exitCode, 0);
    EXPECT_NE(orva({"check", file("boxes.obj")}).output.find("16 vertices: closed and edge-manifold"),
              std::string::npos);
}

} // namespace
} // namespace orva::program

// --keep-faces: which face of which input each triangle of a result came from.
#include "formats/off.hpp"
#include "formats/ply.hpp"
#include "mesh/origins.hpp"
#include "program.hpp"
#include "report/report.hpp"
#include "samples.hpp"

#include "orva/bspcsg.hpp"

#include <algorithm>
#include <limits>

namespace orva::program {
namespace {

Model boxModel(const Vec3& low, const Vec3& high) {
    Model model;
    model.mesh = box(low, high);
    return model;
}

TEST(Origins, OfACutBox) {
    Model block = boxModel({0, 0, 0}, {4, 4, 4});
    Model drill = boxModel({1, 1, 2}, {2, 2, 5});
    markFaces(block, 0);
    markFaces(drill, 1);
    Model result;
    bspcsg::subtractMesh(result.mesh, block.mesh, drill.mesh);
    readOrigins(result, {12, 12});
    const Shares shares = countShares(result.origins, {12, 12});

    ASSERT_EQ(result.origins.size(), countTriangles(result.mesh));
    EXPECT_EQ(shares.unknown, 0U);
    EXPECT_EQ(shares.inputs[0].triangles + shares.inputs[1].triangles, result.origins.size());
    EXPECT_EQ(shares.inputs[0].faces, 12U);
    EXPECT_EQ(shares.inputs[1].faces, 10U); // its top is outside
    for (std::size_t i = 0; i < result.origins.size(); ++i) {
        const Origin origin = result.origins[i];
        // Every corner of the piece lies in the plane of the face that it names: a box's faces have one coordinate
        // that is the same all over.
        const Mesh& source = origin.mesh == 0 ? block.mesh : drill.mesh;
        const types::Vertex* face = &source.vertices[3 * origin.face];
        for (double Vec3::*axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
            const double level = face[0].pos.*axis;
            if (face[1].pos.*axis != level || face[2].pos.*axis != level) continue;
            for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(result.mesh.vertices[3 * i + k].pos.*axis, level);
        }
    }
    for (const types::Vertex& vertex : result.mesh.vertices) EXPECT_EQ(vertex.aux, (std::array<double, 2>{}));
}

TEST(Origins, FacesWithManyTriangles) {
    Model model = boxModel({0, 0, 0}, {1, 1, 1});
    EXPECT_EQ(countFaces(model), 12U);
    model.faces = {0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5};
    model.hasTexture = true;
    EXPECT_EQ(countFaces(model), 6U);
    markFaces(model, 2);
    EXPECT_FALSE(model.hasTexture);
    readOrigins(model, {0, 0, 6});
    const Shares shares = countShares(model.origins, {0, 0, 6});
    EXPECT_EQ(shares.inputs[2].triangles, 12U);
    EXPECT_EQ(shares.inputs[2].faces, 6U);
    EXPECT_EQ(model.origins[11].mesh, 2U);
    EXPECT_EQ(model.origins[11].face, 5U);
}

TEST(Origins, MarksThatNameNoFace) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    for (const std::array<double, 2> mark : {std::array{2.0, 0.0},
                                             {-1.0, 0.0},
                                             {0.5, 0.0},
                                             {none, 0.0},
                                             {0.0, 12.0},
                                             {0.0, -1.0},
                                             {0.0, 0.5},
                                             {0.0, none},
                                             {0.0, 1e300}}) {
        Model model = boxModel({0, 0, 0}, {1, 1, 1});
        markFaces(model, 0);
        for (std::size_t k = 0; k < 3; ++k) model.mesh.vertices[3 + k].aux = mark;
        readOrigins(model, {12, 12});
        const Shares shares = countShares(model.origins, {12, 12});
        EXPECT_EQ(shares.unknown, 1U) << mark[0] << ' ' << mark[1];
        EXPECT_EQ(shares.inputs[0].triangles, 11U);
        EXPECT_EQ(model.origins[1].mesh, UNKNOWN_ORIGIN.mesh);
    }
    Model model = boxModel({0, 0, 0}, {1, 1, 1});
    markFaces(model, 0);
    model.mesh.vertices[4].aux[1] = 7; // one corner of another opinion
    readOrigins(model, {12});
    EXPECT_EQ(countShares(model.origins, {12}).unknown, 1U);
}

class KeepFaces : public ProgramTest {
protected:
    const std::string a = file("a.off", boxFile({0, 0, 0}, {4, 4, 4}));
    const std::string b = file("b.off", boxFile({1, 1, 2}, {2, 2, 5}));
    const std::string out = file("out.off");
};

TEST_F(KeepFaces, AreCountedInJson) {
    for (const std::string way : {"--merge=none", "--merge=cut", "--raw"}) {
        const Outcome run = orva({"subtract", a, b, "-o", out, "--keep-faces", "--json", "--force", way});
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        const Json json = Json::parse(run.output);
        const Json& origins = json["output"]["origins"];
        EXPECT_EQ(origins["unknown"], 0);
        EXPECT_EQ(origins["inputs"].size(), 2U);
        // Of faces that were merged, the largest is told.
        const int faces = origins["inputs"][0]["faces"];
        EXPECT_TRUE(way == "--merge=cut" ? faces >= 6 && faces <= 12 : faces == 12) << way << ' ' << faces;
        EXPECT_EQ(origins["inputs"][0]["triangles"].get<int>() + origins["inputs"][1]["triangles"].get<int>(),
                  json["output"]["triangles"]);
    }
}

TEST_F(KeepFaces, ChangeNothingElse) {
    for (const std::string way : {"--merge=cut", "--raw"}) {
        ASSERT_EQ(orva({"subtract", a, b, "-o", out, "--force", way}).exitCode, 0);
        ASSERT_EQ(orva({"subtract", a, b, "-o", file("kept.off"), "--keep-faces", "--force", way}).exitCode, 0);
        EXPECT_EQ(contentOf(file("kept.off")), contentOf(out));
    }
}

TEST_F(KeepFaces, AreHeldByPly) {
    const std::string ply = file("out.ply");
    for (const std::string way : {"--merge=cut", "--merge=none", "--merge=all", "--raw"}) {
        const Outcome run = orva({"subtract", a, b, "-o", ply, "--keep-faces", "--force", way});
        EXPECT_TRUE(run.errors.starts_with("orva: subtract: ")) << run.errors; // and no warning
        const Model result = modelAs(readPly, contentOf(ply));
        ASSERT_EQ(result.origins.size(), countTriangles(result.mesh));
        std::array<std::size_t, 2> counts{};
        for (const Origin& origin : result.origins) {
            ASSERT_LT(origin.mesh, 2U);
            ASSERT_LT(origin.face, 12U);
            ++counts[origin.mesh];
        }
        EXPECT_GT(counts[0], 0U);
        EXPECT_GT(counts[1], 0U);
    }
}

TEST_F(KeepFaces, AreThoseOfTheFile) {
    // A box of six faces with four corners each, behind a mesh that is left out.
    std::string text = "OFF\n8 6 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n0 0 1\n1 0 1\n1 1 1\n0 1 1\n";
    text += "4 0 3 2 1\n4 4 5 6 7\n4 0 1 5 4\n4 1 2 6 5\n4 2 3 7 6\n4 3 0 4 7\n";
    const std::string quads = file("quads.off", text);
    const std::string ply = file("out.ply");
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");
    for (const std::string way : {"--merge=none", "--raw"}) {
        const Outcome run =
            orva({"union", b, empty, quads, "-o", ply, "--allow-empty", "--keep-faces", "--force", "--json", way});
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        const Model result = modelAs(readPly, contentOf(ply));
        std::array<bool, 6> seen{};
        for (const Origin& origin : result.origins) {
            ASSERT_TRUE(origin.mesh == 0 || origin.mesh == 2);
            if (origin.mesh == 2) seen.at(origin.face) = true;
        }
        EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 6);
        const Json origins = Json::parse(run.output)["output"]["origins"];
        ASSERT_EQ(origins["inputs"].size(), 3U);
        EXPECT_EQ(origins["inputs"][1]["triangles"], 0);
        EXPECT_EQ(origins["inputs"][2]["faces"], 6);
    }
}

// Each corner of the result has the texture coordinates that its face has there: half its x and y.
void expectTextureByPosition(const Model& model, std::uint32_t mesh) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < model.mesh.vertices.size(); ++i) {
        if (model.origins[i / 3].mesh != mesh) continue;
        const types::Vertex& vertex = model.mesh.vertices[i];
        EXPECT_NEAR(vertex.aux[0], vertex.pos.x / 2, 1e-12);
        EXPECT_NEAR(vertex.aux[1], vertex.pos.y / 2, 1e-12);
        ++count;
    }
    EXPECT_GT(count, 0U);
}

TEST_F(KeepFaces, TogetherWithTextureCoordinates) {
    Model model = modelOf(box({1, 1, 2}, {2, 2, 5}));
    model.hasTexture = true;
    for (types::Vertex& vertex : model.mesh.vertices) vertex.aux = {vertex.pos.x / 2, vertex.pos.y / 2};
    Notes notes;
    const std::string textured = file("textured.obj", formatOf("a.obj").write(model, {}, notes));
    const std::string ply = file("out.ply");
    Outcome run = orva({"subtract", a, textured, "-o", ply, "--keep-faces"});
    EXPECT_TRUE(run.errors.starts_with("orva: subtract: ")) << run.errors; // and no warning
    const Model result = modelAs(readPly, contentOf(ply));
    EXPECT_TRUE(result.hasTexture); // of one input is enough
    expectTextureByPosition(result, 1);

    // A raw result tells where its faces came from in the place of texture coordinates.
    run = orva({"subtract", a, textured, "-o", ply, "--keep-faces", "--raw", "--force"});
    EXPECT_TRUE(
        run.errors.starts_with("orva: warning: " + textured +
                               ": texture coordinates are not carried with --raw and --keep-faces\norva: subtract: "))
        << run.errors;
    EXPECT_FALSE(modelAs(readPly, contentOf(ply)).hasTexture);
    ASSERT_EQ(orva({"subtract", a, textured, "-o", ply, "--force", "--raw"}).exitCode, 0);
    EXPECT_TRUE(modelAs(readPly, contentOf(ply)).hasTexture);
}

TEST_F(KeepFaces, InAFormatThatCannotHoldThem) {
    const Outcome run = orva({"union", a, b, "-o", out, "--keep-faces"});
    EXPECT_TRUE(run.errors.starts_with("orva: warning: " + out +
                                       ": off cannot hold where faces came from; write .ply, "
                                       "or see the counts in --json\norva: union: "))
        << run.errors;
}

} // namespace
} // namespace orva::program

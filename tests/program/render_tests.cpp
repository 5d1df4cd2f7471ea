// render: its pictures, against stored ones and against each other; its options; what it refuses.
#include "formats/off.hpp"
#include "pictures.hpp"
#include "program.hpp"
#include "report/report.hpp"
#include "samples.hpp"

#include "orva/bspcsg.hpp"

#include <cmath>

namespace orva::program {
namespace {

std::string fileOf(const Mesh& mesh) {
    return writeAs(writeOff, mesh);
}

// A wall with two windows: many coplanar slivers.
Mesh wall() {
    const std::vector<Mesh> windows{box({1, -1, 1}, {3, 2, 3}), box({5, -1, 1}, {7, 2, 3})};
    Mesh result;
    bspcsg::subtractMultiUnionMesh(result, box({0, 0, 0}, {8, 0.6, 4}), windows);
    return result;
}

// A round bar with flat ends, along z.
Mesh bar() {
    std::vector<Triangle> triangles;
    constexpr int sides = 48;
    const auto at = [](int side, double z) {
        const double angle = 2 * 3.14159265358979 * side / sides;
        return Vec3{std::cos(angle), std::sin(angle), z};
    };
    for (int i = 0; i < sides; ++i) {
        triangles.push_back({at(i, 0), at(i + 1, 0), at(i + 1, 3)});
        triangles.push_back({at(i, 0), at(i + 1, 3), at(i, 3)});
        triangles.push_back({Vec3{0, 0, 3}, at(i, 3), at(i + 1, 3)});
        triangles.push_back({Vec3{0, 0, 0}, at(i + 1, 0), at(i, 0)});
    }
    return meshOf(triangles);
}

Mesh openBox() {
    std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {1, 1, 1});
    triangles.resize(10); // no top
    return meshOf(triangles);
}

class RenderVerb : public ProgramTest {
protected:
    const std::string picture = file("picture.png");

    // The bytes of a picture of 160 x 120 with these options.
    std::string render(const std::vector<std::string>& meshes, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments{"render", "-o", picture, "--force", "--size", "160x120"};
        arguments.insert(arguments.end(), meshes.begin(), meshes.end());
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Outcome run = orva(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output + run.errors, "");
        return contentOf(picture);
    }

    std::string box1() const { return file("box.off", boxFile({0, 0, 0}, {2, 1, 1})); }
};

// ---- stored pictures ----

TEST_F(RenderVerb, WallWithWindows) {
    expectStored("wall", render({file("wall.off", fileOf(wall()))}));
}

TEST_F(RenderVerb, RoundBar) {
    expectStored("bar", render({file("bar.off", fileOf(bar()))}));
}

TEST_F(RenderVerb, SeveralMeshesHaveTheirColors) {
    std::vector<std::string> files;
    for (int i = 0; i < 8; ++i) {
        const double x = i % 4;
        const double y = i / 4;
        files.push_back(file(std::to_string(i) + ".off", boxFile({x, y, 0}, {x + 0.7, y + 0.7, 0.7})));
    }
    expectStored("meshes", render(files));
    expectStored("colors", render(files, {"--colors", "d43,#3d4,3344DD"})); // and on with the usual ones
}

TEST_F(RenderVerb, OpenMeshShowsItsInsideAndItsRim) {
    expectStored("open", render({file("open.off", fileOf(openBox()))}));
}

TEST_F(RenderVerb, InsideOutMeshShowsItsInside) {
    std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {1, 1, 1});
    for (Triangle& triangle : triangles) std::swap(triangle[0], triangle[1]);
    expectStored("inside-out", render({file("inside-out.off", fileOf(meshOf(triangles)))}));
}

TEST_F(RenderVerb, EdgesOfEveryTriangle) {
    expectStored("edges-all", render({file("wall.off", fileOf(wall()))}, {"--edges", "all"}));
}

TEST_F(RenderVerb, NoEdges) {
    expectStored("edges-none", render({file("wall.off", fileOf(wall()))}, {"--edges", "none"}));
}

TEST_F(RenderVerb, Views) {
    // Different from each side: a bar in a corner of a box, and a knob on it.
    const std::vector<std::string> files{box1(), file("bar.off", fileOf(bar())),
                                         file("knob.off", boxFile({1.6, -0.3, 0.2}, {1.9, 0, 0.5}))};
    for (const std::string view : {"front", "back", "left", "right", "top", "bottom", "-60,-20"}) {
        expectStored("view" + (view.starts_with('-') ? "-angles" : "-" + view), render(files, {"--view", view}));
    }
    expectStored("up-y", render(files, {"--up", "y"}));
}

TEST_F(RenderVerb, Backgrounds) {
    expectStored("background", render({box1()}, {"--background", "#204060"}));
    const std::string bytes = render({box1()}, {"--background", "transparent"});
    expectStored("transparent", bytes);
    EXPECT_EQ(decodePng(bytes).pixels[3], 0);
}

// ---- pictures against each other ----

TEST_F(RenderVerb, IsometricUnlessToldOtherwise) {
    EXPECT_EQ(render({box1()}), render({box1()}, {"--view", "iso"}));
    EXPECT_EQ(render({box1()}), render({box1()}, {"--view", "45,35.26438968"}));
    EXPECT_NE(render({box1()}), render({box1()}, {"--view", "45,30"}));
}

TEST_F(RenderVerb, CutsAreNoLines) {
    // The same box whole and out of pieces, which have corners in the middle of each other's edges.
    Mesh pieces;
    bspcsg::unionMesh(pieces, box({0, 0, 0}, {1.2, 1, 1}), box({0.7, 0, 0}, {2, 1, 1}));
    ASSERT_GT(pieces.vertices.size(), 36U);
    const Image whole = decodePng(render({box1()}));
    const Image cut = decodePng(render({file("pieces.off", fileOf(pieces))}));
    EXPECT_LT(differenceOf(whole, cut).mean, 0.02);
    EXPECT_EQ(differenceOf(whole, cut).share, 0.0);
}

TEST_F(RenderVerb, SlitsThinnerThanALineAreNoRims) {
    std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {2, 1, 1});
    const Image closed = decodePng(render({file("closed.off", fileOf(meshOf(triangles)))}));
    triangles.back()[2].z += 1e-4;
    const Image slit = decodePng(render({file("slit.off", fileOf(meshOf(triangles)))}));
    EXPECT_EQ(differenceOf(closed, slit).share, 0.0);
}

TEST_F(RenderVerb, SameBytesWithAnyNumberOfThreads) {
    const std::string name = file("wall.off", fileOf(wall()));
    EXPECT_EQ(render({name}, {"--threads", "1"}), render({name}, {"--threads", "2"}));
}

TEST_F(RenderVerb, SameSizeAtEveryScale) {
    // Halves and doubles, so that rounding is the same: down to where squares vanish, up to where they overflow.
    const Image expected = decodePng(render({box1()}));
    for (const int exponent : {-1000, -600, 600, 1020}) {
        const double s = std::ldexp(1.0, exponent);
        const Image scaled =
            decodePng(render({file("scaled.off", boxFile({0, 0, 0}, {2 * s, s, s}))}, {"--edges", "none"}));
        const Image plain = decodePng(render({box1()}, {"--edges", "none"}));
        EXPECT_EQ(differenceOf(scaled, plain).mean, 0.0) << exponent;
    }
    EXPECT_EQ(expected.width, 160U);
}

TEST_F(RenderVerb, ToStdout) {
    const std::string name = box1();
    const Outcome run = orva({"render", name, "-o", "-", "--size", "160x120"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.bytes, render({name}));
    EXPECT_EQ(orvaReading(contentOf(name), {"render", "-", "--from", "off", "-o", "-", "--size", "160x120"}).bytes,
              run.bytes);
}

TEST_F(RenderVerb, SizeUnlessToldOtherwise) {
    const Outcome run = orva({"render", box1(), "-o", picture, "--json"});
    EXPECT_EQ(run.exitCode, 0);
    const Json json = Json::parse(run.output);
    EXPECT_EQ(json["verb"], "render");
    EXPECT_EQ(json["inputs"][0]["triangles"], 12);
    EXPECT_EQ(json["output"].dump(),
              Json({{"file", picture}, {"format", "png"}, {"width", 1200}, {"height", 900}}).dump());
    EXPECT_EQ(decodePng(contentOf(picture)).width, 1200U);
    EXPECT_EQ(decodePng(contentOf(picture)).height, 900U);
}

// ---- what there is little to see of ----

TEST_F(RenderVerb, EmptyMeshIsWarnedOf) {
    const std::string empty = file("empty.off", "OFF\n0 0 0\n");
    const Outcome run = orva({"render", empty, "-o", picture, "--size", "40x30"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "orva: warning: " + empty +
                              ": it has no triangles, so nothing of it is seen; check that the right thing was "
                              "exported\n");
    EXPECT_EQ(decodePng(contentOf(picture)).height, 30U);
}

TEST_F(RenderVerb, TrianglesWithoutAreaAreNotSeen) {
    const std::string point = file("point.off", "OFF\n1 1 0\n7 7 7\n3 0 0 0\n");
    const std::string line = file("line.off", "OFF\n3 1 0\n0 0 0\n1 1 1\n2 2 2\n3 0 1 2\n");
    const std::string nothing = file("nothing.off", "OFF\n0 0 0\n");
    ASSERT_EQ(orva({"render", nothing, "-o", picture, "--size", "160x120", "-q"}).exitCode, 0);
    const std::string background = contentOf(picture);
    EXPECT_EQ(render({point}), background);
    EXPECT_EQ(render({line}), background);
}

// ---- what is refused ----

TEST_F(RenderVerb, PictureThatExistsIsKeptUnlessForced) {
    const std::string old = file("old.png", "old");
    expectFailure(orva({"render", box1(), "-o", old}), 6, old + ": exists already; use --force to replace it");
    EXPECT_EQ(contentOf(old), "old");
    EXPECT_EQ(orva({"render", box1(), "-o", old, "--force", "--size", "40x30"}).exitCode, 0);
    EXPECT_NE(contentOf(old), "old");
}

TEST_F(RenderVerb, OtherThanPng) {
    for (const std::string name : {"picture.jpg", "picture", "picture.png.off"}) {
        expectFailure(orva({"render", box1(), "-o", file(name)}), 2,
                      file(name) + ": pictures are written as PNG; use .png");
    }
    EXPECT_EQ(orva({"render", box1(), "-o", file("picture.PNG"), "--size", "40x30"}).exitCode, 0);
}

TEST_F(RenderVerb, Options) {
    const auto refuses = [this](const std::string& option, const std::string& value, const std::string& why) {
        expectFailure(orva({"render", "a.off", "-o", "a.png", option, value}), 2,
                      option + ": " + value + why + "; see orva render --help");
    };
    for (const std::string view : {"up", "10", "10,", "10,95", "400,0", "nan,0", "1,2,3", "1;2"}) {
        refuses("--view", view,
                " is no view; name iso, front, back, left, right, top or bottom, or give AZIMUTH,ELEVATION in degrees, "
                "up to 360 and 90");
    }
    for (const std::string size : {"800", "800x", "x600", "800x600x", "8x600", "800x9000", "-800x600", "800*600"}) {
        refuses("--size", size, " is no size; give WIDTHxHEIGHT, each from 16 to 8192");
    }
    for (const std::string color : {"red", "12345", "#12", "12345g", "12"}) {
        refuses("--colors", color, " is no colour; give it as RRGGBB, 77AADD for instance");
        refuses("--background", color, " is no colour; give it as RRGGBB, 77AADD for instance");
    }
    expectFailure(orva({"render", "a.off", "-o", "a.png", "--colors", "123,456789,,abc"}), 2,
                  "--colors:  is no colour; give it as RRGGBB, 77AADD for instance; see orva render --help");
    refuses("--edges", "some", " not in {none,feature,all}");
    refuses("--up", "x", " not in {y,z}");
    expectFailure(orva({"render", "a.off"}), 2, "--output is required; see orva render --help");
    const Outcome run = orva({"render", "a.off", "-o", "-", "--json"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "orva: -: both the picture and --json would go to stdout; name a file for the picture\n");
}

} // namespace
} // namespace orva::program

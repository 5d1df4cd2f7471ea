// convert: moves and scales, names, and files that cannot be read.
#include "files/name.hpp"
#include "formats/off.hpp"
#include "program.hpp"
#include "samples.hpp"

namespace orva::program {
namespace {

const std::string triangle = "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n";

using Convert = ProgramTest;

TEST_F(Convert, SaysNothing) {
    const Outcome run = orva({"convert", file("a.off", triangle), "-o", file("b.off")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(files(), (std::vector<std::string>{"a.off", "b.off"}));
}

TEST_F(Convert, Moves) {
    ASSERT_EQ(orva({"convert", file("a.off", triangle), "-o", file("b.off"), "--move", "-1", "-.5", "2e3"}).exitCode,
              0);
    EXPECT_EQ(contentOf(file("b.off")), "OFF\n3 1 0\n-1 -0.5 2000\n0 -0.5 2000\n-1 0.5 2000\n3 0 1 2\n");
}

TEST_F(Convert, ScalesBeforeItMoves) {
    ASSERT_EQ(
        orva({"convert", file("a.off", triangle), "-o", file("b.off"), "--move", "0", "0", "1", "--scale", "25.4"})
            .exitCode,
        0);
    EXPECT_EQ(contentOf(file("b.off")), "OFF\n3 1 0\n0 0 1\n25.4 0 1\n0 25.4 1\n3 0 1 2\n");
}

TEST_F(Convert, ScalesThatAreNone) {
    for (const std::string factor : {"0", "-1", "nan", "inf", "1e999", "large"}) {
        const Outcome run = orva({"convert", file("a.off", triangle), "-o", file("b.off"), "--scale", factor});
        EXPECT_EQ(run.exitCode, 2) << factor;
        EXPECT_NE(run.errors.find(factor + " is not a number above 0"), std::string::npos) << run.errors;
        EXPECT_EQ(files(), std::vector<std::string>{"a.off"});
    }
}

TEST_F(Convert, WhatIsTooSmallIsFitOnceScaledAsTheMessageSays) {
    const std::string small = file("small.off", boxFile({0, 0, 0}, {4e-5, 2e-5, 2e-5}));
    EXPECT_EQ(orva({"check", small}).exitCode, 4);
    ASSERT_EQ(orva({"convert", small, "-o", file("large.off"), "--scale", "1e5"}).exitCode, 0);
    EXPECT_EQ(orva({"check", file("large.off")}).exitCode, 0);
}

TEST_F(Convert, KeepsTheSignOfZero) {
    const std::string withSigns = "OFF\n3 1 0\n-0 0 -0\n1 -0 0\n0 1 -0\n3 0 1 2\n";
    ASSERT_EQ(orva({"convert", file("a.off", withSigns), "-o", file("b.off")}).exitCode, 0);
    EXPECT_EQ(contentOf(file("b.off")), withSigns);
}

TEST_F(Convert, InPlace) {
    const std::string a = file("a.off", triangle);
    EXPECT_EQ(orva({"convert", a, "-o", a, "--force", "--move", "0", "0", "1"}).exitCode, 0);
    EXPECT_EQ(contentOf(a), "OFF\n3 1 0\n0 0 1\n1 0 1\n0 1 1\n3 0 1 2\n");
}

TEST_F(Convert, ResultTooFarAwayForNumbers) {
    const std::string far = file("far.off", "OFF\n3 1 0\n1e308 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
    const std::string out = file("out.off");
    expectFailure(orva({"convert", far, "-o", out, "--move", "1e308", "0", "0"}), 6,
                  out + ": a coordinate of the result is too large for a number; scale the input down");
}

// ---- names ----

TEST_F(Convert, ExtensionsInUpperCase) {
    EXPECT_EQ(orva({"convert", file("A.OFF", triangle), "-o", file("B.Stl")}).exitCode, 0);
    EXPECT_EQ(contentOf(file("B.Stl")).size(), 134U);
}

TEST_F(Convert, NamesBeyondAscii) {
    const std::string in = file("Würfel mit Ø 5 – 箱 🧊.off", triangle);
    const std::string out = file("κύβος.stl");
    const Outcome run = orva({"convert", in, "-o", out});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(contentOf(out).size(), 134U);
    EXPECT_EQ(files(), (std::vector<std::string>{"Würfel mit Ø 5 – 箱 🧊.off", "κύβος.stl"}));
}

TEST_F(Convert, NamesBeyondAsciiInMessages) {
    const std::string missing = file("Größe 箱.off");
    expectFailure(orva({"convert", missing, "-o", file("out.off")}), 3,
                  missing + ": there is no such file; check the name");
}

TEST_F(Convert, NameThatBeginsLikeAnOption) {
    expectFailure(orva({"convert", "-o", file("b.off"), "--", "-a.off"}), 3,
                  "-a.off: there is no such file; check the name");
}

TEST_F(Convert, UnknownExtensions) {
    const std::string a = file("a.off", triangle);
    const std::string other = file("a.step", triangle);
    const std::string none = file("mesh", triangle);
    const std::string use = "; use one of .stl, .off, .obj, .ply, .glb";
    expectFailure(orva({"convert", other, "-o", file("b.off")}), 2,
                  other + ": no format is known by the extension .step" + use);
    expectFailure(orva({"convert", a, "-o", file("b.step")}), 2,
                  file("b.step") + ": no format is known by the extension .step" + use);
    expectFailure(orva({"convert", none, "-o", file("b.off")}), 2, none + ": no extension to tell the format" + use);
}

// ---- files that cannot be read ----

TEST_F(Convert, MissingFile) {
    const std::string missing = file("missing.stl");
    expectFailure(orva({"convert", missing, "-o", file("b.off")}), 3,
                  missing + ": there is no such file; check the name");
}

TEST_F(Convert, FolderAsInput) {
    const std::string name = file("folder.off");
    std::filesystem::create_directory(pathOf(name));
    expectFailure(orva({"convert", name, "-o", file("b.off")}), 3, name + ": this is a folder; name a mesh file in it");
}

TEST_F(Convert, OtherContentThanTheExtensionSays) {
    const std::string wrong = file("really-off.stl", triangle);
    expectFailure(orva({"convert", wrong, "-o", file("b.off")}), 3,
                  wrong + ": not an STL file: it ends after 36 bytes, within the header of 84; export it again");
}

#ifndef _WIN32

TEST_F(Convert, FileThatCannotBeOpened) {
    const std::string loop = file("loop.off");
    std::filesystem::create_symlink(loop, loop); // to itself; permissions would not stop root
    expectFailure(orva({"convert", loop, "-o", file("b.off")}), 3,
                  loop + ": cannot open: Too many levels of symbolic links; check its permissions");
}

TEST_F(Convert, FileThatCannotBeReadToItsEnd) {
    const std::string memory = file("memory.off");
    std::filesystem::create_symlink("/proc/self/mem", memory); // opens, and fails at the first byte
    expectFailure(orva({"convert", memory, "-o", file("b.off")}), 3,
                  memory + ": reading stopped at byte 0; check the disk");
}

#endif

} // namespace
} // namespace orva::program

// stdin and stdout in place of files, and formats by their names.
#include "program.hpp"
#include "samples.hpp"

namespace orva::program {
namespace {

class Streams : public ProgramTest {
protected:
    const std::string box = boxFile({0, 0, 0}, {2, 2, 2});
    const std::string a = file("a.off", box);
    const std::string b = file("b.off", boxFile({1, 1, 1}, {3, 3, 3}));
    const std::string out = file("out.off");
};

TEST_F(Streams, InAndOut) {
    const Outcome run = orvaReading(box, {"convert", "-", "--from", "off", "-o", "-", "--to", "off"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.bytes, contentOf(a));
    EXPECT_EQ(files(), (std::vector<std::string>{"a.off", "b.off"}));
}

TEST_F(Streams, AreBinary) {
    // Heights whose bytes are those that text streams change: line ends, and 26, which ends a text on Windows.
    std::vector<float> floats = stlTriangle();
    floats[3] = std::bit_cast<float>(std::uint32_t{0x0D0A1A0D});
    floats[4] = std::bit_cast<float>(std::uint32_t{0x1A0A0D0A});
    const std::string stl = stlFile(1, floats);
    const std::string expected = file("expected.stl");
    ASSERT_EQ(orva({"convert", file("in.stl", stl), "-o", expected}).exitCode, 0);
    ASSERT_NE(contentOf(expected).find("\x0A\x0D\x0A\x1A"), std::string::npos);
    const Outcome run = orvaReading(stl, {"convert", "-", "--from", "stl", "-o", "-", "--to", "stl"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.bytes, contentOf(expected));
}

TEST_F(Streams, TogetherWithFiles) {
    ASSERT_EQ(orva({"union", a, b, "-o", out}).exitCode, 0);
    const Outcome run = orvaReading(box, {"union", "-", b, "--from", "off", "-o", "-", "--to", "off"});
    EXPECT_EQ(run.bytes, contentOf(out));
    EXPECT_TRUE(run.errors.starts_with("orva: union: 12 + 12 triangles")) << run.errors;
    // --from is of the stream; the file goes by its extension.
    const std::string stl = file("b.stl");
    ASSERT_EQ(orva({"convert", b, "-o", stl}).exitCode, 0);
    EXPECT_EQ(orvaReading(box, {"union", "-", stl, "--from", "off", "-o", "-", "--to", "off"}).bytes, contentOf(out));
}

TEST_F(Streams, NothingComesIn) {
    expectFailure(orva({"convert", "-", "--from", "stl", "-o", out}), 3,
                  "-: not an STL file: it ends after 0 bytes, within the header of 84; export it again");
}

TEST_F(Streams, WithoutAFormat) {
    expectFailure(orva({"convert", "-", "-o", out}), 2,
                  "-: a stream has no extension to tell its format; say it with --from (" + namesOfFormats() + ")");
    expectFailure(orva({"convert", a, "-o", "-"}), 2,
                  "-: a stream has no extension to tell its format; say it with --to (" + namesOfFormats() + ")");
}

TEST_F(Streams, CanBeReadOnce) {
    expectFailure(orva({"union", "-", "-", "--from", "off", "-o", out}), 2,
                  "-: stdin can be read once only; name a file");
}

TEST_F(Streams, FileOfThatName) {
    EXPECT_EQ(orvaReading(box, {"convert", "-", "--from", "off", "-o", file("-"), "--to", "off"}).exitCode, 0);
    EXPECT_EQ(contentOf(file("-")), contentOf(a));
    EXPECT_EQ(orva({"convert", file("-"), "--from", "off", "-o", out}).exitCode, 0);
}

TEST_F(Streams, FormatsByNameWhateverTheExtension) {
    const std::string odd = file("mesh.data", box);
    EXPECT_EQ(orva({"union", odd, odd, "--from", "off", "-o", file("result.data"), "--to", "off"}).exitCode, 0);
    EXPECT_TRUE(contentOf(file("result.data")).starts_with("OFF\n"));
    EXPECT_EQ(orva({"convert", a, "-o", file("really.stl"), "--to", "off"}).exitCode, 0);
    EXPECT_EQ(contentOf(file("really.stl")), contentOf(a));
    EXPECT_EQ(orva({"convert", a, "--from", "stl", "-o", out}).exitCode, 3);
    const Outcome unknown = orva({"convert", a, "--from", "docx", "-o", out});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.errors.starts_with("orva: --from: docx not in {")) << unknown.errors;
}

TEST_F(Streams, DigitsOfText) {
    const std::string thirds = file("thirds.off", "OFF\n3 1 0\n0.3333333333333333 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
    ASSERT_EQ(orva({"convert", thirds, "-o", out, "--precision", "4"}).exitCode, 0);
    EXPECT_EQ(contentOf(out), "OFF\n3 1 0\n0.3333 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
    const std::string stl = file("out.stl");
    EXPECT_EQ(orva({"convert", thirds, "-o", stl, "--precision", "4"}).errors,
              "orva: warning: " + stl + ": stl has no digits of text; --precision changes nothing\n");
    expectFailure(orva({"convert", thirds, "-o", out, "--precision", "18"}), 2,
                  "--precision: Value 18 not in range 1 to 17; see orva convert --help");
}

#ifndef _WIN32

TEST_F(Streams, OntoAFullDisk) {
    const Outcome run = orvaAfter("exec >/dev/full", {"convert", a, "-o", "-", "--to", "off"});
    expectFailure(run, 6, "-: writing to stdout failed: No space left on device; check where it leads");
}

TEST_F(Streams, ThatCannotBeRead) {
    const Outcome run = orvaAfter("exec </", {"convert", "-", "--from", "off", "-o", out});
    expectFailure(run, 3, "-: reading stdin stopped at byte 0: Is a directory; check where it comes from");
}

#endif

} // namespace
} // namespace orva::program

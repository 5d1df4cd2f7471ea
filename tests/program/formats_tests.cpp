// All formats: what they have in common, and from each to each other.
#include "failure.hpp"
#include "formats/glb.hpp"
#include "formats/obj.hpp"
#include "formats/off.hpp"
#include "formats/ply.hpp"
#include "formats/stl.hpp"
#include "formats/stl_text.hpp"
#include "program.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace orva::program {
namespace {

struct Case {
    const char* name;
    decltype(Format::read) read;
    decltype(Format::write) write;
    bool doubles;    ///< positions come back to the last bit
    bool attributes; ///< normals and texture coordinates, too
    bool text;
};

constexpr std::array cases{
    Case{"stl", readStl, writeStl, false, false, false},
    Case{"stl-ascii", readStl, writeTextStl, true, false, true},
    Case{"off", readOff, writeOff, true, false, true},
    Case{"obj", readObj, writeObj, true, true, true},
    Case{"ply", readPly, writePly, true, true, false},
    Case{"ply-ascii", readPly, writeTextPly, true, true, true},
    Case{"ply-big-endian", readPly, writePlyBigEndian, true, true, false},
    Case{"glb", readGlb, writeGlb, false, true, false},
};

// A box whose numbers need all their digits, with normals of length 1 and texture coordinates.
Model sample() {
    Model model;
    model.mesh = box({-1.0 / 3, 0.1, 1e-20}, {1e6 / 7, 0.3, 1.0});
    model.hasNormals = true;
    model.hasTexture = true;
    double u = 0.0;
    for (types::Vertex& vertex : model.mesh.vertices) {
        vertex.normal = {0.6, 0.8, 0};
        vertex.aux = {u += 1.0 / 7, 1 - u};
    }
    return model;
}

double inSingle(double value) {
    return static_cast<double>(static_cast<float>(value));
}

Model through(const Case& format, const Model& model) {
    Notes notes;
    return format.read(format.write(model, {}, notes), notes);
}

void expectEqual(const Vec3& a, const Vec3& b, bool exactly) {
    EXPECT_EQ(a.x, exactly ? b.x : inSingle(b.x));
    EXPECT_EQ(a.y, exactly ? b.y : inSingle(b.y));
    EXPECT_EQ(a.z, exactly ? b.z : inSingle(b.z));
}

TEST(Formats, FromEachToEachOther) {
    const Model original = sample();
    for (const Case& first : cases) {
        for (const Case& second : cases) {
            SCOPED_TRACE(std::string(first.name) + " to " + second.name);
            const Model read = through(second, through(first, original));
            const bool exactly = first.doubles && second.doubles;
            ASSERT_EQ(read.mesh.vertices.size(), original.mesh.vertices.size());
            EXPECT_EQ(read.hasNormals, first.attributes && second.attributes);
            EXPECT_EQ(read.hasTexture, first.attributes && second.attributes);
            for (std::size_t i = 0; i < read.mesh.vertices.size(); ++i) {
                const types::Vertex& vertex = read.mesh.vertices[i];
                const types::Vertex& expected = original.mesh.vertices[i];
                expectEqual(vertex.pos, expected.pos, exactly);
                if (!read.hasNormals) continue;
                expectEqual(vertex.normal, expected.normal, exactly);
                EXPECT_EQ(vertex.aux[0], exactly ? expected.aux[0] : inSingle(expected.aux[0]));
            }
        }
    }
}

TEST(Formats, EveryDoubleComesBack) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.1, 1.0 / 3, Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                               1 + Limits::epsilon(), 9007199254740993.0}) {
        Model model;
        model.mesh = meshOf({{{{value, 1, 2}, {3, value, 5}, {6, 7, value}}}});
        for (const Case& format : cases) {
            if (!format.doubles) continue;
            const Mesh mesh = through(format, model).mesh;
            for (const double read : {mesh.vertices[0].pos.x, mesh.vertices[1].pos.y, mesh.vertices[2].pos.z}) {
                EXPECT_EQ(read, value) << format.name;
            }
        }
    }
}

TEST(Formats, TextHasTheDigitsThatAreAskedFor) {
    const Model model = sample();
    for (const Case& format : cases) {
        Notes notes;
        const std::string all = format.write(model, {}, notes);
        const std::string three = format.write(model, {3}, notes);
        EXPECT_EQ(format.text, all != three) << format.name;
        if (!format.text) continue;
        EXPECT_NE(three.find("-0.333 0.1 1"), std::string::npos) << format.name;
        EXPECT_NE(three.find("1.43e+05"), std::string::npos) << format.name;
    }
}

TEST(Formats, FewDigitsDoNotMakeTheLargestNumbersInfinite) {
    Model model;
    model.mesh = meshOf({{{{std::numeric_limits<double>::max(), 1, 2}, {3, 4, 5}, {6, 7, 8}}}});
    for (const Case& format : cases) {
        if (!format.text) continue;
        Notes notes;
        EXPECT_NO_THROW(format.read(format.write(model, {1}, notes), notes)) << format.name;
    }
}

TEST(Formats, SinglePrecisionSaysWhatCollapses) {
    const double near = 1.0 + 1e-12;
    Model model;
    model.mesh = meshOf({{{{1, 1, 1}, {near, 1, 1}, {1, near, 1}}}, // to a point
                         {{{0, 0, 0}, {1, 0, 0}, {2, 1e-50, 0}}},   // to a line
                         {{{0, 0, 0}, {1, 0, 0}, {1, 0, 0}}},       // was none before
                         {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}});
    for (const Case& format : cases) {
        Notes notes;
        format.write(model, {}, notes);
        const Notes expected{"2 of 4 triangles collapse in single precision: nothing is left of their area; .ply, .obj "
                             "and .off keep them"};
        EXPECT_EQ(notes, format.doubles ? Notes() : expected) << format.name;
    }
}

TEST(Formats, NamesAndExtensions) {
    EXPECT_EQ(namesOfFormats(), "stl, stl-ascii, off, obj, ply, ply-ascii, ply-big-endian, glb");
    for (const Case& format : cases) {
        EXPECT_EQ(formatOf("-", format.name).read, format.read);
        EXPECT_EQ(formatOf("-", format.name).write, format.write);
        EXPECT_EQ(formatOf("-", format.name).text, format.text);
    }
    for (const auto& [file, name] :
         {std::pair{"a.STL", "stl"}, {"a.ply", "ply"}, {"a.b.obj", "obj"}, {"a.glb", "glb"}}) {
        EXPECT_EQ(formatOf(file).name, name);
    }
    try {
        formatOf("a.stl", "step");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code, ExitCode::Usage);
        EXPECT_EQ(failure.what(), "no format has the name step; use one of " + namesOfFormats());
    }
}

using FormatFile = ProgramTest;

TEST_F(FormatFile, NumbersBeyondADoubleAreNotWritten) {
    for (const std::string what : {"a coordinate", "a normal", "a texture coordinate"}) {
        Model model = sample();
        (what == "a coordinate" ? model.mesh.vertices[1].pos.x
         : what == "a normal"   ? model.mesh.vertices[1].normal.y
                                : model.mesh.vertices[1].aux[1]) = std::numeric_limits<double>::infinity();
        const std::string name = file("out.ply");
        Notes notes;
        try {
            writeModel(formatOf(name), prepareOutput(name, false), model, {}, notes);
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.what(),
                      name + ": " + what + " of the result is too large for a number; scale the input down");
        }
    }
    EXPECT_EQ(files(), std::vector<std::string>());
}

} // namespace
} // namespace orva::program

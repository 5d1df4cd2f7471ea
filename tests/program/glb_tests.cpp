// GLB: what is read, what is refused and with which words, what is written.
#include "formats/glb.hpp"

#include "failure.hpp"
#include "formats/bytes.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace orva::program {
namespace {

using Json = nlohmann::json;

std::string chunk(std::uint32_t kind, const std::string& content) {
    std::string bytes;
    appendNumber(bytes, static_cast<std::uint32_t>(content.size()), ByteOrder::Little);
    appendNumber(bytes, kind, ByteOrder::Little);
    return bytes + content;
}

std::string glbFile(const std::string& chunks) {
    std::string bytes = "glTF";
    appendNumber(bytes, std::uint32_t{2}, ByteOrder::Little);
    appendNumber(bytes, static_cast<std::uint32_t>(12 + chunks.size()), ByteOrder::Little);
    return bytes + chunks;
}

std::string glbFile(const Json& document, const std::string& binary) {
    return glbFile(chunk(0x4E4F534A, document.dump()) + chunk(0x004E4942, binary));
}

// The positions (0 0 0), (1 0 0), (0 1 0), (1 1 0), (0 0 1) and, behind them, the indices 0 to 4 in bytes and three
// zeros: one node with one triangle.
std::string samplePositions() {
    std::string binary;
    for (const int value : {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 0, 1}) {
        appendNumber(binary, static_cast<float>(value), ByteOrder::Little);
    }
    return binary + std::string("\0\1\2\3\4\0\0\0", 8);
}

const Json sample = Json::parse(R"({
    "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0}],
    "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
    "accessors": [{"bufferView": 0, "componentType": 5126, "count": 5, "type": "VEC3"},
                  {"bufferView": 1, "componentType": 5121, "count": 3, "type": "SCALAR"}],
    "bufferViews": [{"buffer": 0, "byteLength": 60}, {"buffer": 0, "byteOffset": 60, "byteLength": 8}],
    "buffers": [{"byteLength": 68}]})");

// The sample with one of its values replaced.
std::string sampleWith(const std::string& place, const Json& value) {
    Json document = sample;
    document[Json::json_pointer(place)] = value;
    return glbFile(document, samplePositions());
}

// "0 0 0, 1 0 0, 0 1 0": the corners, one after the other.
std::string cornersIn(const std::string& bytes) {
    std::string text;
    for (const types::Vertex& vertex : readAs(readGlb, bytes).vertices) {
        for (const double value : {vertex.pos.x, vertex.pos.y, vertex.pos.z}) {
            text += std::to_string(std::lround(value)) + " ";
        }
        text.back() = ',';
        text += ' ';
    }
    return text.substr(0, text.empty() ? 0 : text.size() - 2);
}

const std::string plain = "0 0 0, 1 0 0, 0 1 0";

TEST(GlbRead, TrianglesStripsAndFans) {
    EXPECT_EQ(cornersIn(glbFile(sample, samplePositions())), plain);
    EXPECT_EQ(cornersIn(sampleWith("/accessors/1/count", 5)), plain); // two corners make no triangle
    Json document = sample;
    document["accessors"][1]["count"] = 5;
    Json& primitive = document["meshes"][0]["primitives"][0];
    primitive["mode"] = 5;
    const std::string strip = plain + ", 1 0 0, 1 1 0, 0 1 0, 0 1 0, 1 1 0, 0 0 1";
    EXPECT_EQ(cornersIn(glbFile(document, samplePositions())), strip);
    primitive.erase("indices");
    EXPECT_EQ(cornersIn(glbFile(document, samplePositions())), strip);
    primitive["mode"] = 6;
    EXPECT_EQ(cornersIn(glbFile(document, samplePositions())), plain + ", 0 0 0, 0 1 0, 1 1 0, 0 0 0, 1 1 0, 0 0 1");
    primitive["mode"] = 1;
    EXPECT_EQ(cornersIn(glbFile(document, samplePositions())), ""); // lines
}

TEST(GlbRead, IndicesOfAllThreeTypes) {
    Json document = sample;
    std::string binary = samplePositions();
    for (const int i : {0, 1, 2}) appendNumber(binary, static_cast<std::uint16_t>(i), ByteOrder::Little);
    binary += std::string(2, '\0');
    for (const int i : {0, 1, 2}) appendNumber(binary, static_cast<std::uint32_t>(i), ByteOrder::Little);
    document["bufferViews"][1]["byteLength"] = binary.size() - 60;
    for (const auto& [type, offset] : {std::pair{5123, 8}, {5125, 16}}) {
        document["accessors"][1]["componentType"] = type;
        document["accessors"][1]["byteOffset"] = offset;
        EXPECT_EQ(cornersIn(glbFile(document, binary)), plain);
    }
}

TEST(GlbRead, NodesPlaceTheirMeshes) {
    const std::string moved = "5 6 7, 6 6 7, 5 7 7";
    EXPECT_EQ(cornersIn(sampleWith("/nodes/0/translation", {5, 6, 7})), moved);
    EXPECT_EQ(cornersIn(sampleWith("/nodes/0/matrix", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1})), moved);
    const double half = std::sqrt(0.5); // a quarter turn about z, behind the scaling
    EXPECT_EQ(cornersIn(sampleWith("/nodes/0", {{"mesh", 0}, {"rotation", {0, 0, half, half}}, {"scale", {2, 3, 4}}})),
              "0 0 0, 0 2 0, -3 0 0");
    Json document = sample;
    document["nodes"] = Json::parse(R"([{"children": [1, 2], "translation": [10, 0, 0]},
        {"mesh": 0, "scale": [2, 2, 2]}, {"mesh": 0, "translation": [0, 1, 0]}, {"mesh": 0}])");
    EXPECT_EQ(cornersIn(glbFile(document, samplePositions())),
              "10 0 0, 12 0 0, 10 2 0, 10 1 0, 11 1 0, 10 2 0"); // node 3 is not in the scene
}

TEST(GlbRead, MirroredNodesTurnTheirTrianglesRound) {
    const std::string mirrored = sampleWith("/nodes/0/scale", {-1, 1, 1});
    EXPECT_EQ(cornersIn(mirrored), "0 0 0, 0 1 0, -1 0 0");
    EXPECT_EQ(readAs(readGlb, mirrored).vertices[0].normal.z, 1.0);
}

TEST(GlbRead, NormalsGoWithTheirSurfaces) {
    Json document = sample;
    document["meshes"][0]["primitives"][0]["attributes"]["NORMAL"] = 0; // the normal at corner 3 is (1 1 0)
    std::string binary = samplePositions();
    binary[60] = 3;
    const auto normalWith = [&](const Json& scale) {
        document["nodes"][0]["scale"] = scale;
        return modelAs(readGlb, glbFile(document, binary)).mesh.vertices[0].normal;
    };
    const Vec3 stretched = normalWith({2, 1, 1}); // flatter along x
    EXPECT_DOUBLE_EQ(stretched.x, 1 / std::sqrt(5.0));
    EXPECT_DOUBLE_EQ(stretched.y, 2 / std::sqrt(5.0));
    const Vec3 mirrored = normalWith({-1, 1, 1});
    EXPECT_DOUBLE_EQ(mirrored.x, -std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(mirrored.y, std::sqrt(0.5));
    document["nodes"][0].erase("scale");
    EXPECT_EQ(modelAs(readGlb, glbFile(document, binary)).mesh.vertices[0].normal.x, 1.0); // as it is in the file
}

TEST(GlbRead, TextureCoordinatesOfAllThreeTypes) {
    Json document = sample;
    document["meshes"][0]["primitives"][0]["attributes"]["TEXCOORD_0"] = 2;
    std::string binary = samplePositions();
    for (int i = 0; i < 5; ++i) appendNumber(binary, std::uint64_t{0xFF}, ByteOrder::Little);
    document["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", 68}, {"byteLength", 40}, {"byteStride", 8}});
    const auto uWith = [&](int type) {
        document["accessors"][2] = {{"bufferView", 2}, {"componentType", type}, {"count", 5}, {"type", "VEC2"}};
        const Model model = modelAs(readGlb, glbFile(document, binary));
        EXPECT_TRUE(model.hasTexture && !model.hasNormals);
        return model.mesh.vertices[1].aux[0];
    };
    EXPECT_EQ(uWith(5121), 1.0);
    EXPECT_EQ(uWith(5123), 255.0 / 65535.0);
    EXPECT_EQ(uWith(5126), 255 * 0x1p-149);
}

TEST(GlbRead, DocumentsAsDeepAsTheyLike) {
    std::string deep = sample.dump();
    deep.insert(1, "\"extras\":" + std::string(1000000, '[') + std::string(1000000, ']') + ",");
    EXPECT_EQ(cornersIn(glbFile(chunk(0x4E4F534A, deep) + chunk(0x004E4942, samplePositions()))), plain);
}

TEST(GlbRefused, InOneLineThatSaysWhereAndWhatToDo) {
    const std::string again = "; export it again";
    const std::string cut = "; it is cut short, export it again";
    const std::string whole = glbFile(sample, samplePositions());
    const std::string json = sample.dump();
    std::string length = whole;
    length[8] = static_cast<char>(length[8] ^ 1);
    const struct {
        std::string bytes;
        std::string message;
    } cases[]{
        {"", "not a GLB file: it begins with \"\", not with \"glTF\"; check that the extension fits the content"},
        {"{\"asset\":",
         "not a GLB file: it begins with \"{\"as\", not with \"glTF\"; check that the extension fits the "
         "content"},
        {"glTF\2", "the file ends at byte 5 within its header" + cut},
        {"glTF\1" + whole.substr(5), "byte 4: version 1 is not read, only 2" + again},
        {whole.substr(0, 300),
         "byte 8: the file announces " + std::to_string(whole.size()) + " bytes, but has 300" + again},
        {glbFile(""), "the file ends at byte 12 within a chunk's header" + cut},
        {glbFile(chunk(0x4E4F534A, "{}").replace(0, 4, "\xFF\xFF\xFF\xFF")),
         "byte 12: the chunk announces 4294967295 bytes, but the file ends after 2" + again},
        {glbFile(chunk(0x004E4942, "")), "byte 12: the first chunk is not JSON" + again},
        {glbFile(chunk(0x4E4F534A, "{\"a\":}")), "byte 26: the JSON is broken here" + again},
        {glbFile(chunk(0x4E4F534A, "[1e999]")), "byte 20: the JSON holds a number beyond what can be held" + again},
        {glbFile(chunk(0x4E4F534A, json)), "bufferViews[0]: it reaches beyond the 0 bytes of the binary chunk" + again},
        {sampleWith("/extensionsRequired", {"KHR_draco_mesh_compression"}),
         "the file requires the extension \"KHR_draco_mesh_compressi...\", which is not read; export it without "
         "compression and extensions"},
        {sampleWith("/scene", 1), "scenes[1]: something in the file needs it, but it is not there" + again},
        {sampleWith("/scene", -1), "the document: scene is not a whole number" + again},
        {sampleWith("/scenes/0/nodes", {"a"}), "scenes[0]: nodes is not a list of indices" + again},
        {sampleWith("/scenes/0/nodes", {0, 0}), "nodes[0]: it is reached twice, but nodes form a tree" + again},
        {sampleWith("/nodes/0/children", {0}), "nodes[0]: it is reached twice, but nodes form a tree" + again},
        {sampleWith("/nodes/0/mesh", 1), "meshes[1]: something in the file needs it, but it is not there" + again},
        {sampleWith("/nodes/0/scale", {1, 1}), "nodes[0]: scale is not a list of 3 numbers" + again},
        {sampleWith("/nodes/0/rotation", {0, 0, 0, 0}), "nodes[0]: rotation is none" + again},
        {sampleWith("/nodes/0", {{"mesh", 0}, {"scale", {1e308, 1, 1}}, {"translation", {1e308, 0, 0}}}),
         "nodes[0]: it moves a vertex further than numbers reach" + again},
        {sampleWith("/meshes/0/primitives/0/mode", 7), "meshes[0].primitives[0]: mode 7 is none" + again},
        {sampleWith("/meshes/0/primitives/0/attributes/POSITION", 2),
         "accessors[2]: something in the file needs it, but it is not there" + again},
        {sampleWith("/accessors/0/sparse", Json::object()),
         "accessors[0]: it is sparse, which is not read; export it without" + again},
        {sampleWith("/accessors/0/type", "VEC4"), "accessors[0]: its type is not VEC3" + again},
        {sampleWith("/accessors/0/componentType", 5122),
         "accessors[0]: componentType 5122 is not one that its use allows" + again},
        {sampleWith("/accessors/0/count", 4294967296),
         "accessors[0]: its 4294967296 items reach beyond the 60 bytes of its buffer view" + again},
        {sampleWith("/accessors/0/count", 18446744073709551615U),
         "accessors[0]: its 18446744073709551615 items reach beyond the 60 bytes of its buffer view" + again},
        {sampleWith("/accessors/0/count", 0.5), "accessors[0]: count is not a whole number" + again},
        {sampleWith("/accessors/0/byteOffset", 1),
         "accessors[0]: its 5 items reach beyond the 60 bytes of its buffer view" + again},
        {sampleWith("/accessors/0/bufferView", 9),
         "bufferViews[9]: something in the file needs it, but it is not there" + again},
        {sampleWith("/bufferViews/0/byteStride", 4), "accessors[0]: its items overlap" + again},
        {sampleWith("/bufferViews/0/byteOffset", 18446744073709551615U),
         "bufferViews[0]: it reaches beyond the 68 bytes of the binary chunk" + again},
        {sampleWith("/buffers/0/uri", "part.bin"),
         "buffers[0]: its content is not in this file's binary chunk" + again},
        {sampleWith("/meshes/0/primitives/0/attributes/NORMAL", 3),
         "accessors[3]: something in the file needs it, but it is not there" + again},
        {sampleWith("/nodes/0/matrix", {1}), "nodes[0]: matrix is not a list of 16 numbers" + again},
    };
    for (const auto& [bytes, message] : cases) EXPECT_EQ(refusalOf(readGlb, bytes), message);
}

TEST(GlbRefused, NumbersInTheBinaryChunk) {
    const std::size_t begin = glbFile(sample, "").size();
    std::string binary = samplePositions();
    binary[61] = 5;
    EXPECT_EQ(refusalOf(readGlb, glbFile(sample, binary)),
              "byte " + std::to_string(begin + 61) +
                  ": 5 is not the index of one of the 5 vertices; repair the mesh or export it again");
    binary = samplePositions();
    binary.replace(4, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(refusalOf(readGlb, glbFile(sample, binary)),
              "byte " + std::to_string(begin + 4) +
                  ": this is not a finite number; repair the mesh or export it again");
}

TEST(GlbRefused, MoreTrianglesThanTheFilePaysFor) {
    Json document = sample;
    Json& primitives = document["meshes"][0]["primitives"];
    primitives[0]["mode"] = 6;
    document["accessors"][1]["count"] = 5000;
    document["bufferViews"][1]["byteLength"] = 5000;
    document["nodes"] = Json::array();
    document["scenes"][0]["nodes"] = Json::array();
    for (std::size_t i = 0; i < 1000; ++i) { // 20 bytes each, for 4998 triangles
        document["nodes"].push_back({{"mesh", 0}});
        document["scenes"][0]["nodes"].push_back(i);
    }
    const std::string binary = samplePositions() + std::string(5000, '\0');
    const std::string refused = ": the same data is used so often that its triangles are more than 8 for each byte of "
                                "the file; export it again";
    EXPECT_EQ(refusalOf(readGlb, glbFile(document, binary)), "meshes[0].primitives[0]" + refused);
    primitives = Json::array();
    for (int i = 0; i < 1000; ++i) primitives.push_back(Json::object()); // no triangles, but a million looks at them
    EXPECT_TRUE(refusalOf(readGlb, glbFile(document, binary)).ends_with(refused));
}

TEST(GlbWritten, AsItsReadersWantIt) {
    Model model;
    model.mesh = meshOf({{{{0, 0, 0}, {2.5, 0, 0}, {0, -1, 0}}}});
    model.hasNormals = true;
    model.mesh.vertices[0].normal = {0, 0, -1e300};
    model.mesh.vertices[1].normal = {};
    Notes notes;
    const std::string bytes = writeGlb(model, {}, notes);
    EXPECT_EQ(bytes.size() % 4, 0U);
    EXPECT_EQ(readNumber<std::uint32_t>(bytes, 8), bytes.size());
    const std::size_t size = readNumber<std::uint32_t>(bytes, 12);
    EXPECT_EQ(size % 4, 0U);
    const Json document = Json::parse(bytes.substr(20, size));
    EXPECT_EQ(document["accessors"][0]["min"], (Json{0.0, -1.0, 0.0}));
    EXPECT_EQ(document["accessors"][0]["max"], (Json{2.5, 0.0, 0.0}));
    const Model read = modelAs(readGlb, bytes);
    EXPECT_TRUE(read.hasNormals && !read.hasTexture);
    for (const types::Vertex& vertex : read.mesh.vertices) EXPECT_EQ(vertex.normal.z, -1.0); // of length 1
}

TEST(GlbWritten, NoTriangles) {
    const std::string bytes = writeAs(writeGlb, {});
    EXPECT_TRUE(readAs(readGlb, bytes).vertices.empty());
    EXPECT_EQ(bytes.find("BIN"), std::string::npos);
}

TEST(GlbWritten, NumbersBeyondSinglePrecisionAreRefused) {
    EXPECT_THROW(writeAs(writeGlb, meshOf({{{{1e39, 0, 0}, {1, 0, 0}, {0, 1, 0}}}})), MeshError);
}

} // namespace
} // namespace orva::program

#include "formats/glb.hpp"

#include "failure.hpp"
#include "formats/bytes.hpp"
#include "formats/glb_accessors.hpp"
#include "formats/messages.hpp"
#include "formats/rounding.hpp"
#include "mesh/facet_normal.hpp"
#include "mesh/model_builder.hpp"
#include "mesh/placement.hpp"
#include "mesh/shared_rows.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orva::program {

namespace {

constexpr std::size_t fileHeaderSize = 12;
constexpr std::size_t chunkHeaderSize = 8;
constexpr std::uint32_t jsonChunk = 0x4E4F534A;   // "JSON"
constexpr std::uint32_t binaryChunk = 0x004E4942; // "BIN\0"

// A mesh that is placed twice counts twice. A file has to pay for its triangles: 8 to a byte lets a screw be there a
// thousand times, and keeps what a small file can ask for small. A primitive without triangles counts as one: looking
// at it takes time.
constexpr std::size_t trianglesPerByte = 8;

// ---- the file and its chunks ----

std::size_t chunkAt(std::string_view bytes, std::size_t place, std::uint32_t& kind) {
    if (bytes.size() - place < chunkHeaderSize) {
        throw MeshError("the file ends at byte " + std::to_string(bytes.size()) +
                        " within a chunk's header; it is cut short, export it again");
    }
    const std::size_t size = readNumber<std::uint32_t>(bytes, place);
    kind = readNumber<std::uint32_t>(bytes, place + 4);
    if (size > bytes.size() - place - chunkHeaderSize) {
        failInJson(byteAt(place), "the chunk announces " + std::to_string(size) + " bytes, but the file ends after " +
                                      std::to_string(bytes.size() - place - chunkHeaderSize));
    }
    return size;
}

Json parseJson(std::string_view text, std::size_t place) {
    try {
        return Json::parse(text.begin(), text.end());
    } catch (const Json::parse_error& error) {
        failInJson(byteAt(place + error.byte), "the JSON is broken here");
    } catch (const Json::exception&) {
        failInJson(byteAt(place), "the JSON holds a number beyond what can be held");
    }
}

GlbFile open(std::string_view bytes) {
    if (!bytes.starts_with("glTF")) {
        throw MeshError("not a GLB file: it begins with " + inQuotes(bytes.substr(0, 4)) +
                        ", not with \"glTF\"; check that the extension fits the content");
    }
    if (bytes.size() < fileHeaderSize) {
        throw MeshError("the file ends at byte " + std::to_string(bytes.size()) +
                        " within its header; it is cut short, export it again");
    }
    const auto version = readNumber<std::uint32_t>(bytes, 4);
    if (version != 2) failInJson(byteAt(4), "version " + std::to_string(version) + " is not read, only 2");
    const std::size_t length = readNumber<std::uint32_t>(bytes, 8);
    if (length != bytes.size()) {
        failInJson(byteAt(8),
                   "the file announces " + std::to_string(length) + " bytes, but has " + std::to_string(bytes.size()));
    }

    GlbFile file{bytes, 0, 0, {}};
    std::size_t place = fileHeaderSize;
    std::uint32_t kind = 0;
    const std::size_t jsonSize = chunkAt(bytes, place, kind);
    if (kind != jsonChunk) failInJson(byteAt(place), "the first chunk is not JSON");
    place += chunkHeaderSize;
    file.document = parseJson(bytes.substr(place, jsonSize), place);
    place += jsonSize;
    if (place < bytes.size()) {
        const std::size_t size = chunkAt(bytes, place, kind);
        if (kind == binaryChunk) {
            file.binaryBegin = place + chunkHeaderSize;
            file.binarySize = size;
        }
    }
    return file;
}

void requireNoExtensions(const Json& document) {
    const auto required = document.find("extensionsRequired");
    if (required == document.end() || required->empty()) return;
    const Json& first = required->front();
    throw MeshError("the file requires the extension " + inQuotes(first.is_string() ? first.get<std::string>() : "?") +
                    ", which is not read; export it without compression and extensions");
}

// ---- nodes ----

types::Vec3 vector(const std::vector<double>& numbers, std::size_t place) {
    return {numbers[place], numbers[place + 1], numbers[place + 2]};
}

Placement placementOf(const Json& node, const std::string& where) {
    Placement placement;
    if (const auto matrix = numbersOf(node, "matrix", 16, where)) {
        return {vector(*matrix, 0), vector(*matrix, 4), vector(*matrix, 8), vector(*matrix, 12), true};
    }
    if (const auto rotation = numbersOf(node, "rotation", 4, where)) {
        const double x = (*rotation)[0];
        const double y = (*rotation)[1];
        const double z = (*rotation)[2];
        const double w = (*rotation)[3];
        const double s = 2.0 / (x * x + y * y + z * z + w * w);
        if (!std::isfinite(s)) failInJson(where, "rotation is none");
        placement.x = {1 - s * (y * y + z * z), s * (x * y + z * w), s * (x * z - y * w)};
        placement.y = {s * (x * y - z * w), 1 - s * (x * x + z * z), s * (y * z + x * w)};
        placement.z = {s * (x * z + y * w), s * (y * z - x * w), 1 - s * (x * x + y * y)};
        placement.moves = true;
    }
    if (const auto scale = numbersOf(node, "scale", 3, where)) {
        placement.x = (*scale)[0] * placement.x;
        placement.y = (*scale)[1] * placement.y;
        placement.z = (*scale)[2] * placement.z;
        placement.moves = true;
    }
    if (const auto translation = numbersOf(node, "translation", 3, where)) {
        placement.origin = vector(*translation, 0);
        placement.moves = true;
    }
    return placement;
}

// Indices of one of an object's lists.
std::vector<std::size_t> indicesOf(const Json& object, const char* key, const std::string& where) {
    std::vector<std::size_t> indices;
    const auto found = object.find(key);
    if (found == object.end()) return indices;
    for (const Json& index : *found) {
        if (!index.is_number_unsigned()) failInJson(where, std::string(key) + " is not a list of indices");
        indices.push_back(index.get<std::size_t>());
    }
    return indices;
}

// The nodes of the default scene that nothing else holds.
std::vector<std::size_t> rootsOf(const Json& document) {
    const auto scenes = document.find("scenes");
    if (scenes == document.end()) return {};
    const std::size_t scene = wholeNumber(document, "scene", "the document").value_or(0);
    return indicesOf(entryOf(document, "scenes", scene), "nodes", entryAt("scenes", scene));
}

struct PlacedMesh {
    std::size_t mesh = 0;
    Placement placement;
    std::size_t node = 0;
};

// In the order of the scene: a node's own mesh, then those of its children.
std::vector<PlacedMesh> placedMeshes(const Json& document) {
    std::vector<PlacedMesh> meshes;
    std::vector<std::pair<std::size_t, Placement>> waiting; // the next one last
    const auto wait = [&waiting](const std::vector<std::size_t>& nodes, const Placement& placement) {
        for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) waiting.emplace_back(*node, placement);
    };
    std::vector<bool> seen;
    wait(rootsOf(document), {});
    while (!waiting.empty()) {
        const auto [index, outer] = waiting.back();
        waiting.pop_back();
        const Json& node = entryOf(document, "nodes", index);
        const std::string where = entryAt("nodes", index);
        seen.resize(std::max(seen.size(), index + 1));
        if (seen[index]) failInJson(where, "it is reached twice, but nodes form a tree");
        seen[index] = true;
        const Placement placement = outer * placementOf(node, where);
        if (const auto mesh = wholeNumber(node, "mesh", where)) meshes.push_back({*mesh, placement, index});
        wait(indicesOf(node, "children", where), placement);
    }
    return meshes;
}

// ---- triangles ----

bool isFinite(const types::Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Of length 1; none where there is no direction. Divided by the largest coordinate first, so that nothing overflows.
std::optional<types::Vec3> unit(const types::Vec3& v) {
    const double largest = std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
    if (!(largest > 0.0) || !isFinite(v)) return {};
    const types::Vec3 scaled{v.x / largest, v.y / largest, v.z / largest};
    const double length = std::sqrt(dot(scaled, scaled));
    return types::Vec3{scaled.x / length, scaled.y / length, scaled.z / length};
}

types::Vec3 vectorOf(const Accessor& accessor, std::size_t item) {
    const double x = accessor.number(item, 0);
    const double y = accessor.number(item, 1);
    const double z = accessor.number(item, 2);
    return {x, y, z};
}

// What the corners of a primitive are made of.
struct Attributes {
    Accessor positions;
    std::optional<Accessor> normals;
    std::optional<Accessor> texture;
};

std::optional<Accessor> attribute(const GlbFile& file, const Json& attributes, const char* name, std::string_view type,
                                  std::initializer_list<ComponentType> components, std::size_t count,
                                  const std::string& where) {
    const auto index = wholeNumber(attributes, name, where);
    if (!index) return {};
    Accessor accessor(file, *index, type, components);
    if (accessor.count() != count) failInJson(where, std::string(name) + " has another count than POSITION");
    return accessor;
}

Corner cornerOf(const Attributes& attributes, std::size_t vertex, const PlacedMesh& placed) {
    Corner corner;
    corner.position = vectorOf(attributes.positions, vertex);
    if (attributes.normals) corner.normal = vectorOf(*attributes.normals, vertex);
    if (attributes.texture)
        corner.texture = {attributes.texture->number(vertex, 0), attributes.texture->number(vertex, 1)};
    if (!placed.placement.moves) return corner;

    corner.position = place(placed.placement, corner.position);
    if (!isFinite(corner.position)) {
        failInJson(entryAt("nodes", placed.node), "it moves a vertex further than numbers reach");
    }
    if (corner.normal) corner.normal = unit(placeNormal(placed.placement, *corner.normal));
    return corner;
}

// The places in the list of vertices, or of their indices, of a triangle's corners.
std::array<std::size_t, 3> cornersOf(std::size_t triangle, std::size_t mode) {
    constexpr std::size_t strip = 5;
    constexpr std::size_t fan = 6;
    if (mode == strip) return {triangle, triangle + 1 + triangle % 2, triangle + 2 - triangle % 2};
    if (mode == fan) return {0, triangle + 1, triangle + 2};
    return {3 * triangle, 3 * triangle + 1, 3 * triangle + 2};
}

void spend(std::size_t& budget, std::size_t triangles, const std::string& where) {
    if (triangles > budget) {
        failInJson(where, "the same data is used so often that its triangles are more than " +
                              std::to_string(trianglesPerByte) + " for each byte of the file");
    }
    budget -= triangles;
}

// A vertex of a file: the node, the positions that its mesh refers to, and the place among these. Primitives that refer
// to the same positions share their vertices.
using VertexName = std::array<std::size_t, 3>;

void readPrimitive(const GlbFile& file, const Json& primitive, const std::string& where, const PlacedMesh& placed,
                   std::size_t& budget, ModelBuilder& builder, std::vector<VertexName>& names) {
    spend(budget, 1, where);
    constexpr std::size_t triangles = 4; // 0 to 3 are points and lines, 5 and 6 strips and fans
    const std::size_t mode = wholeNumber(primitive, "mode", where).value_or(triangles);
    if (mode > 6) failInJson(where, "mode " + std::to_string(mode) + " is none");
    const auto found = primitive.find("attributes");
    const auto position = found == primitive.end() ? std::nullopt : wholeNumber(*found, "POSITION", where);
    if (mode < triangles || !position) return;

    using enum ComponentType;
    Attributes attributes{Accessor(file, *position, "VEC3", {Float}), {}, {}};
    const std::size_t vertices = attributes.positions.count();
    attributes.normals = attribute(file, *found, "NORMAL", "VEC3", {Float}, vertices, where);
    attributes.texture = attribute(file, *found, "TEXCOORD_0", "VEC2", {Float, Uint8, Uint16}, vertices, where);
    std::optional<Accessor> indices;
    if (const auto index = wholeNumber(primitive, "indices", where)) {
        indices.emplace(file, *index, "SCALAR", std::initializer_list<ComponentType>{Uint8, Uint16, Uint32});
    }

    const std::size_t corners = indices ? indices->count() : vertices;
    const std::size_t count = mode == triangles ? corners / 3 : corners < 3 ? 0 : corners - 2;
    spend(budget, count, where);
    const bool mirrored = isMirrored(placed.placement);
    for (std::size_t i = 0; i < count; ++i) {
        std::array<std::size_t, 3> triangle = cornersOf(i, mode);
        for (std::size_t& corner : triangle) {
            if (!indices) continue;
            const std::size_t item = corner;
            corner = indices->wholeNumber(item);
            if (corner >= vertices) failIndex(byteAt(indices->placeOf(item, 0)), std::to_string(corner), vertices);
        }
        if (mirrored) std::swap(triangle[1], triangle[2]);
        for (const std::size_t vertex : triangle) names.push_back({placed.node, *position, vertex});
        builder.addTriangle(cornerOf(attributes, triangle[0], placed), cornerOf(attributes, triangle[1], placed),
                            cornerOf(attributes, triangle[2], placed));
    }
}

// The vertices by numbers, without gaps: no file can ask for more than it has corners.
std::vector<std::uint32_t> numbersFor(const std::vector<VertexName>& names) {
    std::vector<VertexName> sorted = names;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    if (sorted.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw MeshError("more than 4294967295 vertices; divide the mesh into several files");
    }
    std::vector<std::uint32_t> numbers;
    numbers.reserve(names.size());
    for (const VertexName& name : names) {
        const auto place = std::lower_bound(sorted.begin(), sorted.end(), name) - sorted.begin();
        numbers.push_back(static_cast<std::uint32_t>(place));
    }
    return numbers;
}

// ---- writing ----

constexpr std::size_t rowSize = 8; // position, normal, texture coordinates

// note: behind them stands the model's own index, if it has one: vertices that differ in nothing else stay two.
struct Table {
    SharedRows<rowSize + 1> vertices;
    std::vector<std::size_t> corners;
};

// A normal that a file may have: of length 1, if need be that of the triangle, or any.
types::Vec3 writableNormal(const types::Vec3& normal, const types::Vec3& facet) {
    if (const auto direction = unit(normal)) return *direction;
    return unit(facet).value_or(types::Vec3{0, 0, 1});
}

Table tableOf(const Model& model, Notes& notes) {
    Table table;
    Rounding rounded;
    const auto single = [](double value) { return static_cast<double>(static_cast<float>(value)); };
    for (std::size_t i = 0; i < countTriangles(model.mesh); ++i) {
        const Corners corners = rounded(model.mesh, i, inSinglePrecision);
        for (std::size_t k = 0; k < 3; ++k) {
            const types::Vertex& vertex = model.mesh.vertices[3 * i + k];
            std::array<double, rowSize + 1> row{corners[k].x, corners[k].y, corners[k].z};
            if (!model.indices.empty()) row[rowSize] = static_cast<double>(model.indices[3 * i + k]);
            if (model.hasNormals) {
                const types::Vec3 facet = facetNormal(corners[0], corners[1], corners[2]);
                const types::Vec3 normal = writableNormal(vertex.normal, facet);
                row[3] = single(normal.x);
                row[4] = single(normal.y);
                row[5] = single(normal.z);
            }
            if (model.hasTexture) {
                row[6] = inSinglePrecision(vertex.aux[0]);
                row[7] = inSinglePrecision(vertex.aux[1]);
            }
            table.corners.push_back(table.vertices.indexOf(row));
        }
    }
    rounded.note(notes, "single precision");
    return table;
}

// Adds an accessor with a buffer view of its own, whose content ends where `binary` does.
std::size_t addAccessor(Json& document, std::size_t begin, std::size_t end, Json accessor, std::size_t target) {
    accessor["bufferView"] = document["bufferViews"].size();
    document["bufferViews"].push_back(
        {{"buffer", 0}, {"byteOffset", begin}, {"byteLength", end - begin}, {"target", target}});
    document["accessors"].push_back(std::move(accessor));
    return document["accessors"].size() - 1;
}

// The columns from `first` on of all rows, and their accessor.
std::size_t addAttribute(Json& document, std::string& binary, const Table& table, std::size_t first,
                         std::size_t count) {
    constexpr std::size_t arrayBuffer = 34962;
    const std::size_t begin = binary.size();
    const auto& rows = table.vertices.rows();
    std::array<double, 3> low{};
    std::array<double, 3> high{};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t k = 0; k < count; ++k) {
            const double value = rows[i][first + k];
            low[k] = i == 0 ? value : std::min(low[k], value);
            high[k] = i == 0 ? value : std::max(high[k], value);
            appendNumber(binary, static_cast<float>(value), ByteOrder::Little);
        }
    }
    Json accessor{{"componentType", static_cast<int>(ComponentType::Float)},
                  {"count", rows.size()},
                  {"type", count == 2 ? "VEC2" : "VEC3"}};
    if (first == 0) { // positions have to say how far they reach
        accessor["min"] = low;
        accessor["max"] = high;
    }
    return addAccessor(document, begin, binary.size(), std::move(accessor), arrayBuffer);
}

std::size_t addIndices(Json& document, std::string& binary, const Table& table) {
    constexpr std::size_t elementArrayBuffer = 34963;
    const std::size_t begin = binary.size();
    for (const std::size_t corner : table.corners) {
        appendNumber(binary, static_cast<std::uint32_t>(corner), ByteOrder::Little);
    }
    const Json accessor{{"componentType", static_cast<int>(ComponentType::Uint32)},
                        {"count", table.corners.size()},
                        {"type", "SCALAR"}};
    return addAccessor(document, begin, binary.size(), accessor, elementArrayBuffer);
}

void appendChunk(std::string& bytes, std::uint32_t kind, std::string_view content, char padding) {
    const std::size_t padded = (content.size() + 3) / 4 * 4;
    appendNumber(bytes, static_cast<std::uint32_t>(padded), ByteOrder::Little);
    appendNumber(bytes, kind, ByteOrder::Little);
    bytes += content;
    bytes.append(padded - content.size(), padding);
}

} // namespace

Model readGlb(std::string_view bytes, Notes& /*notes*/) {
    const GlbFile file = open(bytes);
    requireNoExtensions(file.document);
    ModelBuilder builder;
    std::vector<VertexName> names;
    std::size_t budget = trianglesPerByte * bytes.size();
    for (const PlacedMesh& placed : placedMeshes(file.document)) {
        const Json& mesh = entryOf(file.document, "meshes", placed.mesh);
        const auto primitives = mesh.find("primitives");
        if (primitives == mesh.end()) continue;
        for (std::size_t i = 0; i < primitives->size(); ++i) {
            const std::string where = entryAt("meshes", placed.mesh) + "." + entryAt("primitives", i);
            readPrimitive(file, entryOf(mesh, "primitives", i), where, placed, budget, builder, names);
        }
    }
    Model model = builder.take();
    model.indices = numbersFor(names);
    return model;
}

std::string writeGlb(const Model& model, const WriteOptions& /*options*/, Notes& notes) {
    const Table table = tableOf(model, notes);
    constexpr std::uint64_t largest = std::numeric_limits<std::uint32_t>::max() - std::uint64_t{4096}; // with its JSON
    if (table.vertices.rows().size() * 32 + table.corners.size() * 4 > largest) {
        throw MeshError("the mesh is too large for GLB, which ends at 4 GiB; write .ply");
    }

    Json document{{"asset", {{"version", "2.0"}, {"generator", "orva"}}}, {"scene", 0}};
    Json scene = Json::object();
    std::string binary;
    if (!table.corners.empty()) { // an empty list is not allowed anywhere
        Json attributes{{"POSITION", addAttribute(document, binary, table, 0, 3)}};
        if (model.hasNormals) attributes["NORMAL"] = addAttribute(document, binary, table, 3, 3);
        if (model.hasTexture) attributes["TEXCOORD_0"] = addAttribute(document, binary, table, 6, 2);
        const std::size_t indices = addIndices(document, binary, table);
        const Json primitive{{"attributes", attributes}, {"indices", indices}};
        document["meshes"] = Json::array({{{"primitives", Json::array({primitive})}}});
        document["nodes"] = Json::array({{{"mesh", 0}}});
        document["buffers"] = Json::array({{{"byteLength", binary.size()}}});
        scene["nodes"] = Json::array({0});
    }
    document["scenes"] = Json::array({scene});

    std::string chunks;
    appendChunk(chunks, jsonChunk, document.dump(), ' ');
    if (!binary.empty()) appendChunk(chunks, binaryChunk, binary, '\0');
    std::string bytes = "glTF";
    appendNumber(bytes, std::uint32_t{2}, ByteOrder::Little);
    appendNumber(bytes, static_cast<std::uint32_t>(fileHeaderSize + chunks.size()), ByteOrder::Little);
    return bytes + chunks;
}

} // namespace orva::program

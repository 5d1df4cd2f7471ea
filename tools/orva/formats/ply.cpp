#include "formats/ply.hpp"

#include "failure.hpp"
#include "formats/bytes.hpp"
#include "formats/ply_header.hpp"
#include "mesh/model_builder.hpp"
#include "mesh/shared_rows.hpp"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orva::program {

namespace {

// ---- the content, number by number ----

// Both kinds: a number, which has to be finite; a whole number; passing over `count` numbers; and nothing behind the
// last one.
class TextValues {
public:
    explicit TextValues(const Words& behindHeader) : words(behindHeader) {}

    Progress progress;

    std::string where() const { return lineAt(words.line()); }

    double number(PlyType /*type*/) { return finiteNumber(words, nextOf(words, progress)); }

    std::int64_t integer(PlyType /*type*/) {
        const std::string_view word = nextOf(words, progress);
        std::int64_t value = 0;
        if (!parse(word, value)) failAt(words, inQuotes(word) + " is not a whole number");
        return value;
    }

    void skip(PlyType /*type*/, std::uint64_t count) {
        for (; count > 0; --count) nextOf(words, progress);
    }

    void end() {
        if (!words.next().empty()) failAt(words, "more follows than the header announces");
    }

private:
    Words words;
};

class BinaryValues {
public:
    BinaryValues(std::string_view bytesOfFile, std::size_t begin, ByteOrder itsOrder)
        : bytes(bytesOfFile), place(begin), order(itsOrder) {}

    Progress progress;

    std::string where() const { return byteAt(last); }

    double number(PlyType type) {
        const double value = type == PlyType::Float    ? static_cast<double>(take<float>())
                             : type == PlyType::Double ? take<double>()
                                                       : static_cast<double>(integer(type));
        if (!std::isfinite(value)) failAt(where(), "this is not a finite number");
        return value;
    }

    std::int64_t integer(PlyType type) {
        switch (type) {
        case PlyType::Int8:
            return take<std::int8_t>();
        case PlyType::Uint8:
            return take<std::uint8_t>();
        case PlyType::Int16:
            return take<std::int16_t>();
        case PlyType::Uint16:
            return take<std::uint16_t>();
        case PlyType::Int32:
            return take<std::int32_t>();
        default:
            return take<std::uint32_t>();
        }
    }

    void skip(PlyType type, std::uint64_t count) {
        constexpr std::array<std::size_t, 8> sizes{1, 1, 2, 2, 4, 4, 4, 8};
        const std::size_t size = sizes[static_cast<std::size_t>(type)];
        require(count, size);
        place += static_cast<std::size_t>(count) * size;
    }

    void end() {
        last = place;
        if (bytes.find_first_not_of("\r\n", place) != std::string_view::npos) {
            failAt(where(), "more follows than the header announces");
        }
    }

private:
    template <typename T> T take() {
        require(1, sizeof(T));
        place += sizeof(T);
        return readNumber<T>(bytes, last, order);
    }

    void require(std::uint64_t count, std::size_t size) {
        last = place;
        if (count > (bytes.size() - place) / size) failCutShort(byteAt(bytes.size()), progress);
    }

    std::string_view bytes;
    std::size_t place;
    std::size_t last = 0; // where the number taken last begins
    ByteOrder order;
};

template <typename Values> std::uint64_t lengthOfList(Values& values, const PlyProperty& property) {
    const std::int64_t length = values.integer(*property.count);
    if (length < 0) failAt(values.where(), std::to_string(length) + " is not the length of a list");
    return static_cast<std::uint64_t>(length);
}

template <typename Values> void skipProperty(Values& values, const PlyProperty& property) {
    values.skip(property.type, property.count ? lengthOfList(values, property) : 1);
}

template <typename Values> void skipElement(Values& values, const PlyElement& element) {
    if (element.properties.empty()) return; // whatever their number, there is nothing of them
    for (; values.progress.item < values.progress.count; ++values.progress.item) {
        for (const PlyProperty& property : element.properties) skipProperty(values, property);
    }
}

// ---- vertices ----

struct Vertices {
    std::vector<types::Vertex> list;
    bool haveNormals = false;
    bool haveTexture = false;
};

// Position, normal, texture coordinates: where each property goes, if anywhere.
constexpr std::size_t rowSize = 8;
struct Slots {
    std::vector<std::size_t> ofProperty;
    bool take(const PlyElement& element, std::size_t slot, std::initializer_list<std::string_view> names) {
        ofProperty.resize(element.properties.size(), rowSize);
        std::vector<std::size_t> found;
        for (const std::string_view name : names) {
            if (const auto place = element.find({name}, false)) found.push_back(*place);
        }
        if (found.size() < names.size()) return false;
        for (const std::size_t place : found) ofProperty[place] = slot++;
        return true;
    }
};

template <typename Values> Vertices readVertices(Values& values, const PlyElement& element) {
    Slots slots;
    Vertices vertices;
    if (!slots.take(element, 0, {"x", "y", "z"})) throw MeshError("the vertices have no x, y and z; export it again");
    vertices.haveNormals = slots.take(element, 3, {"nx", "ny", "nz"});
    vertices.haveTexture = slots.take(element, 6, {"s", "t"}) || slots.take(element, 6, {"u", "v"}) ||
                           slots.take(element, 6, {"texture_u", "texture_v"});
    for (; values.progress.item < values.progress.count; ++values.progress.item) {
        std::array<double, rowSize> row{};
        for (std::size_t i = 0; i < element.properties.size(); ++i) {
            const PlyProperty& property = element.properties[i];
            if (slots.ofProperty[i] == rowSize) {
                skipProperty(values, property);
            } else {
                row[slots.ofProperty[i]] = values.number(property.type);
            }
        }
        vertices.list.push_back({{row[0], row[1], row[2]}, {row[3], row[4], row[5]}, {row[6], row[7]}});
    }
    return vertices;
}

Corner cornerOf(const Vertices& vertices, std::size_t index) {
    const types::Vertex& vertex = vertices.list[index];
    Corner corner{vertex.pos, {}, {}, index};
    if (vertices.haveNormals) corner.normal = vertex.normal;
    if (vertices.haveTexture) corner.texture = vertex.aux;
    return corner;
}

// ---- faces ----

template <typename Values>
void readCorners(Values& values, const PlyProperty& property, const Vertices& vertices, ModelBuilder& builder) {
    for (std::uint64_t length = lengthOfList(values, property); length > 0; --length) {
        const std::int64_t index = values.integer(property.type);
        if (index < 0 || static_cast<std::uint64_t>(index) >= vertices.list.size()) {
            failIndex(values.where(), std::to_string(index), vertices.list.size());
        }
        builder.addCorner(cornerOf(vertices, static_cast<std::size_t>(index)));
    }
}

template <typename Values> std::uint32_t readOrigin(Values& values, const PlyProperty& property) {
    const std::int64_t value = values.integer(property.type);
    if (value < 0 || value > std::numeric_limits<std::uint32_t>::max()) {
        failAt(values.where(), std::to_string(value) + " is no " + std::string(property.name));
    }
    return static_cast<std::uint32_t>(value);
}

template <typename Values> Model readFaces(Values& values, const PlyElement& element, const Vertices& vertices) {
    const auto list = element.find({"vertex_indices", "vertex_index"}, true);
    if (!list || !isInteger(element.properties[*list].type)) {
        throw MeshError("the faces have no list of whole numbers vertex_indices; export it again");
    }
    const auto sourceMesh = element.find({"source_mesh"}, false);
    const auto sourceFace = element.find({"source_face"}, false);
    const bool haveOrigins = sourceMesh && sourceFace && isInteger(element.properties[*sourceMesh].type) &&
                             isInteger(element.properties[*sourceFace].type);
    ModelBuilder builder;
    std::vector<Origin> origins;
    for (; values.progress.item < values.progress.count; ++values.progress.item) {
        builder.beginFace();
        Origin origin;
        for (std::size_t i = 0; i < element.properties.size(); ++i) {
            const PlyProperty& property = element.properties[i];
            if (i == list) {
                readCorners(values, property, vertices, builder);
            } else if (haveOrigins && i == sourceMesh) {
                origin.mesh = readOrigin(values, property);
            } else if (haveOrigins && i == sourceFace) {
                origin.face = readOrigin(values, property);
            } else {
                skipProperty(values, property);
            }
        }
        if (haveOrigins) origins.resize(builder.triangles(), origin);
    }
    Model model = builder.take();
    model.origins = std::move(origins);
    return model;
}

template <typename Values> Model readContent(Values values, const PlyHeader& header, Notes& notes) {
    Model model;
    Vertices vertices;
    bool seenVertices = false;
    bool seenFaces = false;
    const auto once = [](bool& seen, std::string_view name) {
        if (seen) throw MeshError("the element " + std::string(name) + " is there twice; export it again");
        seen = true;
    };
    for (const PlyElement& element : header.elements) {
        values.progress = {inQuotes(element.name) + " elements", 0, element.count};
        if (element.name == "vertex") {
            values.progress.kind = "vertices";
            once(seenVertices, element.name);
            vertices = readVertices(values, element);
        } else if (element.name == "face") {
            values.progress.kind = "faces";
            once(seenFaces, element.name);
            if (!seenVertices) throw MeshError("the faces stand before the vertices; export it again");
            model = readFaces(values, element, vertices);
        } else {
            skipElement(values, element);
        }
    }
    values.end();
    if (!seenFaces) notes.push_back("the file has " + std::to_string(vertices.list.size()) + " vertices and no faces");
    return model;
}

// Where binary content begins: behind the one line end of the header's last line, which is like that of the first.
std::size_t beginOfContent(std::string_view bytes, Words& words) {
    words.skipLine();
    const std::size_t firstLineEnd = bytes.find_first_of("\r\n");
    const bool pairs = firstLineEnd != std::string_view::npos && bytes.substr(firstLineEnd, 2) == "\r\n";
    const std::string_view rest = words.rest();
    return bytes.size() - rest.size() + std::min<std::size_t>(rest.size(), pairs ? 2 : 1);
}

// ---- writing ----

// note: behind the properties stands the model's own index, if it has one: vertices that differ in nothing else stay
// two.
struct Table {
    SharedRows<rowSize + 1> vertices;
    std::vector<std::size_t> corners;
};

Table tableOf(const Model& model) {
    Table table;
    const std::size_t count = 3 * countTriangles(model.mesh);
    table.corners.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const types::Vertex& vertex = model.mesh.vertices[i];
        const types::Vec3 normal = model.hasNormals ? vertex.normal : types::Vec3();
        const std::array<double, 2> texture = model.hasTexture ? vertex.aux : std::array<double, 2>();
        const double index = model.indices.empty() ? 0.0 : static_cast<double>(model.indices[i]);
        table.corners.push_back(table.vertices.indexOf(
            {vertex.pos.x, vertex.pos.y, vertex.pos.z, normal.x, normal.y, normal.z, texture[0], texture[1], index}));
    }
    if (table.vertices.rows().size() > std::numeric_limits<std::uint32_t>::max()) {
        throw MeshError("too many vertices for PLY; write .stl or divide the mesh");
    }
    return table;
}

// The places of a row that the model has.
std::vector<std::size_t> columnsOf(const Model& model) {
    std::vector<std::size_t> columns{0, 1, 2};
    if (model.hasNormals) columns.insert(columns.end(), {3, 4, 5});
    if (model.hasTexture) columns.insert(columns.end(), {6, 7});
    return columns;
}

std::string headerOf(const Model& model, const Table& table, std::string_view form) {
    constexpr std::array<std::string_view, rowSize> names{"x", "y", "z", "nx", "ny", "nz", "s", "t"};
    const std::size_t vertices = table.vertices.rows().size();
    std::string text = "ply\nformat " + std::string(form) + " 1.0\ncomment written by orva\n";
    text += "element vertex " + std::to_string(vertices) + "\n";
    for (const std::size_t column : columnsOf(model)) text += "property double " + std::string(names[column]) + "\n";
    text += "element face " + std::to_string(table.corners.size() / 3) + "\n";
    // note: unsigned only where it has to be, because some programs read no other type than int.
    text += vertices <= 0x80000000U ? "property list uchar int vertex_indices\n"
                                    : "property list uchar uint vertex_indices\n";
    if (!model.origins.empty()) text += "property uint source_mesh\nproperty uint source_face\n";
    return text + "end_header\n";
}

std::string writeBinary(const Model& model, ByteOrder order) {
    const Table table = tableOf(model);
    std::string bytes =
        headerOf(model, table, order == ByteOrder::Little ? "binary_little_endian" : "binary_big_endian");
    const std::vector<std::size_t> columns = columnsOf(model);
    for (const auto& row : table.vertices.rows()) {
        for (const std::size_t column : columns) appendNumber(bytes, row[column], order);
    }
    for (std::size_t i = 0; i < table.corners.size(); i += 3) {
        bytes += '\3';
        for (std::size_t k = 0; k < 3; ++k) {
            appendNumber(bytes, static_cast<std::uint32_t>(table.corners[i + k]), order);
        }
        if (model.origins.empty()) continue;
        appendNumber(bytes, model.origins[i / 3].mesh, order);
        appendNumber(bytes, model.origins[i / 3].face, order);
    }
    return bytes;
}

} // namespace

Model readPly(std::string_view bytes, Notes& notes) {
    Words words(bytes);
    const PlyHeader header = readPlyHeader(words);
    if (header.form == PlyForm::Text) return readContent(TextValues(words), header, notes);
    const ByteOrder order = header.form == PlyForm::LittleEndian ? ByteOrder::Little : ByteOrder::Big;
    return readContent(BinaryValues(bytes, beginOfContent(bytes, words), order), header, notes);
}

std::string writePly(const Model& model, const WriteOptions& /*options*/, Notes& /*notes*/) {
    return writeBinary(model, ByteOrder::Little);
}

std::string writePlyBigEndian(const Model& model, const WriteOptions& /*options*/, Notes& /*notes*/) {
    return writeBinary(model, ByteOrder::Big);
}

std::string writeTextPly(const Model& model, const WriteOptions& options, Notes& /*notes*/) {
    const Table table = tableOf(model);
    std::string text = headerOf(model, table, "ascii");
    const std::vector<std::size_t> columns = columnsOf(model);
    for (const auto& row : table.vertices.rows()) {
        for (const std::size_t column : columns) {
            if (column != 0) text += ' ';
            appendNumber(text, row[column], options);
        }
        text += '\n';
    }
    for (std::size_t i = 0; i < table.corners.size(); i += 3) {
        text += '3';
        for (std::size_t k = 0; k < 3; ++k) {
            text += ' ';
            appendNumber(text, table.corners[i + k]);
        }
        if (!model.origins.empty()) {
            for (const std::size_t value : {model.origins[i / 3].mesh, model.origins[i / 3].face}) {
                text += ' ';
                appendNumber(text, value);
            }
        }
        text += '\n';
    }
    return text;
}

} // namespace orva::program

#include "formats/ply_header.hpp"

#include "failure.hpp"

namespace orva::program {

namespace {

struct NameOfType {
    std::string_view name;
    PlyType type;
};

constexpr NameOfType namesOfTypes[]{
    {"char", PlyType::Int8},   {"int8", PlyType::Int8},     {"uchar", PlyType::Uint8},   {"uint8", PlyType::Uint8},
    {"short", PlyType::Int16}, {"int16", PlyType::Int16},   {"ushort", PlyType::Uint16}, {"uint16", PlyType::Uint16},
    {"int", PlyType::Int32},   {"int32", PlyType::Int32},   {"uint", PlyType::Uint32},   {"uint32", PlyType::Uint32},
    {"float", PlyType::Float}, {"float32", PlyType::Float}, {"double", PlyType::Double}, {"float64", PlyType::Double},
};

PlyType typeOf(const Words& words, std::string_view word) {
    for (const NameOfType& known : namesOfTypes) {
        if (known.name == word) return known.type;
    }
    failAt(words, inQuotes(word) + " is not a type of numbers");
}

PlyForm formOf(const Words& words, std::string_view word) {
    if (word == "ascii") return PlyForm::Text;
    if (word == "binary_little_endian") return PlyForm::LittleEndian;
    if (word == "binary_big_endian") return PlyForm::BigEndian;
    failAt(words, inQuotes(word) + " is none of ascii, binary_little_endian and binary_big_endian");
}

PlyElement readElement(Words& words) {
    PlyElement element;
    element.name = words.nextInLine();
    const std::string_view count = words.nextInLine();
    if (!parse(count, element.count)) failAt(words, inQuotes(count) + " is not a number of elements");
    return element;
}

PlyProperty readProperty(Words& words) {
    PlyProperty property;
    std::string_view type = words.nextInLine();
    if (type == "list") {
        property.count = typeOf(words, words.nextInLine());
        if (!isInteger(*property.count)) failAt(words, "the length of a list has to be a whole number");
        type = words.nextInLine();
    }
    property.type = typeOf(words, type);
    property.name = words.nextInLine();
    if (property.name.empty()) failAt(words, "the property has no name");
    return property;
}

} // namespace

std::optional<std::size_t> PlyElement::find(std::initializer_list<std::string_view> names, bool list) const {
    for (const std::string_view wanted : names) {
        for (std::size_t i = 0; i < properties.size(); ++i) {
            if (properties[i].name == wanted && properties[i].count.has_value() == list) return i;
        }
    }
    return {};
}

PlyHeader readPlyHeader(Words& words) {
    const std::string_view magic = words.next();
    if (magic != "ply") {
        throw MeshError("not a PLY file: line " + std::to_string(words.line()) + " begins with " + inQuotes(magic) +
                        ", not with ply; check that the extension fits the content");
    }
    PlyHeader header;
    std::optional<PlyForm> form;
    for (;;) {
        words.skipLine();
        const std::string_view keyword = words.next();
        if (keyword == "format") {
            form = formOf(words, words.nextInLine());
        } else if (keyword == "element") {
            header.elements.push_back(readElement(words));
        } else if (keyword == "property") {
            if (header.elements.empty()) failAt(words, "a property stands before the first element");
            header.elements.back().properties.push_back(readProperty(words));
        } else if (keyword == "end_header") {
            break;
        } else if (keyword.empty()) {
            throw MeshError("the file ends at line " + std::to_string(words.line()) +
                            " within its header; it is cut short, export it again");
        } else if (keyword != "comment" && keyword != "obj_info") {
            failAt(words, inQuotes(keyword) + " is no word of a PLY header");
        }
    }
    if (!form) failAt(words, "the header does not say whether the content is text or binary");
    header.form = *form;
    return header;
}

} // namespace orva::program

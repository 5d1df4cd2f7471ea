#include "formats/glb_accessors.hpp"

#include "failure.hpp"
#include "formats/bytes.hpp"
#include "formats/messages.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orva::program {

namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

std::size_t sizeOf(ComponentType type) {
    switch (type) {
    case ComponentType::Int8:
    case ComponentType::Uint8:
        return 1;
    case ComponentType::Int16:
    case ComponentType::Uint16:
        return 2;
    default:
        return 4;
    }
}

struct View {
    std::size_t begin = 0; ///< in the file
    std::size_t size = 0;
    std::size_t stride = 0; ///< 0 if items follow one another
};

// The bytes of a buffer view, which are all there.
View viewOf(const GlbFile& file, std::size_t index) {
    const std::string where = entryAt("bufferViews", index);
    const Json& entry = entryOf(file.document, "bufferViews", index);
    const std::size_t buffer = wholeNumber(entry, "buffer", where).value_or(none);
    if (entryOf(file.document, "buffers", buffer).contains("uri") || buffer != 0) {
        failInJson(entryAt("buffers", buffer), "its content is not in this file's binary chunk");
    }
    const std::size_t offset = wholeNumber(entry, "byteOffset", where).value_or(0);
    const std::size_t size = wholeNumber(entry, "byteLength", where).value_or(0);
    if (offset > file.binarySize || size > file.binarySize - offset) {
        failInJson(where, "it reaches beyond the " + std::to_string(file.binarySize) + " bytes of the binary chunk");
    }
    return {file.binaryBegin + offset, size, wholeNumber(entry, "byteStride", where).value_or(0)};
}

} // namespace

void failInJson(const std::string& where, const std::string& what) {
    throw MeshError(where + ": " + what + "; export it again");
}

std::string entryAt(std::string_view list, std::size_t index) {
    return std::string(list) + "[" + (index == none ? "" : std::to_string(index)) + "]";
}

const Json& entryOf(const Json& document, const char* list, std::size_t index) {
    const auto found = document.find(list);
    if (found == document.end() || !found->is_array() || index >= found->size() || !(*found)[index].is_object()) {
        failInJson(entryAt(list, index), "something in the file needs it, but it is not there");
    }
    return (*found)[index];
}

std::optional<std::size_t> wholeNumber(const Json& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) return {};
    if (!found->is_number_unsigned()) failInJson(where, std::string(key) + " is not a whole number");
    return found->get<std::size_t>();
}

std::optional<std::vector<double>> numbersOf(const Json& object, const char* key, std::size_t count,
                                             const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) return {};
    std::vector<double> numbers;
    for (const Json& value : *found) {
        if (value.is_number() && std::isfinite(value.get<double>())) numbers.push_back(value.get<double>());
    }
    if (!found->is_array() || found->size() != count || numbers.size() != count) {
        failInJson(where, std::string(key) + " is not a list of " + std::to_string(count) + " numbers");
    }
    return numbers;
}

Accessor::Accessor(const GlbFile& file, std::size_t index, std::string_view type,
                   std::initializer_list<ComponentType> components)
    : bytes(file.bytes) {
    const std::string where = entryAt("accessors", index);
    const Json& entry = entryOf(file.document, "accessors", index);
    if (entry.contains("sparse")) failInJson(where, "it is sparse, which is not read; export it without");
    const auto typeFound = entry.find("type");
    if (typeFound == entry.end() || *typeFound != type) failInJson(where, "its type is not " + std::string(type));

    const std::size_t code = program::wholeNumber(entry, "componentType", where).value_or(0);
    const auto* const known = std::find_if(components.begin(), components.end(),
                                           [code](ComponentType one) { return static_cast<std::size_t>(one) == code; });
    if (known == components.end()) {
        failInJson(where, "componentType " + std::to_string(code) + " is not one that its use allows");
    }
    component = *known;
    componentSize = sizeOf(component);
    const std::size_t itemSize = componentSize * (type == "SCALAR" ? 1 : type == "VEC2" ? 2 : 3);

    const View view = viewOf(file, program::wholeNumber(entry, "bufferView", where).value_or(none));
    const std::size_t offset = program::wholeNumber(entry, "byteOffset", where).value_or(0);
    items = program::wholeNumber(entry, "count", where).value_or(0);
    stride = view.stride == 0 ? itemSize : view.stride;
    if (stride < itemSize) failInJson(where, "its items overlap");
    if (items == 0) return;
    if (offset > view.size || view.size - offset < itemSize || (view.size - offset - itemSize) / stride < items - 1) {
        failInJson(where, "its " + std::to_string(items) + " items reach beyond the " + std::to_string(view.size) +
                              " bytes of its buffer view");
    }
    begin = view.begin + offset;
}

double Accessor::number(std::size_t item, std::size_t part) const {
    const std::size_t place = placeOf(item, part);
    switch (component) {
    case ComponentType::Uint8:
        return readNumber<std::uint8_t>(bytes, place) / 255.0;
    case ComponentType::Uint16:
        return readNumber<std::uint16_t>(bytes, place) / 65535.0;
    default:
        break;
    }
    const auto value = readNumber<float>(bytes, place);
    if (!std::isfinite(value)) failAt(byteAt(place), "this is not a finite number");
    return static_cast<double>(value);
}

std::size_t Accessor::wholeNumber(std::size_t item) const {
    const std::size_t place = placeOf(item, 0);
    switch (component) {
    case ComponentType::Uint8:
        return readNumber<std::uint8_t>(bytes, place);
    case ComponentType::Uint16:
        return readNumber<std::uint16_t>(bytes, place);
    default:
        return readNumber<std::uint32_t>(bytes, place);
    }
}

} // namespace orva::program

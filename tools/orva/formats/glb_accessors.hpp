/// @file
/// The numbers that a GLB file's JSON names in its binary chunk.
#ifndef ORVA_PROGRAM_FORMATS_GLB_ACCESSORS_HPP
#define ORVA_PROGRAM_FORMATS_GLB_ACCESSORS_HPP

#include <nlohmann/json.hpp>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orva::program {

using Json = nlohmann::json;

/// Throws MeshError: "WHERE: WHAT; export it again".
[[noreturn]] void failInJson(const std::string& where, const std::string& what);

/// "accessors[3]"
std::string entryAt(std::string_view list, std::size_t index);

/// The entry of one of the document's lists; throws MeshError if there is none.
const Json& entryOf(const Json& document, const char* list, std::size_t index);

/// A number of the object, if it is there; throws MeshError if it is anything else.
std::optional<std::size_t> wholeNumber(const Json& object, const char* key, const std::string& where);

/// That many finite numbers, if they are there.
std::optional<std::vector<double>> numbersOf(const Json& object, const char* key, std::size_t count,
                                             const std::string& where);

struct GlbFile {
    std::string_view bytes;
    std::size_t binaryBegin = 0; ///< of the binary chunk's content
    std::size_t binarySize = 0;
    Json document;
};

enum class ComponentType { Int8 = 5120, Uint8, Int16, Uint16, Uint32 = 5125, Float };

/// `count` items of some components each, all of whose bytes are there.
class Accessor {
public:
    /// `type` and `components` are what it has to be: SCALAR, VEC2 or VEC3, and one of those. Throws MeshError.
    Accessor(const GlbFile& file, std::size_t index, std::string_view type,
             std::initializer_list<ComponentType> components);

    std::size_t count() const { return items; }

    /// Throws MeshError if it is no finite number.
    double number(std::size_t item, std::size_t part) const;

    std::size_t wholeNumber(std::size_t item) const;

    /// In the file, for messages.
    std::size_t placeOf(std::size_t item, std::size_t part) const {
        return begin + item * stride + part * componentSize;
    }

private:
    std::string_view bytes;
    ComponentType component = ComponentType::Float;
    std::size_t componentSize = 4;
    std::size_t begin = 0;
    std::size_t stride = 0;
    std::size_t items = 0;
};

} // namespace orva::program

#endif

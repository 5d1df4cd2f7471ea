/// @file
/// The header of a PLY file, which describes its own content.
#ifndef ORVA_PROGRAM_FORMATS_PLY_HEADER_HPP
#define ORVA_PROGRAM_FORMATS_PLY_HEADER_HPP

#include "formats/text.hpp"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

namespace orva::program {

enum class PlyType { Int8, Uint8, Int16, Uint16, Int32, Uint32, Float, Double };

inline bool isInteger(PlyType type) {
    return type != PlyType::Float && type != PlyType::Double;
}

struct PlyProperty {
    std::string_view name;
    PlyType type = PlyType::Float;
    std::optional<PlyType> count; ///< the type of a list's length; without, the property is a single number
};

struct PlyElement {
    std::string_view name;
    std::size_t count = 0; ///< as announced, which may be a lie
    std::vector<PlyProperty> properties;

    /// The place of the first of `names` that the element has, as a list or as a single number.
    std::optional<std::size_t> find(std::initializer_list<std::string_view> names, bool list) const;
};

enum class PlyForm { Text, LittleEndian, BigEndian };

struct PlyHeader {
    PlyForm form = PlyForm::Text;
    std::vector<PlyElement> elements; ///< in the order in which their content follows
};

/// Leaves `words` at the content. Throws MeshError.
PlyHeader readPlyHeader(Words& words);

} // namespace orva::program

#endif

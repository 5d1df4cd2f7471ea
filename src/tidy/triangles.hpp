// What the surface is divided into in the end.
#pragma once

#include "tidy/surface.hpp"

#include <array>

namespace orva::tidy {

/// A triangle's corner, and the side that runs from it to the next one: number 3 * triangle + 0, 1, 2.
struct Corners {
    std::vector<std::uint32_t> point; ///< of the surface
    std::vector<std::uint32_t> face;  ///< which says what the corner carries
    std::vector<std::uint32_t> soup;  ///< the soup's corner that carries it; NONE where it has to be computed
    std::vector<std::uint32_t> twin;  ///< the corner whose side runs back; NONE for an open one
};

struct Triangles {
    Corners corners;
    std::vector<std::uint32_t> region; ///< by triangle
    std::vector<std::uint32_t> piece;  ///< by triangle: that of the soup which stayed as it was, or NONE
    std::uint64_t forcedEars = 0;
};

inline std::uint32_t nextCorner(std::uint32_t corner) {
    return corner % 3 == 2 ? corner - 2 : corner + 1;
}
inline std::uint32_t previousCorner(std::uint32_t corner) {
    return corner % 3 == 0 ? corner + 2 : corner - 1;
}

inline std::size_t countTriangles(const Triangles& triangles) {
    return triangles.region.size();
}

} // namespace orva::tidy

// Equal positions kept once.
#pragma once

#include "tidy/surface.hpp"

#include <cstddef>

namespace orva::tidy {

/// Gives positions numbers, from 0 in the order of first use. Equal are those whose coordinates are; 0 and -0 are.
class PointTable {
public:
    /// Forgets all, and makes room for about so many.
    void clear(std::size_t expected);

    std::uint32_t numberOf(const Vec3& point);

    /// Each once, in the order of their numbers.
    std::vector<Vec3>& points() { return list; }

private:
    std::size_t placeOf(const Vec3& point) const;
    void grow();

    std::vector<Vec3> list;
    std::vector<std::uint32_t> table; ///< at most half full
    std::size_t mask = 0;             ///< of the places in use, a power of two, less one
};

} // namespace orva::tidy

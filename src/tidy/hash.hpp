// Numbers for tables.
#pragma once

#include "tidy/vectors.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace orva::tidy {

/// Spreads neighbours far apart: 2^64 over the golden ratio (D. E. Knuth, The Art of Computer Programming 3, 6.4).
inline std::uint64_t mixed(std::uint64_t hash, std::uint64_t value) {
    hash = (hash ^ value) * 0x9E3779B97F4A7C15U;
    return hash ^ hash >> 32;
}

inline std::size_t hashOf(const Vec3& point) {
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value + 0.0); }; // -0 + 0 is 0
    return static_cast<std::size_t>(mixed(mixed(mixed(0, bits(point.x)), bits(point.y)), bits(point.z)));
}

} // namespace orva::tidy

#include "tidy/point_table.hpp"

#include "tidy/hash.hpp"

#include <algorithm>
#include <bit>

namespace orva::tidy {

void PointTable::clear(std::size_t expected) {
    list.clear();
    mask = std::bit_ceil(2 * expected + 8) - 1;
    if (table.size() <= mask) table.resize(mask + 1);
    std::fill_n(table.begin(), mask + 1, NONE);
}

std::size_t PointTable::placeOf(const Vec3& point) const {
    std::size_t place = hashOf(point) & mask;
    while (table[place] != NONE) {
        const Vec3& other = list[table[place]];
        if (other.x == point.x && other.y == point.y && other.z == point.z) break;
        place = (place + 1) & mask;
    }
    return place;
}

std::uint32_t PointTable::numberOf(const Vec3& point) {
    const std::size_t place = placeOf(point);
    if (table[place] != NONE) return table[place];
    const auto number = static_cast<std::uint32_t>(list.size());
    list.push_back(point);
    table[place] = number;
    if (2 * list.size() > mask) grow();
    return number;
}

void PointTable::grow() {
    mask = 2 * mask + 1;
    table.assign(mask + 1, NONE);
    for (std::size_t i = 0; i < list.size(); ++i) table[placeOf(list[i])] = static_cast<std::uint32_t>(i);
}

} // namespace orva::tidy

/// @file
/// Equal rows of numbers kept once.
#ifndef ORVA_PROGRAM_MESH_SHARED_ROWS_HPP
#define ORVA_PROGRAM_MESH_SHARED_ROWS_HPP

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orva::program {

/// Rows are equal when their numbers are; nothing is rounded. 0 and -0 are equal.
template <std::size_t Size> class SharedRows {
public:
    using Row = std::array<double, Size>;

    /// The index of the row, which is a new one if there was none like it.
    std::size_t indexOf(const Row& row) {
        const std::size_t place = placeOf(row);
        if (table[place] != none) return table[place];
        table[place] = list.size();
        list.push_back(row);
        if (2 * list.size() > table.size()) grow();
        return list.size() - 1;
    }

    /// Each once, in the order of first use.
    const std::vector<Row>& rows() const { return list; }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    static std::size_t hashOf(const Row& row) {
        constexpr std::uint64_t factor = 0x9e3779b97f4a7c15; // 2^64 over the golden ratio: spreads neighbours far apart
        std::uint64_t hash = 0;
        for (const double value : row) {
            hash = (hash ^ hash >> 32 ^ std::bit_cast<std::uint64_t>(value + 0.0)) * factor; // -0 + 0 is 0
        }
        return static_cast<std::size_t>(hash ^ hash >> 32);
    }

    // Where the row stands in the table, or would: a row whose place is taken by another goes to the next one.
    std::size_t placeOf(const Row& row) const {
        std::size_t place = hashOf(row) & (table.size() - 1);
        while (table[place] != none && list[table[place]] != row) place = (place + 1) & (table.size() - 1);
        return place;
    }

    void grow() {
        table.assign(2 * table.size(), none);
        for (std::size_t index = 0; index < list.size(); ++index) table[placeOf(list[index])] = index;
    }

    std::vector<std::size_t> table = std::vector<std::size_t>(64, none); // a power of two, at most half full
    std::vector<Row> list;
};

} // namespace orva::program

#endif

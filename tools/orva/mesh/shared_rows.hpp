/// @file
/// Equal rows of numbers kept once.
#ifndef ORVA_PROGRAM_MESH_SHARED_ROWS_HPP
#define ORVA_PROGRAM_MESH_SHARED_ROWS_HPP

#include <array>
#include <cstddef>
#include <functional>
#include <unordered_map>
#include <vector>

namespace orva::program {

/// Rows are equal when their numbers are; nothing is rounded. 0 and -0 are equal.
template <std::size_t Size> class SharedRows {
public:
    using Row = std::array<double, Size>;

    /// The index of the row, which is a new one if there was none like it.
    std::size_t indexOf(const Row& row) {
        const auto [entry, isNew] = indices.try_emplace(row, list.size());
        if (isNew) list.push_back(row);
        return entry->second;
    }

    /// Each once, in the order of first use.
    const std::vector<Row>& rows() const { return list; }

private:
    struct Hash {
        std::size_t operator()(const Row& row) const {
            constexpr std::size_t factor =
                0x9e3779b97f4a7c15; // 2^64 over the golden ratio: spreads neighbours far apart
            std::size_t hash = 0;
            for (const double value : row) hash = hash * factor ^ std::hash<double>()(value); // 0 and -0 have the same
            return hash;
        }
    };

    std::unordered_map<Row, std::size_t, Hash> indices;
    std::vector<Row> list;
};

} // namespace orva::program

#endif

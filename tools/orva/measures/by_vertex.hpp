/// @file
/// Things in buckets, a bucket for each vertex.
#ifndef ORVA_PROGRAM_MEASURES_BY_VERTEX_HPP
#define ORVA_PROGRAM_MEASURES_BY_VERTEX_HPP

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace orva::program {

/// Items that begin with an index of a vertex, in the order of that index: counted, then put in their places. Within
/// one vertex they are sorted as they are; few share one.
template <typename Item> std::vector<Item> sortedByVertex(const std::vector<Item>& items, std::size_t vertexCount) {
    std::vector<std::size_t> begins(vertexCount + 1);
    for (const Item& item : items) ++begins[item.vertex + 1];
    std::partial_sum(begins.begin(), begins.end(), begins.begin());
    std::vector<Item> sorted(items.size());
    std::vector<std::size_t> places = begins;
    for (const Item& item : items) sorted[places[item.vertex]++] = item;
    for (std::size_t vertex = 0; vertex < vertexCount; ++vertex) {
        std::sort(sorted.begin() + static_cast<std::ptrdiff_t>(begins[vertex]),
                  sorted.begin() + static_cast<std::ptrdiff_t>(begins[vertex + 1]));
    }
    return sorted;
}

} // namespace orva::program

#endif

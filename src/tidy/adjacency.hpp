// Edges by what they belong to.
#pragma once

#include "tidy/surface.hpp"

#include <cstddef>

namespace orva::tidy {

/// Lists of edges one behind the other: those of thing i are `edges[first[i]]` to `edges[first[i + 1] - 1]`, in the
/// order of their numbers.
struct Adjacency {
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> edges;
};

/// `thingOf(edge)` is a number below `things`, or NONE for an edge that is in no list. Edges that are gone are in none.
template <typename ThingOf>
void collect(Adjacency& adjacency, const Surface& surface, std::size_t things, const ThingOf& thingOf) {
    adjacency.first.assign(things + 1, 0);
    for (const Edge& edge : surface.edges) {
        if (!isAlive(edge)) continue;
        const std::uint32_t thing = thingOf(edge);
        if (thing != NONE) ++adjacency.first[thing + 1];
    }
    for (std::size_t i = 0; i < things; ++i) adjacency.first[i + 1] += adjacency.first[i];
    adjacency.edges.resize(adjacency.first[things]);
    for (std::size_t i = 0; i < surface.edges.size();
         ++i) { // first[thing] runs to first[thing + 1] and is put back below
        if (!isAlive(surface.edges[i])) continue;
        const std::uint32_t thing = thingOf(surface.edges[i]);
        if (thing != NONE) adjacency.edges[adjacency.first[thing]++] = static_cast<std::uint32_t>(i);
    }
    for (std::size_t i = things; i > 0; --i) adjacency.first[i] = adjacency.first[i - 1];
    if (things > 0) adjacency.first[0] = 0;
}

} // namespace orva::tidy

// How many tidied results are closed by index, of inputs that are closed and do not cross themselves.
#pragma once

#include "cases.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orva::bench {

/// Of some results.
struct Tally {
    std::uint64_t results = 0;
    std::uint64_t closed = 0;      ///< told by their indices
    std::uint64_t misreported = 0; ///< the report says another thing than the indices
    double inTolerances = 0.0;     ///< the most that a vertex was moved
    std::vector<std::string> open; ///< a line about each that is not closed

    void add(const Tally& other);
};

/// What a sweep came from.
struct Closing {
    std::string name;
    std::function<Tally()> measure;
};

/// The real meshes, those that cross themselves left out; spheres and tori; walls and windows; random solids. Each with
/// copies that are moved, turned and touch it, in all three operations.
std::vector<Closing> allClosings(const std::string& meshes);

/// Unions of meshes with a copy moved by a fifth, in units in which they are from 0.25 to 4096 across.
Tally closedInAllUnits(const std::string& meshes);

} // namespace orva::bench

/// @file
/// Which things hang together, when one learns it pair by pair.
#ifndef ORVA_PROGRAM_MEASURES_FOREST_HPP
#define ORVA_PROGRAM_MEASURES_FOREST_HPP

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace orva::program {

/// A group is a tree: each thing points towards the group's first.
class Forest {
public:
    /// Things from 0, each a group of its own.
    explicit Forest(std::size_t things) : towards(things) { std::iota(towards.begin(), towards.end(), std::size_t{0}); }

    /// The first thing of the group.
    std::size_t first(std::size_t thing) {
        while (towards[thing] != thing) thing = towards[thing] = towards[towards[thing]];
        return thing;
    }

    void join(std::size_t a, std::size_t b) {
        a = first(a);
        b = first(b);
        towards[std::max(a, b)] = std::min(a, b);
    }

private:
    std::vector<std::size_t> towards;
};

} // namespace orva::program

#endif

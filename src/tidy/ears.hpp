// Polygons with holes into triangles.
#pragma once

#include "tidy/orientation.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orva::tidy {

/// What lies across a side: the number of a side that the caller gave, or of a wire, an inner side.
struct Across {
    std::uint32_t number;
    bool isWire;
};

/// Cuts polygons into ears. Input: `add` each loop, then `cut`.
class EarCutter {
public:
    struct Node {
        Vec2 at;
        std::uint32_t point; ///< nodes with the same number are in the same place
        std::uint32_t label; ///< the caller's, of the corner
        Across across;       ///< the side from here to the next node
        std::uint32_t previous;
        std::uint32_t next;
    };
    /// A triangle of three nodes, each with its side to the next.
    struct Ear {
        std::uint32_t node[3];
        Across across[3];
    };

    void clear();

    /// A corner of the loop that is being given, and the side from it to the next one.
    void addCorner(const Vec2& at, std::uint32_t point, std::uint32_t label, std::uint32_t side);

    /// All its corners are there.
    void endLoop();

    /// Loops that run counter-clockwise are outlines, the others are holes in them.
    void cut();

    std::vector<Node> nodes;
    std::vector<Ear> ears;
    std::uint32_t wires = 0;
    std::uint64_t forced = 0;

private:
    struct Loop {
        std::uint32_t first;
        std::uint32_t leftmost;
        std::uint32_t size;
        double area;
    };

    Loop measured(std::uint32_t first) const;
    bool contains(const Loop& outline, const Vec2& at) const;
    void join(std::uint32_t outline, std::uint32_t hole);
    std::uint32_t findBridge(std::uint32_t outline, const Node& hole) const;
    bool seesInto(const Node& node, const Vec2& at) const;
    void cutOutline(std::uint32_t first);
    void cutEar(std::uint32_t node);
    int turnAt(std::uint32_t node) const;
    bool isEar(std::uint32_t node);
    void placeBlockers(std::uint32_t first, std::size_t count);
    bool blocks(std::uint32_t node, const Node& a, const Node& b, const Node& c);

    std::uint32_t firstOfLoop = 0;
    std::vector<std::uint32_t> loops; ///< a node of each

    // Reflex nodes by cells of a grid.
    Vec2 low;
    double cellsPerUnitX = 0.0;
    double cellsPerUnitY = 0.0;
    std::size_t columns = 1;
    std::size_t rows = 1;
    std::vector<std::vector<std::uint32_t>> cells;
    std::vector<bool> isGone;
};

} // namespace orva::tidy

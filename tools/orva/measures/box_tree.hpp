/// @file
/// A tree of bounding boxes: finds the few of many things that are near something, in logarithmic time.
///
/// Why no grid: the pieces of a boolean's result differ in size by factors of thousands, and no cell fits all of them.
#ifndef ORVA_PROGRAM_MEASURES_BOX_TREE_HPP
#define ORVA_PROGRAM_MEASURES_BOX_TREE_HPP

#include "orva/types.hpp"

#include <cstddef>
#include <vector>

namespace orva::program {

struct Box {
    types::Vec3 low;
    types::Vec3 high;
};

struct BoxTree {
    struct Node {
        Box box;               ///< around all below
        std::size_t first = 0; ///< the things below: `items[first]` to `items[last - 1]`
        std::size_t last = 0;
        std::size_t second = 0; ///< the second child; the first is the next node; 0 in a leaf
    };
    std::vector<Node> nodes; ///< the root first; empty for no things
    std::vector<std::size_t> items;
};

/// A tree over things with these boxes; `items` are indices into them.
BoxTree makeBoxTree(const std::vector<Box>& boxes);

/// Calls `item(index)` for the things in all leaves on the way to which `enter(box)` was true. Both may change what
/// they refer to: a search for the nearest thing narrows `enter` with every better `item`.
template <typename Enter, typename Item>
void visit(const BoxTree& tree, const Enter& enter, const Item& item, std::size_t at = 0) {
    if (at >= tree.nodes.size() || !enter(tree.nodes[at].box)) return;
    const BoxTree::Node& node = tree.nodes[at];
    if (node.second == 0) {
        for (std::size_t i = node.first; i < node.last; ++i) item(tree.items[i]);
        return;
    }
    visit(tree, enter, item, at + 1);
    visit(tree, enter, item, node.second);
}

} // namespace orva::program

#endif

#include "measures/box_tree.hpp"

#include "mesh/vectors.hpp"

#include <algorithm>
#include <numeric>

namespace orva::program {

namespace {

Box boundsOf(const std::vector<Box>& boxes, const std::vector<std::size_t>& items, std::size_t first,
             std::size_t last) {
    Box bounds = boxes[items[first]];
    for (std::size_t i = first + 1; i < last; ++i) {
        const Box& box = boxes[items[i]];
        bounds.low = {std::min(bounds.low.x, box.low.x), std::min(bounds.low.y, box.low.y),
                      std::min(bounds.low.z, box.low.z)};
        bounds.high = {std::max(bounds.high.x, box.high.x), std::max(bounds.high.y, box.high.y),
                       std::max(bounds.high.z, box.high.z)};
    }
    return bounds;
}

double types::Vec3::*longestAxis(const Box& box) {
    const types::Vec3 size = box.high - box.low;
    if (size.x >= size.y && size.x >= size.z) return &types::Vec3::x;
    return size.y >= size.z ? &types::Vec3::y : &types::Vec3::z;
}

// Halves at the median, so that the depth is logarithmic however the things lie.
void divide(BoxTree& tree, const std::vector<Box>& boxes, std::size_t first, std::size_t last) {
    constexpr std::size_t leafSize = 8; // 4 to 16 are equally fast
    const std::size_t at = tree.nodes.size();
    tree.nodes.push_back({boundsOf(boxes, tree.items, first, last), first, last, 0});
    if (last - first <= leafSize) return;

    double types::Vec3::*const axis = longestAxis(tree.nodes[at].box);
    const std::size_t middle = first + (last - first) / 2;
    const auto item = [&tree](std::size_t i) { return tree.items.begin() + static_cast<std::ptrdiff_t>(i); };
    std::nth_element(item(first), item(middle), item(last), [&boxes, axis](std::size_t i, std::size_t j) {
        return boxes[i].low.*axis + boxes[i].high.*axis < boxes[j].low.*axis + boxes[j].high.*axis;
    });
    divide(tree, boxes, first, middle);
    tree.nodes[at].second = tree.nodes.size();
    divide(tree, boxes, middle, last);
}

} // namespace

BoxTree makeBoxTree(const std::vector<Box>& boxes) {
    BoxTree tree;
    tree.items.resize(boxes.size());
    std::iota(tree.items.begin(), tree.items.end(), std::size_t{0});
    if (!boxes.empty()) divide(tree, boxes, 0, boxes.size());
    return tree;
}

} // namespace orva::program

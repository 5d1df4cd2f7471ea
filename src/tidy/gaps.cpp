#include "tidy/gaps.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace orva::tidy {

namespace {

constexpr std::size_t LEAF = 8;

struct Box {
    Vec3 low;
    Vec3 high;
};

double squaredDistance(const Box& box, const Vec3& p) {
    const Vec3 outside{std::max({box.low.x - p.x, 0.0, p.x - box.high.x}),
                       std::max({box.low.y - p.y, 0.0, p.y - box.high.y}),
                       std::max({box.low.z - p.z, 0.0, p.z - box.high.z})};
    return squaredLength(outside);
}

Vec3 middleOf(const Segment& segment) {
    return 0.5 * segment[0] + 0.5 * segment[1];
}

class Tree {
public:
    explicit Tree(const std::vector<Segment>& ofSegments) : segments(ofSegments) {
        for (std::size_t i = 0; i < segments.size(); ++i) items.push_back(static_cast<std::uint32_t>(i));
        // Children stand behind their parents, the two one behind the other.
        nodes.push_back({{}, 0, items.size(), 0});
        for (std::size_t at = 0; at < nodes.size(); ++at) divide(at);
    }

    /// Squared, from the middle of one to the nearest other; or to any that is as near as `enough`: of segments that
    /// lie across each other no box is far from another, and to look for the very nearest would be to look at them all.
    double nearest(std::uint32_t item, double enough) const {
        double reach = std::numeric_limits<double>::infinity();
        const Vec3 middle = middleOf(segments[item]);
        std::vector<std::size_t> waiting{0};
        while (!waiting.empty() && reach > enough) {
            const Node& node = nodes[waiting.back()];
            waiting.pop_back();
            if (!(squaredDistance(node.box, middle) < reach)) continue;
            if (node.children != 0) {
                const bool firstIsNearer = squaredDistance(nodes[node.children].box, middle) <=
                                           squaredDistance(nodes[node.children + 1].box, middle);
                waiting.push_back(firstIsNearer ? node.children + 1 : node.children);
                waiting.push_back(firstIsNearer ? node.children : node.children + 1);
                continue;
            }
            for (std::size_t i = node.first; i < node.last; ++i) {
                if (items[i] == item) continue;
                const Segment& other = segments[items[i]];
                reach = std::min(reach, tidy::squaredDistance(middle, other[0], other[1]));
            }
        }
        return reach;
    }

private:
    struct Node {
        Box box;
        std::size_t first;
        std::size_t last;
        std::size_t children; ///< the first of the two; 0 in a leaf
    };

    void divide(std::size_t at) {
        constexpr double inf = std::numeric_limits<double>::infinity();
        Box box{{inf, inf, inf}, {-inf, -inf, -inf}};
        const std::size_t first = nodes[at].first;
        const std::size_t last = nodes[at].last;
        for (std::size_t i = first; i < last; ++i) {
            for (const Vec3& p : segments[items[i]]) {
                box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
                box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y), std::max(box.high.z, p.z)};
            }
        }
        nodes[at].box = box;
        if (last - first <= LEAF) return;
        const Vec3 size = box.high - box.low;
        const auto key = [&](std::uint32_t item) {
            const Vec3 middle = middleOf(segments[item]);
            return size.x >= size.y && size.x >= size.z ? middle.x : size.y >= size.z ? middle.y : middle.z;
        };
        const std::size_t half = (first + last) / 2;
        std::nth_element(items.begin() + static_cast<std::ptrdiff_t>(first),
                         items.begin() + static_cast<std::ptrdiff_t>(half),
                         items.begin() + static_cast<std::ptrdiff_t>(last),
                         [&](std::uint32_t a, std::uint32_t b) { return std::pair(key(a), a) < std::pair(key(b), b); });
        nodes[at].children = nodes.size();
        nodes.push_back({{}, first, half, 0});
        nodes.push_back({{}, half, last, 0});
    }

    const std::vector<Segment>& segments;
    std::vector<std::uint32_t> items;
    std::vector<Node> nodes;
};

} // namespace

double largestGap(const std::vector<Segment>& segments) {
    if (segments.size() < 2) return 0.0;
    const Tree tree(segments);
    double most = 0.0;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        most = std::max(most, tree.nearest(static_cast<std::uint32_t>(i), most));
    }
    return squareRoot(most);
}

} // namespace orva::tidy

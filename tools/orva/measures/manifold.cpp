#include "measures/manifold.hpp"

#include "measures/by_vertex.hpp"
#include "measures/forest.hpp"

#include <tuple>
#include <utility>

namespace orva::program {

namespace {

// A triangle's side: the lower of its two vertices, the other one, and the places of both among the corners.
struct Side {
    std::size_t vertex = 0;
    std::size_t other = 0;
    std::size_t atVertex = 0;
    std::size_t atOther = 0;
    bool backward = false; // it runs from the other one to the lower

    bool operator<(const Side& side) const {
        return std::tie(other, atVertex, atOther) < std::tie(side.other, side.atVertex, side.atOther);
    }
};

bool isCollapsed(const std::vector<std::size_t>& corners, std::size_t first) {
    return corners[first] == corners[first + 1] || corners[first + 1] == corners[first + 2] ||
           corners[first + 2] == corners[first];
}

std::vector<Side> sidesOf(const std::vector<std::size_t>& corners, std::size_t vertices) {
    std::vector<Side> sides;
    sides.reserve(corners.size());
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        if (isCollapsed(corners, i)) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            std::size_t from = i + k;
            std::size_t to = i + (k + 1) % 3;
            const bool backward = corners[from] > corners[to];
            if (backward) std::swap(from, to);
            sides.push_back({corners[from], corners[to], from, to, backward});
        }
    }
    return sortedByVertex(sides, vertices);
}

} // namespace

Manifold measureManifold(const std::vector<std::size_t>& corners, std::size_t vertices) {
    Manifold manifold;
    const std::vector<Side> sides = sidesOf(corners, vertices);
    Forest fans(corners.size()); // corners at one vertex whose triangles hang together by edges there
    for (std::size_t i = 0; i < sides.size();) {
        const Side& first = sides[i];
        std::size_t count = 0;
        std::size_t backward = 0;
        for (; i < sides.size() && sides[i].vertex == first.vertex && sides[i].other == first.other; ++i) {
            ++count;
            backward += sides[i].backward ? 1 : 0;
            fans.join(first.atVertex, sides[i].atVertex);
            fans.join(first.atOther, sides[i].atOther);
        }
        manifold.openEdges += count == 1 ? 1 : 0;
        manifold.doubledEdges += count > 2 ? 1 : 0;
        manifold.turnedEdges += count == 2 && backward != 1 ? 1 : 0;
    }

    std::vector<unsigned char> fansAt(vertices); // none, one, or more
    std::vector<bool> used(vertices);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (!used[corners[i]]) ++manifold.vertices;
        used[corners[i]] = true;
        if (isCollapsed(corners, i - i % 3)) {
            manifold.collapsed += i % 3 == 0 ? 1 : 0;
        } else if (fans.first(i) == i && fansAt[corners[i]] < 2) {
            manifold.umbrellas += ++fansAt[corners[i]] == 2 ? 1 : 0;
        }
    }
    return manifold;
}

} // namespace orva::program

// The data that every step works on: points, and directed edges of faces.
//
// A face is what its edges surround, with the face on the left of each; how its inside is divided is decided last. So
// the surface is a chain of directed edges, and each step keeps its sum: an edge is divided at a point, two opposite
// edges are matched or cancelled, two points become one. Nothing of that opens a surface that is closed.
#pragma once

#include "tidy/vectors.hpp"

#include <cstdint>
#include <vector>

namespace orva::tidy {

inline constexpr std::uint32_t NONE = 0xFFFFFFFF;
inline constexpr std::uint32_t SEVERAL = NONE - 1; ///< where one was asked for

struct Edge {
    std::uint32_t from = NONE;   ///< a point; NONE for an edge that is gone
    std::uint32_t to = NONE;     ///< another point
    std::uint32_t face = NONE;   ///< to the left
    std::uint32_t twin = NONE;   ///< the opposite edge that it is matched with; NONE while it is open
    std::uint32_t corner = NONE; ///< of the soup: what the face carries at `from`; NONE where it has to be computed
};

/// A face of the input with all its pieces; or, without knowledge of the input's faces, pieces that hang together in a
/// plane.
struct Face {
    std::uint32_t first = 0;   ///< its pieces: `order[first]` to `order[first + count - 1]`
    std::uint32_t count = 0;   ///< how many triangles of the soup
    std::uint32_t largest = 0; ///< the piece with the largest area
    Vec3 normal;               ///< of the largest piece, as long as twice its area
    Vec3 origin;               ///< a corner of the largest piece
    double area = 0.0;         ///< twice that of all pieces
    std::uint32_t border = 0;  ///< how many sides of its pieces have no opposite one among them
    bool isSound = false;      ///< whether all pieces have area and face the same way, and no corner lies inside
};

struct Surface {
    std::vector<Vec3> points;
    std::vector<Edge> edges;
    std::vector<Face> faces;
    std::vector<std::uint32_t> order; ///< triangles of the soup, those of a face together, else in the soup's order
};

inline bool isAlive(const Edge& edge) {
    return edge.from != NONE;
}

inline void match(Surface& surface, std::uint32_t a, std::uint32_t b) {
    surface.edges[a].twin = b;
    surface.edges[b].twin = a;
}

inline void remove(Surface& surface, std::uint32_t edge) {
    surface.edges[edge] = {};
}

/// Divides an edge, and its twin with it, at a point. The edge ends there afterwards. Gives the new part behind it.
std::uint32_t divide(Surface& surface, std::uint32_t edge, std::uint32_t point);

} // namespace orva::tidy

#include "tidy/umbrellas.hpp"

#include <algorithm>
#include <cstddef>

namespace orva::tidy {

namespace {

// ---- Mirrored triangles ----

// Whether the triangle across the side behind the corner has the same three points.
bool areMirrored(const Corners& corners, std::uint32_t corner) {
    const std::uint32_t other = corners.twin[corner];
    return other != NONE && other / 3 != corner / 3 &&
           corners.point[previousCorner(corner)] == corners.point[previousCorner(other)];
}

void glue(Corners& corners, std::uint32_t a, std::uint32_t b) {
    const std::uint32_t acrossA = corners.twin[a];
    const std::uint32_t acrossB = corners.twin[b];
    if (acrossA == b) return; // both go
    if (acrossA != NONE) corners.twin[acrossA] = acrossB;
    if (acrossB != NONE) corners.twin[acrossB] = acrossA;
}

// ---- Umbrellas ----

class Fans {
public:
    Fans(const Corners& ofCorners, std::vector<std::uint32_t>& vertices) : corners(ofCorners), vertex(vertices) {}

    std::uint32_t count = 0;

    void number() {
        vertex.assign(corners.point.size(), NONE);
        for (std::size_t i = 0; i < vertex.size(); ++i) {
            if (vertex[i] == NONE) numberFan(static_cast<std::uint32_t>(i));
        }
    }

private:
    void numberFan(std::uint32_t first) {
        const std::uint32_t number = count++;
        // One way around, and, where that ends at an open side, the other.
        std::uint32_t corner = first;
        do {
            vertex[corner] = number;
            corner = corners.twin[previousCorner(corner)];
        } while (corner != NONE && vertex[corner] == NONE);
        if (corner != NONE) return;
        for (std::uint32_t across = corners.twin[first]; across != NONE; across = corners.twin[corner]) {
            corner = nextCorner(across);
            if (vertex[corner] != NONE) return;
            vertex[corner] = number;
        }
    }

    const Corners& corners;
    std::vector<std::uint32_t>& vertex;
};

struct Side {
    std::uint64_t vertices; ///< the lower number first
    std::uint32_t corner;
};

std::uint32_t addHalf(Triangles& triangles, std::vector<std::uint32_t>& vertex, std::uint32_t corner) {
    Corners& corners = triangles.corners;
    const auto first = static_cast<std::uint32_t>(corners.point.size());
    for (auto* list : {&corners.point, &corners.face, &corners.soup, &corners.twin, &vertex})
        list->resize(first + 3U, NONE);
    triangles.region.push_back(triangles.region[corner / 3]);
    triangles.piece[corner / 3] = NONE;
    triangles.piece.push_back(NONE);
    return first;
}

void copyCorner(Corners& corners, std::vector<std::uint32_t>& vertex, std::uint32_t from, std::uint32_t to) {
    corners.point[to] = corners.point[from];
    corners.face[to] = corners.face[from];
    corners.soup[to] = corners.soup[from];
    vertex[to] = vertex[from];
}

// The triangle (a, b, c) becomes (a, m, c) and (m, b, c). Gives the corner of the second at m.
std::uint32_t halve(Triangles& triangles, std::vector<std::uint32_t>& vertex, std::uint32_t corner,
                    std::uint32_t middle, std::uint32_t middleVertex) {
    Corners& corners = triangles.corners;
    const std::uint32_t half = addHalf(triangles, vertex, corner);
    const std::uint32_t b = nextCorner(corner);
    corners.point[half] = middle;
    corners.face[half] = corners.face[corner];
    vertex[half] = middleVertex;
    copyCorner(corners, vertex, b, half + 1);
    copyCorner(corners, vertex, previousCorner(corner), half + 2);
    corners.twin[half + 1] = corners.twin[b];
    if (corners.twin[b] != NONE) corners.twin[corners.twin[b]] = half + 1;
    copyCorner(corners, vertex, half, b);
    corners.twin[b] = half + 2;
    corners.twin[half + 2] = b;
    return half;
}

} // namespace

void cancelMirrored(Triangles& triangles) {
    Corners& corners = triangles.corners;
    std::vector<bool> isGone(countTriangles(triangles));
    std::vector<std::uint32_t> waiting;
    const auto glueAndLook = [&](std::uint32_t a, std::uint32_t b) {
        glue(corners, a, b);
        if (corners.twin[a] != b && corners.twin[a] != NONE) waiting.push_back(corners.twin[a]);
    };
    // A triangle with a side from a point to itself: so has its neighbour there, and what is left are two sides.
    bool any = false;
    for (std::uint32_t corner = 0; corner < corners.point.size(); ++corner) {
        if (corners.point[corner] != corners.point[nextCorner(corner)] || isGone[corner / 3]) continue;
        isGone[corner / 3] = any = true;
        glue(corners, nextCorner(corner), previousCorner(corner));
    }
    for (std::size_t i = corners.point.size(); i-- > 0;) {
        const auto corner = static_cast<std::uint32_t>(i);
        if (!isGone[i / 3] && areMirrored(corners, corner)) waiting.push_back(corner);
    }
    if (waiting.empty() && !any) return;
    while (!waiting.empty()) {
        const std::uint32_t corner = waiting.back();
        waiting.pop_back();
        if (isGone[corner / 3] || !areMirrored(corners, corner)) continue;
        const std::uint32_t other = corners.twin[corner];
        isGone[corner / 3] = isGone[other / 3] = true;
        glueAndLook(nextCorner(corner), previousCorner(other));
        glueAndLook(previousCorner(corner), nextCorner(other));
    }

    // Those that stay move up.
    std::vector<std::uint32_t> moved(isGone.size(), NONE);
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < isGone.size(); ++i) {
        if (!isGone[i]) moved[i] = count++;
    }
    for (std::size_t i = 0; i < isGone.size(); ++i) {
        if (isGone[i]) continue;
        const std::size_t to = moved[i];
        triangles.region[to] = triangles.region[i];
        triangles.piece[to] = triangles.piece[i];
        for (std::size_t k = 0; k < 3; ++k) {
            corners.point[3 * to + k] = corners.point[3 * i + k];
            corners.face[3 * to + k] = corners.face[3 * i + k];
            corners.soup[3 * to + k] = corners.soup[3 * i + k];
            const std::uint32_t twin = corners.twin[3 * i + k];
            corners.twin[3 * to + k] = twin == NONE ? NONE : 3 * moved[twin / 3] + twin % 3;
        }
    }
    triangles.region.resize(count);
    triangles.piece.resize(count);
    for (auto* list : {&corners.point, &corners.face, &corners.soup, &corners.twin})
        list->resize(3 * std::size_t{count});
}

std::uint32_t splitUmbrellas(Triangles& triangles, Surface& surface, std::vector<std::uint32_t>& vertex) {
    Corners& corners = triangles.corners;
    Fans fans(corners, vertex);
    fans.number();

    std::vector<Side> sides;
    for (std::size_t i = 0; i < vertex.size(); ++i) {
        const auto corner = static_cast<std::uint32_t>(i);
        if (corners.twin[i] != NONE && corners.twin[i] < corner) continue; // once for both
        const auto [low, high] = std::minmax(vertex[i], vertex[nextCorner(corner)]);
        sides.push_back({std::uint64_t{low} << 32 | high, corner});
    }
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
        return a.vertices != b.vertices ? a.vertices < b.vertices : a.corner < b.corner;
    });
    std::vector<std::uint32_t> movedTo; // by corner: where its side is after a triangle was halved beside it
    const auto placeOf = [&movedTo](std::uint32_t corner) {
        while (corner < movedTo.size() && movedTo[corner] != NONE) corner = movedTo[corner];
        return corner;
    };
    const auto moveSide = [&movedTo](std::uint32_t corner, std::uint32_t half) {
        if (movedTo.size() < half + 3U) movedTo.resize(half + 3U, NONE);
        if (movedTo[nextCorner(corner)] == NONE) movedTo[nextCorner(corner)] = half + 1;
    };
    for (std::size_t i = 1; i < sides.size(); ++i) {
        if (sides[i].vertices != sides[i - 1].vertices) continue;
        const std::uint32_t corner = placeOf(sides[i].corner);
        const std::uint32_t twin = corners.twin[corner];
        if (twin == NONE) continue;
        const Vec3& a = surface.points[corners.point[corner]];
        const Vec3& b = surface.points[corners.point[nextCorner(corner)]];
        const auto middle = static_cast<std::uint32_t>(surface.points.size());
        surface.points.push_back(0.5 * a + 0.5 * b);
        const std::uint32_t number = fans.count++;
        const std::uint32_t half = halve(triangles, vertex, corner, middle, number);
        moveSide(corner, half);
        const std::uint32_t otherHalf = halve(triangles, vertex, twin, middle, number);
        moveSide(twin, otherHalf);
        corners.twin[corner] = otherHalf;
        corners.twin[otherHalf] = corner;
        corners.twin[twin] = half;
        corners.twin[half] = twin;
    }
    return fans.count;
}

} // namespace orva::tidy

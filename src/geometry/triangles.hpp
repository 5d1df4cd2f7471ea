// Triangles in, fans out: the rule that the mesh of the C++ interface and the records of the C interface share.
#pragma once

#include "geometry/records.hpp"

#include <cstdint>

namespace orva::bspcsg {

/// Makes `polygons` hold one triangle for every three of `vertexCount` vertices, in order; `vertexAt(i)` gives vertex i
/// whole. One or two vertices behind the last triangle are left out; triangles without area are kept, with a NaN plane.
template <typename VertexAt>
void trianglesToPolygons(std::int32_t vertexCount, VertexAt vertexAt, PolygonList& polygons) {
    polygons.resize(static_cast<std::size_t>(vertexCount) / 3);
    std::size_t next = 0;
    for (Polygon& polygon : polygons) {
        polygon.vertices.resize(3);
        for (Vertex& vertex : polygon.vertices) vertex = vertexAt(next++);
        polygon.plane = planeFromPoints(polygon.vertices[0].pos, polygon.vertices[1].pos, polygon.vertices[2].pos);
    }
}

/// The number of vertices that forEachFanVertex hands out.
std::int32_t countFanVertices(const PolygonList& polygons);

/// Fans every polygon from its first vertex, (0, 1, 2), (0, 2, 3) and so on, and hands the corners to `take` in order.
/// Polygons of fewer than three vertices give nothing.
template <typename Take> void forEachFanVertex(const PolygonList& polygons, Take take) {
    for (const Polygon& polygon : polygons) {
        for (std::size_t j = 2; j < polygon.vertices.size(); ++j) {
            take(polygon.vertices[0]);
            take(polygon.vertices[j - 1]);
            take(polygon.vertices[j]);
        }
    }
}

} // namespace orva::bspcsg

#include "capi/convert.hpp"

#include "geometry/triangles.hpp"

#include <bit>

namespace orva::bspcsg {

void meshDToPolygons(const MeshD* record, PolygonList& polygons) {
    polygons.clear();
    if (record == nullptr || record->vertices == nullptr || record->count < 1) return;
    trianglesToPolygons(
        record->count, [record](std::size_t i) { return std::bit_cast<Vertex>(record->vertices[i]); }, polygons);
}

void polygonsToMeshD(const PolygonList& polygons, MeshD* record) {
    if (record == nullptr) return;
    record->count = countFanVertices(polygons);
    record->vertices = orva_meshd_alloc_vertices(record->count);
    if (record->vertices == nullptr) return; // no triangles, or a host whose operator new answers with null
    VertexD* next = record->vertices;
    forEachFanVertex(polygons, [&next](const Vertex& vertex) { *next++ = std::bit_cast<VertexD>(vertex); });
}

} // namespace orva::bspcsg

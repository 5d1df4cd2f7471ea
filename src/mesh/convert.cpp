#include "mesh/convert.hpp"

#include "geometry/triangles.hpp"

namespace orva::bspcsg {

void meshToPolygons(const types::Mesh<double>& mesh, PolygonList& polygons) {
    if (mesh.vertices.empty()) return;
    trianglesToPolygons(
        toCount(mesh.vertices.size()), [&mesh](std::size_t i) { return mesh.vertices[i]; }, polygons);
}

void polygonsToMesh(const PolygonList& polygons, types::Mesh<double>& mesh) {
    const auto count = static_cast<std::size_t>(countFanVertices(polygons));
    if (count > mesh.vertices.max_size() - mesh.vertices.size()) throwListTooLong();
    onProcessHeap([&] {
        if (count > mesh.vertices.capacity()) mesh.vertices.reserve(count);
        forEachFanVertex(polygons, [&mesh](const Vertex& vertex) { mesh.vertices.push_back(vertex); });
    });
}

} // namespace orva::bspcsg

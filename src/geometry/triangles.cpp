#include "geometry/triangles.hpp"

namespace orva::bspcsg {

std::int32_t countFanVertices(const PolygonList& polygons) {
    std::uint64_t count = 0;
    for (const Polygon& polygon : polygons) {
        if (polygon.vertices.size() >= 3) count += 3 * (polygon.vertices.size() - 2);
    }
    return toCount(count);
}

} // namespace orva::bspcsg

#include "geometry/records.hpp"

#include <algorithm>
#include <emmintrin.h>

namespace orva::bspcsg {

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double length(const Vec3& a) {
    // The instruction itself, rounded once. Not std::sqrt: unoptimised, GCC calls the C library's, and MinGW's rounds
    // twice, through the x87's 64 bits.
    const __m128d squared = _mm_set_sd(dot(a, a));
    return _mm_cvtsd_f64(_mm_sqrt_sd(squared, squared));
}

Vec3 unit(const Vec3& a) {
    const double len = length(a);
    return {a.x / len, a.y / len, a.z / len};
}

Plane planeFromPoints(const Vec3& a, const Vec3& b, const Vec3& c) {
    const Vec3 normal = unit(cross(b - a, c - a));
    return {normal, dot(normal, a)};
}

Vertex interpolate(const Vertex& a, const Vertex& b, double t) {
    const auto mix = [t](double from, double to) { return from + (to - from) * t; };
    const auto mix3 = [&mix](const Vec3& from, const Vec3& to) {
        return Vec3{mix(from.x, to.x), mix(from.y, to.y), mix(from.z, to.z)};
    };
    return {mix3(a.pos, b.pos), mix3(a.normal, b.normal), {mix(a.aux[0], b.aux[0]), mix(a.aux[1], b.aux[1])}};
}

Plane flipped(const Plane& plane) {
    return {-plane.normal, -plane.w};
}

void flip(Polygon& polygon) {
    std::reverse(polygon.vertices.begin(), polygon.vertices.end());
    for (Vertex& vertex : polygon.vertices) vertex.normal = -vertex.normal;
    polygon.plane = flipped(polygon.plane);
}

} // namespace orva::bspcsg

#include "measures.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace orva::test {

namespace {

Vec3 minus(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double length(const Vec3& a) {
    return std::sqrt(dot(a, a));
}

double distanceToSegment(const Vec3& p, const Vec3& a, const Vec3& b) {
    const Vec3 ab = minus(b, a);
    const double squared = dot(ab, ab);
    const double t = squared > 0 ? std::clamp(dot(minus(p, a), ab) / squared, 0.0, 1.0) : 0.0;
    return length(minus(p, {a.x + ab.x * t, a.y + ab.y * t, a.z + ab.z * t}));
}

double distanceToTriangle(const Vec3& p, const Vec3& a, const Vec3& b, const Vec3& c) {
    const Vec3 n = cross(minus(b, a), minus(c, a));
    const bool above = dot(cross(minus(b, a), minus(p, a)), n) >= 0 && dot(cross(minus(c, b), minus(p, b)), n) >= 0 &&
                       dot(cross(minus(a, c), minus(p, c)), n) >= 0 && length(n) > 0;
    if (above) return std::abs(dot(minus(p, a), n)) / length(n);
    return std::min({distanceToSegment(p, a, b), distanceToSegment(p, b, c), distanceToSegment(p, c, a)});
}

} // namespace

double volume(const Mesh& mesh) {
    double sixfold = 0;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        const Vec3& a = mesh.vertices[i].pos;
        sixfold += dot(a, cross(mesh.vertices[i + 1].pos, mesh.vertices[i + 2].pos));
    }
    return sixfold / 6;
}

double windingNumber(const Mesh& mesh, const Vec3& point) {
    double angle = 0;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        const Vec3 a = minus(mesh.vertices[i].pos, point);
        const Vec3 b = minus(mesh.vertices[i + 1].pos, point);
        const Vec3 c = minus(mesh.vertices[i + 2].pos, point);
        const double la = length(a);
        const double lb = length(b);
        const double lc = length(c);
        angle += 2 * std::atan2(dot(a, cross(b, c)), la * lb * lc + dot(a, b) * lc + dot(b, c) * la + dot(c, a) * lb);
    }
    return angle / (4 * std::numbers::pi);
}

int crossingNumber(const Mesh& mesh, const Vec3& point) {
    int crossings = 0;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        const Vec3 a = minus(mesh.vertices[i].pos, point);
        const Vec3 b = minus(mesh.vertices[i + 1].pos, point);
        const Vec3 c = minus(mesh.vertices[i + 2].pos, point);
        // The triangle as seen along x, and on which side of each edge the ray passes.
        const double ab = a.y * b.z - a.z * b.y;
        const double bc = b.y * c.z - b.z * c.y;
        const double ca = c.y * a.z - c.z * a.y;
        const bool frontal = ab > 0 && bc > 0 && ca > 0;
        if (!frontal && !(ab < 0 && bc < 0 && ca < 0)) continue;
        const double x = (a.x * bc + b.x * ca + c.x * ab) / (ab + bc + ca);
        if (x > 0) crossings += frontal ? 1 : -1;
    }
    return crossings;
}

double distanceTo(const Mesh& mesh, const Vec3& point) {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        nearest = std::min(nearest, distanceToTriangle(point, mesh.vertices[i].pos, mesh.vertices[i + 1].pos,
                                                       mesh.vertices[i + 2].pos));
    }
    return nearest;
}

} // namespace orva::test

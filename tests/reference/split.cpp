#include "reference.hpp"

#include <algorithm>
#include <emmintrin.h>

namespace orva::reference {

namespace {

Vec3 minus(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vec3 negated(const Vec3& a) {
    return {-a.x, -a.y, -a.z};
}
double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Vec3 unit(const Vec3& a) {
    // Not std::sqrt: unoptimised, MinGW's is not the instruction and rounds twice.
    const double squared = dot(a, a);
    const double length = _mm_cvtsd_f64(_mm_sqrt_sd(_mm_set_sd(squared), _mm_set_sd(squared)));
    return {a.x / length, a.y / length, a.z / length};
}

double between(double a, double b, double t) {
    return a + (b - a) * t;
}
Vec3 between(const Vec3& a, const Vec3& b, double t) {
    return {between(a.x, b.x, t), between(a.y, b.y, t), between(a.z, b.z, t)};
}
Vertex between(const Vertex& a, const Vertex& b, double t) {
    return {between(a.pos, b.pos, t),
            between(a.normal, b.normal, t),
            {between(a.aux[0], b.aux[0], t), between(a.aux[1], b.aux[1], t)}};
}

// A polygon's side is the OR of its vertices'.
enum Side : unsigned { Coplanar = 0, Front = 1, Back = 2, Spanning = 3 };

// A distance of exactly the tolerance, and NaN, are coplanar.
Side sideOf(const Plane& plane, const Vec3& p) {
    const double distance = dot(plane.normal, p) - plane.w;
    if (distance < -EPSILON) return Back;
    if (distance > EPSILON) return Front;
    return Coplanar;
}

} // namespace

Plane planeFromPoints(const Vec3& a, const Vec3& b, const Vec3& c) {
    const Vec3 normal = unit(cross(minus(b, a), minus(c, a)));
    return {normal, dot(normal, a)};
}

Plane flipped(const Plane& plane) {
    return {negated(plane.normal), -plane.w};
}

Polygon flipped(const Polygon& polygon) {
    Polygon result{{polygon.vertices.rbegin(), polygon.vertices.rend()}, flipped(polygon.plane)};
    for (Vertex& vertex : result.vertices) vertex.normal = negated(vertex.normal);
    return result;
}

void splitPolygon(const Plane& plane, const Polygon& polygon, PolygonList& coplanarFront, PolygonList& coplanarBack,
                  PolygonList& front, PolygonList& back) {
    unsigned polygonSide = Coplanar;
    std::vector<Side> sides;
    sides.reserve(polygon.vertices.size());
    for (const Vertex& vertex : polygon.vertices) {
        sides.push_back(sideOf(plane, vertex.pos));
        polygonSide |= sides.back();
    }

    if (polygonSide == Coplanar) {
        if (dot(plane.normal, polygon.plane.normal) > 0) {
            coplanarFront.push_back(polygon);
        } else {
            coplanarBack.push_back(polygon);
        }
    } else if (polygonSide == Front) {
        front.push_back(polygon);
    } else if (polygonSide == Back) {
        back.push_back(polygon);
    } else {
        ++cuts;
        const std::size_t n = polygon.vertices.size();
        Polygon frontPiece{{}, polygon.plane};
        Polygon backPiece{{}, polygon.plane};
        frontPiece.vertices.reserve(n + 1);
        backPiece.vertices.reserve(n + 1);
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t j = (i + 1) % n;
            const Vertex& here = polygon.vertices[i];
            const Vertex& next = polygon.vertices[j];
            if (sides[i] != Back) frontPiece.vertices.push_back(here);
            if (sides[i] != Front) backPiece.vertices.push_back(here);
            if ((sides[i] | sides[j]) == Spanning) {
                const double t = (plane.w - dot(plane.normal, here.pos)) / dot(plane.normal, minus(next.pos, here.pos));
                frontPiece.vertices.push_back(between(here, next, t));
                backPiece.vertices.push_back(frontPiece.vertices.back());
            }
        }
        if (frontPiece.vertices.size() >= 3) front.push_back(frontPiece);
        if (backPiece.vertices.size() >= 3) back.push_back(backPiece);
    }
}

} // namespace orva::reference

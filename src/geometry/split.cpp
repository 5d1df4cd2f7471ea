#include "geometry/split.hpp"

namespace orva::bspcsg {

namespace {

PolygonSide sideOf(const Plane& plane, const Vec3& p) {
    const double distance = signedDistance(plane, p);
    if (distance < -EPSILON) return PolygonSide::Back;
    if (distance > EPSILON) return PolygonSide::Front;
    return PolygonSide::Coplanar;
}

// Walks around the polygon once, handing each vertex to the piece or pieces that it belongs to.
void cutSpanning(const Plane& plane, const Polygon& polygon, const List<PolygonSide>& sides, PolygonList& front,
                 PolygonList& back) {
    const std::size_t n = polygon.vertices.size();
    Polygon frontPiece{{}, polygon.plane};
    Polygon backPiece{{}, polygon.plane};
    // A piece takes at most one vertex for each of the polygon's and one more for each edge that leaves its side; every
    // other edge can do so (a bent polygon; a convex one has one such edge).
    frontPiece.vertices.reserve(n + n / 2);
    backPiece.vertices.reserve(n + n / 2);

    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t j = (i + 1) % n;
        const Vertex& here = polygon.vertices[i];
        const Vertex& next = polygon.vertices[j];
        if (sides[i] != PolygonSide::Back) frontPiece.vertices.push_back(here);
        if (sides[i] != PolygonSide::Front) backPiece.vertices.push_back(here);
        if ((sides[i] | sides[j]) == PolygonSide::Spanning) {
            // The two distances differ by more than 2 * EPSILON: no zero to divide by, for a unit normal.
            const double t = (plane.w - dot(plane.normal, here.pos)) / dot(plane.normal, next.pos - here.pos);
            const Vertex crossing = interpolate(here, next, t);
            frontPiece.vertices.push_back(crossing);
            backPiece.vertices.push_back(crossing);
        }
    }

    if (frontPiece.vertices.size() >= 3) front.push_back(frontPiece);
    if (backPiece.vertices.size() >= 3) back.push_back(backPiece);
}

} // namespace

List<PolygonSide> classifyVertices(const Plane& plane, const Polygon& polygon) {
    List<PolygonSide> sides;
    sides.reserve(polygon.vertices.size());
    for (const Vertex& vertex : polygon.vertices) sides.push_back(sideOf(plane, vertex.pos));
    return sides;
}

void splitPolygon(const Plane& plane, const Polygon& polygon, PolygonList& coplanarFront, PolygonList& coplanarBack,
                  PolygonList& front, PolygonList& back) {
    const List<PolygonSide> sides = classifyVertices(plane, polygon);
    PolygonSide polygonSide = PolygonSide::Coplanar;
    for (const PolygonSide side : sides) polygonSide = polygonSide | side;

    switch (polygonSide) {
    case PolygonSide::Coplanar:
        (dot(plane.normal, polygon.plane.normal) > 0.0 ? coplanarFront : coplanarBack).push_back(polygon);
        break;
    case PolygonSide::Front:
        front.push_back(polygon);
        break;
    case PolygonSide::Back:
        back.push_back(polygon);
        break;
    case PolygonSide::Spanning:
        cutSpanning(plane, polygon, sides, front, back);
        break;
    }
}

void splitPolygons(const Plane& plane, const PolygonList& polygons, PolygonList& coplanarFront,
                   PolygonList& coplanarBack, PolygonList& front, PolygonList& back) {
    for (const Polygon& polygon : polygons) {
        splitPolygon(plane, polygon, coplanarFront, coplanarBack, front, back);
    }
}

} // namespace orva::bspcsg

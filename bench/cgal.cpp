#include "cgal.hpp"

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Polygon_mesh_processing/corefinement.h>
#include <CGAL/Polygon_mesh_processing/self_intersections.h>
#include <CGAL/Surface_mesh.h>

#include <array>
#include <bit>
#include <cstdint>
#include <queue>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace orva::bench::cgal {

namespace {

using Point = CGAL::Exact_predicates_inexact_constructions_kernel::Point_3;
using Surface = CGAL::Surface_mesh<Point>;
namespace processing = CGAL::Polygon_mesh_processing;

using Position = std::array<double, 3>;

struct HashOfPosition {
    std::size_t operator()(const Position& position) const {
        std::uint64_t hash = 0;
        for (const double value : position) {
            hash = (hash ^ std::bit_cast<std::uint64_t>(value)) * 0x9E3779B97F4A7C15U;
            hash ^= hash >> 32;
        }
        return hash;
    }
};

// Corners with the same coordinates become one vertex.
Surface surfaceOf(const Mesh& mesh) {
    Surface surface;
    const auto triangles = static_cast<Surface::size_type>(mesh.vertices.size() / 3);
    surface.reserve(triangles / 2 + 2, triangles * 3 / 2, triangles);
    std::unordered_map<Position, Surface::Vertex_index, HashOfPosition> indices;
    indices.reserve(triangles);
    const auto indexOf = [&](const types::Vec3& p) {
        const auto [entry, isNew] = indices.try_emplace({p.x + 0.0, p.y + 0.0, p.z + 0.0}); // -0 is 0
        if (isNew) entry->second = surface.add_vertex(Point(p.x, p.y, p.z));
        return entry->second;
    };
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        const auto a = indexOf(mesh.vertices[i].pos);
        const auto b = indexOf(mesh.vertices[i + 1].pos);
        const auto c = indexOf(mesh.vertices[i + 2].pos);
        if (surface.add_face(a, b, c) == Surface::null_face()) throw std::runtime_error("not a manifold");
    }
    return surface;
}

Mesh meshOf(const Surface& surface) {
    Mesh mesh;
    mesh.vertices.reserve(3 * surface.number_of_faces());
    for (const Surface::Face_index face : surface.faces()) {
        for (const Surface::Vertex_index vertex : surface.vertices_around_face(surface.halfedge(face))) {
            const Point& p = surface.point(vertex);
            mesh.vertices.push_back({{p.x(), p.y(), p.z()}, {}, {}});
        }
    }
    return mesh;
}

Surface united(Surface& a, Surface& b) {
    Surface result;
    if (!processing::corefine_and_compute_union(a, b, result)) throw std::runtime_error("no manifold result");
    return result;
}

Surface difference(Surface& a, Surface& b) {
    Surface result;
    if (!processing::corefine_and_compute_difference(a, b, result)) throw std::runtime_error("no manifold result");
    return result;
}

Surface intersection(Surface& a, Surface& b) {
    Surface result;
    if (!processing::corefine_and_compute_intersection(a, b, result)) throw std::runtime_error("no manifold result");
    return result;
}

Mesh combined(const Mesh& a, const Mesh& b, Surface (*operation)(Surface&, Surface&)) {
    Surface surfaceA = surfaceOf(a);
    Surface surfaceB = surfaceOf(b);
    return meshOf(operation(surfaceA, surfaceB));
}

} // namespace

Mesh unite(const Mesh& a, const Mesh& b) {
    return combined(a, b, united);
}
Mesh subtract(const Mesh& a, const Mesh& b) {
    return combined(a, b, difference);
}
Mesh intersect(const Mesh& a, const Mesh& b) {
    return combined(a, b, intersection);
}

Mesh subtractInTurn(const Mesh& base, const std::vector<Mesh>& cutters) {
    Surface current = surfaceOf(base);
    for (const Mesh& cutter : cutters) {
        Surface surface = surfaceOf(cutter);
        current = difference(current, surface);
    }
    return meshOf(current);
}

Mesh subtractUnion(const Mesh& base, const std::vector<Mesh>& cutters) {
    std::queue<Surface> queue;
    for (const Mesh& cutter : cutters) queue.push(surfaceOf(cutter));
    while (queue.size() > 1) {
        Surface a = std::move(queue.front());
        queue.pop();
        Surface b = std::move(queue.front());
        queue.pop();
        queue.push(united(a, b));
    }
    Surface surface = surfaceOf(base);
    return meshOf(difference(surface, queue.front()));
}

bool crossesItself(const Mesh& mesh) {
    return processing::does_self_intersect(surfaceOf(mesh));
}

} // namespace orva::bench::cgal

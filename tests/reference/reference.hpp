// The library's algorithm once more, as plainly as it can be said: one thread, standard containers, every polygon
// copied wherever it goes. It is what the library is held against, bit for bit, and what its speed is measured by. So
// it is never made faster, and shares nothing with the library but the mesh of the public header.
//
//     split.cpp       one polygon against one plane
//     tree.cpp        the tree: build, clip, invert, copy, collect
//     operations.cpp  meshes in, a mesh out
#pragma once

#include "orva/types.hpp"

#include <cstdint>
#include <memory>
#include <vector>

namespace orva::reference {

using types::Vec3;
using types::Vertex;
using Mesh = types::Mesh<double>;

/// The points p with normal . p = w.
struct Plane {
    Vec3 normal;
    double w = 0.0;
};

struct Polygon {
    std::vector<Vertex> vertices;
    Plane plane; ///< computed for the triangle that came in; its pieces inherit it
};

using PolygonList = std::vector<Polygon>;

struct Node;
using Tree = std::unique_ptr<Node>;

struct Node {
    Tree front;
    Tree back;
    PolygonList polygons;
    Plane plane; ///< not set while no component of its normal reaches the tolerance

    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node(); ///< not by recursion: trees are as deep as they have nodes
};

// ---- split.cpp ----

inline constexpr double EPSILON = 1e-6;

Plane planeFromPoints(const Vec3& a, const Vec3& b, const Vec3& c);

/// Vertices in reverse order, their normals and the plane negated.
Polygon flipped(const Polygon& polygon);
Plane flipped(const Plane& plane);

/// How many spanning polygons splitPolygon has cut in this process, for rates; counted for one thread.
inline std::uint64_t cuts = 0;

/// Appends the polygon, or its two pieces, to the lists on whose side they lie; some of the four may be the same list.
void splitPolygon(const Plane& plane, const Polygon& polygon, PolygonList& coplanarFront, PolygonList& coplanarBack,
                  PolygonList& front, PolygonList& back);

// ---- tree.cpp ----

void build(Node& tree, const PolygonList& polygons);
PolygonList clipPolygonList(const Node& tree, const PolygonList& polygons);
void clipTree(Node& tree, const Node& other);
void invert(Node& tree);
Tree clone(const Node& tree);
PolygonList collect(const Node& tree);

// ---- operations.cpp ----

/// The recipes: both trees are spent.
Tree uniteTrees(Node& a, Node& b);
Tree subtractTrees(Node& a, Node& b);
Tree intersectTrees(Node& a, Node& b);

PolygonList polygonsOf(const Mesh& mesh);
Mesh fanned(const PolygonList& polygons);

Mesh unite(const Mesh& a, const Mesh& b);
Mesh subtract(const Mesh& a, const Mesh& b);
Mesh intersect(const Mesh& a, const Mesh& b);

/// ((base - c0) - c1) - ...; without cutters nothing, not even the base.
Mesh subtractInTurn(const Mesh& base, const std::vector<Mesh>& cutters);
/// base - (c0 + c1 + ...); likewise.
Mesh subtractUnion(const Mesh& base, const std::vector<Mesh>& cutters);

} // namespace orva::reference

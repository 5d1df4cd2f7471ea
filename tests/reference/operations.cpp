#include "reference.hpp"

#include <queue>
#include <utility>

namespace orva::reference {

namespace {

Tree treeOf(const Mesh& mesh) {
    Tree tree = std::make_unique<Node>();
    build(*tree, polygonsOf(mesh));
    return tree;
}

Tree rebuilt(const Node& tree) {
    Tree result = std::make_unique<Node>();
    build(*result, collect(tree));
    return result;
}

} // namespace

Tree uniteTrees(Node& a, Node& b) {
    clipTree(a, b);
    clipTree(b, a);
    invert(b);
    clipTree(b, a);
    invert(b);
    build(a, collect(b));
    return rebuilt(a);
}

Tree subtractTrees(Node& a, Node& b) {
    invert(a);
    clipTree(a, b);
    clipTree(b, a);
    invert(b);
    clipTree(b, a);
    invert(b);
    build(a, collect(b));
    invert(a);
    return rebuilt(a);
}

Tree intersectTrees(Node& a, Node& b) {
    invert(a);
    clipTree(b, a);
    invert(b);
    clipTree(a, b);
    clipTree(b, a);
    build(a, collect(b));
    invert(a);
    return rebuilt(a);
}

// One or two vertices behind the last triangle belong to none.
PolygonList polygonsOf(const Mesh& mesh) {
    PolygonList polygons;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        const Vertex& a = mesh.vertices[i];
        const Vertex& b = mesh.vertices[i + 1];
        const Vertex& c = mesh.vertices[i + 2];
        polygons.push_back({{a, b, c}, planeFromPoints(a.pos, b.pos, c.pos)});
    }
    return polygons;
}

Mesh fanned(const PolygonList& polygons) {
    Mesh mesh;
    for (const Polygon& polygon : polygons) {
        for (std::size_t i = 2; i < polygon.vertices.size(); ++i) {
            mesh.vertices.push_back(polygon.vertices[0]);
            mesh.vertices.push_back(polygon.vertices[i - 1]);
            mesh.vertices.push_back(polygon.vertices[i]);
        }
    }
    return mesh;
}

Mesh unite(const Mesh& a, const Mesh& b) {
    return fanned(collect(*uniteTrees(*treeOf(a), *treeOf(b))));
}

Mesh subtract(const Mesh& a, const Mesh& b) {
    return fanned(collect(*subtractTrees(*treeOf(a), *treeOf(b))));
}

Mesh intersect(const Mesh& a, const Mesh& b) {
    return fanned(collect(*intersectTrees(*treeOf(a), *treeOf(b))));
}

Mesh subtractInTurn(const Mesh& base, const std::vector<Mesh>& cutters) {
    if (cutters.empty()) return {};
    Tree current = treeOf(base);
    for (const Mesh& cutter : cutters) current = subtractTrees(*current, *treeOf(cutter));
    return fanned(collect(*current));
}

// The union is a tournament: the first two of the queue are merged and their union goes to its end, until one is left.
Mesh subtractUnion(const Mesh& base, const std::vector<Mesh>& cutters) {
    if (cutters.empty()) return {};
    std::queue<Tree> queue;
    for (const Mesh& cutter : cutters) queue.push(treeOf(cutter));
    while (queue.size() > 1) {
        const Tree a = std::move(queue.front());
        queue.pop();
        const Tree b = std::move(queue.front());
        queue.pop();
        queue.push(uniteTrees(*a, *b));
    }
    return fanned(collect(*subtractTrees(*treeOf(base), *queue.front())));
}

} // namespace orva::reference

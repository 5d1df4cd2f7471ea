#include "boolean/batch.hpp"

#include "boolean/combine.hpp"
#include "mesh/convert.hpp"
#include "orva/bspcsg.hpp"

namespace orva::bspcsg {

namespace {

NodePtr treeOf(const types::Mesh<double>& mesh) {
    PolygonList polygons;
    meshToPolygons(mesh, polygons);
    return buildTree(std::move(polygons));
}

TreeList treesOf(const std::vector<types::Mesh<double>>& meshes) {
    TreeList trees;
    trees.reserve(meshes.size());
    for (const types::Mesh<double>& mesh : meshes) trees.push_back(treeOf(mesh));
    return trees;
}

} // namespace

NodePtr buildTree(PolygonList polygons) {
    auto tree = std::make_unique<Node>();
    tree->build(std::move(polygons));
    return tree;
}

NodePtr subtractTree(Node&& base, Node&& cutters) {
    auto result = std::make_unique<Node>();
    subtractTrees(*result, std::move(base), std::move(cutters));
    return result;
}

NodePtr subtractTreeList(const Node& base, const TreeList& cutters) {
    NodePtr current = base.clone();
    for (const NodePtr& cutter : cutters) {
        const NodePtr spent = cutter->clone();
        current = subtractTree(std::move(*current), std::move(*spent));
    }
    return current;
}

void subtractMultiMesh(types::Mesh<double>& output, const types::Mesh<double>& base,
                       const std::vector<types::Mesh<double>>& cutters) {
    if (toCount(cutters.size()) == 0) return;
    TreeList cutterTrees = treesOf(cutters);
    NodePtr baseTree = treeOf(base);
    const NodePtr result = subtractTreeList(*baseTree, cutterTrees);
    cutterTrees.clear();
    baseTree.reset();
    polygonsToMesh(result->takePolygons(), output);
}

void subtractUnionOfMeshes(types::Mesh<double>& output, const types::Mesh<double>& base,
                           const std::vector<types::Mesh<double>>& cutters, UnionStrategy strategy) {
    const std::int32_t count = toCount(cutters.size());
    if (count == 0) return;
    if (count == 1) {
        combineMeshes(output, base, cutters.front(), subtractTrees);
        return;
    }
    TreeList cutterTrees = treesOf(cutters);
    NodePtr cutterUnion = unionTreeList(cutterTrees, strategy);
    cutterTrees.clear();
    NodePtr baseTree = treeOf(base);
    const NodePtr result = subtractTree(std::move(*baseTree), std::move(*cutterUnion));
    baseTree.reset();
    cutterUnion.reset();
    polygonsToMesh(result->takePolygons(), output);
}

void subtractMultiUnionMesh(types::Mesh<double>& output, const types::Mesh<double>& base,
                            const std::vector<types::Mesh<double>>& cutters) {
    subtractUnionOfMeshes(output, base, cutters, UnionStrategy::Sequential);
}

void subtractMultiUnionMeshParallel(types::Mesh<double>& output, const types::Mesh<double>& base,
                                    const std::vector<types::Mesh<double>>& cutters) {
    subtractUnionOfMeshes(output, base, cutters, UnionStrategy::TaskGroup);
}

} // namespace orva::bspcsg

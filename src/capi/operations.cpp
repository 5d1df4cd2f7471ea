#include "boolean/batch.hpp"
#include "boolean/combine.hpp"
#include "capi/convert.hpp"
#include "orva/orva.h"

namespace orva::bspcsg {

namespace {

void combineRecords(MeshD* output, const MeshD* a, const MeshD* b, CombineFunction recipe) {
    if (output == nullptr || a == nullptr || b == nullptr) return;
    PolygonList polygonsA;
    PolygonList polygonsB;
    PolygonList result;
    meshDToPolygons(a, polygonsA);
    meshDToPolygons(b, polygonsB);
    combinePolygonLists(std::move(recipe), result, polygonsA, polygonsB);
    polygonsToMeshD(result, output);
}

// What the batch operations need to write anything at all.
bool complete(const MeshD* output, const MeshD* base, const MeshD* cutters, std::int32_t cutterCount) {
    return output != nullptr && base != nullptr && cutters != nullptr && cutterCount >= 1;
}

NodePtr treeOf(const MeshD* record) {
    PolygonList polygons;
    meshDToPolygons(record, polygons);
    return buildTree(std::move(polygons));
}

TreeList treesOf(const MeshD* records, std::int32_t count) {
    TreeList trees;
    trees.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) trees.push_back(treeOf(records + i));
    return trees;
}

void subtractInTurn(MeshD* output, const MeshD* base, const MeshD* cutters, std::int32_t cutterCount) {
    if (!complete(output, base, cutters, cutterCount)) return;
    NodePtr baseTree = treeOf(base);
    TreeList cutterTrees = treesOf(cutters, cutterCount);
    const NodePtr result = subtractTreeList(*baseTree, cutterTrees);
    cutterTrees.clear();
    baseTree.reset();
    polygonsToMeshD(result->takePolygons(), output);
}

// note: here the cutters come first and the base is converted only when their union exists; in turn it is the other way
// round. There is no way of its own for a single cutter: its union is a copy of it.
void subtractUnion(MeshD* output, const MeshD* base, const MeshD* cutters, std::int32_t cutterCount,
                   UnionStrategy strategy) {
    if (!complete(output, base, cutters, cutterCount)) return;
    TreeList cutterTrees = treesOf(cutters, cutterCount);
    NodePtr cutterUnion = unionTreeList(cutterTrees, strategy);
    cutterTrees.clear();
    NodePtr baseTree = treeOf(base);
    const NodePtr result = subtractTree(std::move(*baseTree), std::move(*cutterUnion));
    baseTree.reset();
    cutterUnion.reset();
    polygonsToMeshD(result->takePolygons(), output);
}

} // namespace

} // namespace orva::bspcsg

using namespace orva::bspcsg;

void orva_bspcsg_union_mesh(MeshD* output, const MeshD* a, const MeshD* b) {
    combineRecords(output, a, b, unionTrees);
}

void orva_bspcsg_subtract_mesh(MeshD* output, const MeshD* a, const MeshD* b) {
    combineRecords(output, a, b, subtractTrees);
}

void orva_bspcsg_intersect_mesh(MeshD* output, const MeshD* a, const MeshD* b) {
    combineRecords(output, a, b, intersectTrees);
}

void orva_bspcsg_subtract_multi_mesh(MeshD* output, const MeshD* base, const MeshD* cutters, int32_t cutter_count) {
    subtractInTurn(output, base, cutters, cutter_count);
}

void orva_bspcsg_subtract_multi_union_mesh(MeshD* output, const MeshD* base, const MeshD* cutters,
                                           int32_t cutter_count) {
    subtractUnion(output, base, cutters, cutter_count, UnionStrategy::Sequential);
}

void orva_bspcsg_subtract_multi_union_mesh_parallel(MeshD* output, const MeshD* base, const MeshD* cutters,
                                                    int32_t cutter_count) {
    subtractUnion(output, base, cutters, cutter_count, UnionStrategy::TaskGroup);
}

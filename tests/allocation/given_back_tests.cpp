// What is spent is given back before the output is made: then nothing is left but the polygons of the result.
#include "boolean/batch.hpp"
#include "boolean/combine.hpp"
#include "mesh/convert.hpp"
#include "operations.hpp"
#include "seam.hpp"
#include "shapes.hpp"

#include <gtest/gtest.h>

namespace orva::test {

namespace {

using bspcsg::NodePtr;
using bspcsg::PolygonList;
using bspcsg::TreeList;

const Mesh base = icosphere(1, {0, 0, 0}, 1);
const std::vector<Mesh> cutters{icosphere(1, {0.31, 0.17, 0.23}, 0.9), icosphere(0, {-0.9, 0.1, 0.2}, 0.5)};

PolygonList polygonsOf(const Mesh& mesh) {
    PolygonList polygons;
    bspcsg::meshToPolygons(mesh, polygons);
    return polygons;
}

TreeList cutterTrees() {
    TreeList trees;
    for (const Mesh& cutter : cutters) trees.push_back(bspcsg::buildTree(polygonsOf(cutter)));
    return trees;
}

// How many blocks the polygons of a result are: the list, and the vertices of each.
long blocksOf(const PolygonList& polygons) {
    return 1 + static_cast<long>(polygons.size());
}

template <typename Call> long blocksWhenTheOutputIsMade(Call call) {
    const long before = live();
    const Armed armed({});
    call();
    return liveAtTheProcessHeap() - before;
}

} // namespace

// Through C there is also the record that the test made.

TEST(Output, OfTwoMeshesIsMadeWhenOnlyItsPolygonsAreLeft) {
    const bspcsg::CombineFunction recipes[]{bspcsg::unionTrees, bspcsg::subtractTrees, bspcsg::intersectTrees};
    for (std::size_t i = 0; i < std::size(recipes); ++i) {
        PolygonList a = polygonsOf(base);
        PolygonList b = polygonsOf(cutters[0]);
        PolygonList result;
        bspcsg::combinePolygonLists(recipes[i], result, a, b);
        const TwoMeshOperation& operation = twoMeshOperations[i];
        EXPECT_EQ(blocksWhenTheOutputIsMade([&] { (void)operation(base, cutters[0]); }), blocksOf(result));
        EXPECT_EQ(blocksWhenTheOutputIsMade([&] { (void)operation.throughC(base, cutters[0]); }), blocksOf(result) + 1);
    }
}

TEST(Output, OfManyCuttersIsMadeWhenOnlyItsPolygonsAndAnEmptyRootAndListAreLeft) {
    const NodePtr inTurn = bspcsg::subtractTreeList(*bspcsg::buildTree(polygonsOf(base)), cutterTrees());
    const NodePtr cutterUnion = bspcsg::unionTreeListSequential(cutterTrees());
    const NodePtr asOne =
        bspcsg::subtractTree(std::move(*bspcsg::buildTree(polygonsOf(base))), std::move(*cutterUnion));
    for (const auto& [operation, result] :
         {std::pair{&subtractInTurn, inTurn->takePolygons()}, std::pair{&subtractUnion, asOne->takePolygons()}}) {
        EXPECT_EQ(blocksWhenTheOutputIsMade([&] { (void)(*operation)(base, cutters); }), blocksOf(result) + 2);
        EXPECT_EQ(blocksWhenTheOutputIsMade([&] { (void)operation->throughC(base, cutters); }), blocksOf(result) + 3);
    }
}

} // namespace orva::test

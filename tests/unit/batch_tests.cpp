#include "boolean/batch.hpp"
#include "boolean/combine.hpp"
#include "measures.hpp"
#include "mesh/convert.hpp"
#include "polygons.hpp"
#include "worker.hpp"

#include <string>

namespace orva::bspcsg {

using test::Mesh;

namespace {

NodePtr treeOf(const Mesh& mesh) {
    return buildTree(polygonsOf(mesh));
}

// Cubes along the diagonal, each overlapping the next.
TreeList overlapping(int count) {
    TreeList trees;
    for (int i = 0; i < count; ++i) trees.push_back(treeOf(test::moved(test::unitCube(), {0.5 * i, 0.3 * i, 0.4 * i})));
    return trees;
}

NodePtr unionOf(const Node& a, const Node& b) {
    auto result = std::make_unique<Node>();
    unionTrees(*result, std::move(*a.clone()), std::move(*b.clone()));
    return result;
}

double volumeOf(const Node& tree) {
    Mesh mesh;
    polygonsToMesh(tree.collectPolygons(0), mesh);
    return test::volume(mesh);
}

std::string traceOf(int count) {
    Queue<std::string> queue;
    for (int i = 0; i < count; ++i) queue.push(std::to_string(i));
    std::string trace;
    tournament(queue, [&trace](const std::string& a, const std::string& b) {
        trace += "(" + a + " " + b + ")";
        return a + b;
    });
    return trace;
}

NodePtr unite(const TreeList& trees, UnionStrategy strategy) {
    return test::withAWorker([&] { return unionTreeList(trees, strategy); });
}

NodePtr uniteInParallel(const TreeList& trees) {
    return unite(trees, UnionStrategy::TaskGroup);
}

void subtractUnion(Mesh& output, const Mesh& base, const std::vector<Mesh>& cutters, UnionStrategy strategy) {
    test::withAWorker([&] { subtractUnionOfMeshes(output, base, cutters, strategy); });
}

constexpr UnionStrategy STRATEGIES[]{UnionStrategy::Sequential, UnionStrategy::Async, UnionStrategy::TaskGroup};

} // namespace

TEST(Tournament, MergesTheTwoInFrontAndPutsTheResultAtTheBack) {
    EXPECT_EQ(traceOf(2), "(0 1)");
    EXPECT_EQ(traceOf(3), "(0 1)(2 01)");
    EXPECT_EQ(traceOf(4), "(0 1)(2 3)(01 23)");
    EXPECT_EQ(traceOf(5), "(0 1)(2 3)(4 01)(23 401)");
    EXPECT_EQ(traceOf(8), "(0 1)(2 3)(4 5)(6 7)(01 23)(45 67)(0123 4567)");
}

TEST(SequentialReducer, OfThreeTreesUnitesTheThirdWithTheUnionOfTheFirstTwo) {
    const TreeList trees = overlapping(3);
    const NodePtr first = unionOf(*trees[0], *trees[1]);
    const NodePtr result = unionTreeListSequential(trees);
    EXPECT_TRUE(sameTree(result.get(), unionOf(*trees[2], *first).get()));
    EXPECT_FALSE(sameTree(result.get(), unionOf(*first, *trees[2]).get())) << "the case would show nothing";
}

TEST(Reducers, OfNoTreesGiveNull) {
    for (const UnionStrategy strategy : STRATEGIES) EXPECT_EQ(unite({}, strategy), nullptr);
}

TEST(Reducers, OfOneTreeGiveACopy) {
    const TreeList trees = overlapping(1);
    for (const UnionStrategy strategy : STRATEGIES) {
        const NodePtr result = unite(trees, strategy);
        EXPECT_NE(result, trees[0]);
        EXPECT_TRUE(sameTree(result.get(), trees[0].get()));
    }
}

TEST(Reducers, OfTwoTreesGiveTheirUnionBitForBit) {
    const TreeList trees = overlapping(2);
    const NodePtr expected = unionOf(*trees[0], *trees[1]);
    for (const UnionStrategy strategy : STRATEGIES) {
        EXPECT_TRUE(sameTree(unite(trees, strategy).get(), expected.get()));
    }
}

TEST(Reducers, LeaveTheirTreesAsTheyWere) {
    for (const UnionStrategy strategy : STRATEGIES) {
        const TreeList trees = overlapping(5);
        const TreeList before = overlapping(5);
        (void)unite(trees, strategy);
        for (std::size_t i = 0; i < trees.size(); ++i) EXPECT_TRUE(sameTree(trees[i].get(), before[i].get()));
    }
}

TEST(Reducers, OfManyTreesGiveTheSameSolid) {
    for (const int count : {3, 4, 7, 12}) {
        const TreeList trees = overlapping(count);
        const double expected = volumeOf(*unionTreeListSequential(trees));
        EXPECT_NEAR(volumeOf(*unionTreeListAsync(trees)), expected, 1e-9 * expected);
        EXPECT_NEAR(volumeOf(*uniteInParallel(trees)), expected, 1e-9 * expected);
    }
}

TEST(Reducers, AreKnownByTheirNumbersAndTakeAnyOtherAsSequential) {
    EXPECT_EQ(static_cast<int>(UnionStrategy::Sequential), 0);
    EXPECT_EQ(static_cast<int>(UnionStrategy::Async), 1);
    EXPECT_EQ(static_cast<int>(UnionStrategy::TaskGroup), 2);
    const TreeList trees = overlapping(3);
    const NodePtr expected = unionTreeListSequential(trees);
    for (const int value : {3, -1}) {
        EXPECT_TRUE(sameTree(unite(trees, static_cast<UnionStrategy>(value)).get(), expected.get()));
    }
}

TEST(MergePair, PushesTheUnionAndCountsItDown) {
    const TreeList trees = overlapping(2);
    ResultQueue queue;
    std::atomic<std::int32_t> pending = 2;
    mergePair(trees[0]->clone(), trees[1]->clone(), queue, pending);
    EXPECT_EQ(pending, 1);
    EXPECT_TRUE(sameTree(queue.pop().get(), unionOf(*trees[0], *trees[1]).get()));
    EXPECT_EQ(queue.pop(), nullptr);
}

TEST(SubtractTreeList, WithoutCuttersIsACopyOfTheBase) {
    const NodePtr base = treeOf(test::unitCube());
    const NodePtr result = subtractTreeList(*base, {});
    EXPECT_NE(result, base);
    EXPECT_TRUE(sameTree(result.get(), base.get()));
}

TEST(SubtractTreeList, LeavesBaseAndCuttersAsTheyWere) {
    const NodePtr base = treeOf(test::icosphere(1, {0, 0, 0}, 1));
    const NodePtr baseBefore = base->clone();
    const TreeList cutters = overlapping(2);
    const TreeList before = overlapping(2);
    (void)subtractTreeList(*base, cutters);
    EXPECT_TRUE(sameTree(base.get(), baseBefore.get()));
    for (std::size_t i = 0; i < 2; ++i) EXPECT_TRUE(sameTree(cutters[i].get(), before[i].get()));
}

TEST(SubtractUnionOfMeshes, OfOneCutterIsTheDifferenceForEveryStrategy) {
    const Mesh base = test::icosphere(1, {0, 0, 0}, 1);
    Mesh expected;
    combineMeshes(expected, base, test::unitCube(), subtractTrees);
    for (const int value : {0, 1, 2, 3, -1}) {
        Mesh result;
        subtractUnion(result, base, {test::unitCube()}, static_cast<UnionStrategy>(value));
        EXPECT_TRUE(test::sameBits(result, expected));
    }
}

TEST(SubtractUnionOfMeshes, WithoutCuttersLeavesTheOutputAlone) {
    for (const UnionStrategy strategy : STRATEGIES) {
        Mesh output = test::triangle({1, 2, 3}, {4, 5, 6}, {7, 8, 0});
        const Mesh before = output;
        subtractUnion(output, test::unitCube(), {}, strategy);
        EXPECT_TRUE(test::sameBits(output, before));
    }
}

TEST(SubtractUnionOfMeshes, OfTwoCuttersIsOneUnionAndOneDifference) {
    const Mesh base = test::icosphere(1, {0, 0, 0}, 1);
    const Mesh c0 = test::unitCube();
    const Mesh c1 = test::moved(test::unitCube(), {-0.7, -0.6, -0.5});
    const NodePtr cutters = unionOf(*treeOf(c0), *treeOf(c1));
    Mesh expected;
    polygonsToMesh(subtractTree(std::move(*treeOf(base)), std::move(*cutters))->collectPolygons(0), expected);
    for (const UnionStrategy strategy : STRATEGIES) {
        Mesh result;
        subtractUnion(result, base, {c0, c1}, strategy);
        EXPECT_TRUE(test::sameBits(result, expected));
    }
}

TEST(SubtractUnionOfMeshes, WithAnEmptyCutterHasNoTriangles) {
    for (const UnionStrategy strategy : STRATEGIES) {
        Mesh output;
        subtractUnion(output, test::unitCube(), {test::unitCube(), Mesh{}, test::unitCube()}, strategy);
        EXPECT_TRUE(output.vertices.empty());
    }
}

} // namespace orva::bspcsg

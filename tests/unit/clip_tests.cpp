#include "polygons.hpp"

namespace orva::bspcsg {

namespace {

// One node, the plane z = 0 facing up.
NodePtr ground() {
    auto node = std::make_unique<Node>();
    node->plane = {{0, 0, 1}, 0};
    return node;
}

Polygon facingDown(Polygon polygon) {
    flip(polygon);
    return polygon;
}

} // namespace

TEST(ClipPolygonList, OfNothingIsNothing) {
    const Node node;
    EXPECT_TRUE(node.clipPolygonList({}).empty());
}

TEST(ClipPolygonList, AgainstOnePlaneKeepsWhatIsInFrontOrFacesTheSameWay) {
    const NodePtr node = ground();
    const PolygonList kept =
        node->clipPolygonList(listOf({level(1), level(-1), level(0), facingDown(level(0)), facingDown(level(2))}));
    EXPECT_TRUE(sameBits(kept, listOf({level(1), level(0), facingDown(level(2))})));
}

TEST(ClipPolygonList, AcrossOnePlaneKeepsTheFrontPiece) {
    const NodePtr node = ground();
    const PolygonList kept = node->clipPolygonList(listOf({polygon({{0, 0, -1}, {1, 0, 1}, {-1, 0, 1}})}));
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].vertices.size(), 4U);
    for (const Vertex& vertex : kept[0].vertices) EXPECT_GE(vertex.pos.z, 0.0);
}

TEST(ClipPolygonList, AgainstAnEmptyTreeRemovesEverything) {
    const Node empty;
    EXPECT_TRUE(empty.clipPolygonList(listOf({level(1), level(-1), facingDown(level(0))})).empty());
}

TEST(ClipPolygonList, GivesPiecesInTheOrderInWhichTheyFallOut) {
    // What the root lets go leaves before what has to pass another node, whatever stood first in the list.
    const NodePtr node = ground();
    node->back = std::make_unique<Node>();
    node->back->plane = {{0, 0, -1}, 5};
    const PolygonList kept = node->clipPolygonList(listOf({level(-9), level(1), level(-7)}));
    EXPECT_TRUE(sameBits(kept, listOf({level(1), level(-9), level(-7)})));
}

TEST(ClipTree, OfOneNodeIsItsClippedList) {
    Node tree;
    tree.build(polygonsOf(test::triangle({0, 0, -1}, {1, 0, 1}, {-1, 0, 1})));
    const NodePtr other = ground();
    const PolygonList expected = other->clipPolygonList(tree.polygons);
    tree.clipTree(*other);
    EXPECT_FALSE(tree.polygons.empty());
    EXPECT_TRUE(sameBits(tree.polygons, expected));
}

TEST(ClipTree, ClipsEveryNodeByItself) {
    for (const int level : {0, 1, 2}) {
        Node tree;
        tree.build(polygonsOf(test::icosphere(level, {0.3, 0.1, 0.2}, 1)));
        Node other;
        other.build(polygonsOf(test::icosphere(1, {0, 0, 0}, 1)));
        const NodePtr expected = tree.clone();
        for (Node* node : expected->collectNodes(0)) clipNodePolygons(*node, other);
        const NodePtr otherBefore = other.clone();
        tree.clipTree(other);
        EXPECT_TRUE(sameTree(&tree, expected.get()));
        EXPECT_TRUE(sameTree(&other, otherBefore.get())) << "the clipping tree is only read";
    }
}

TEST(ClipTree, NodesOnBothSidesOfTheTaskThresholdGiveTheSame) {
    Node other;
    other.build(polygonsOf(test::icosphere(1, {0, 0, 0}, 1)));
    for (const std::size_t count : {NODE_TASK_THRESHOLD, NODE_TASK_THRESHOLD + 1}) {
        PolygonList list;
        for (std::size_t i = 0; i < count; ++i) list.push_back(level(0, -3 + 6 * static_cast<double>(i) / 1024));
        Node tree;
        tree.build(list);
        ASSERT_EQ(tree.polygons.size(), count);
        tree.clipTree(other);
        EXPECT_TRUE(sameBits(tree.polygons, other.clipPolygonList(list)));
        EXPECT_GT(tree.polygons.size(), 100U);
    }
}

TEST(ClippedTwice, TurnedAroundATreeKeepsItsNodesWithoutPolygonsAndTurnedBackOnlyItsRoot) {
    Node other;
    other.build(polygonsOf(test::icosphere(1, {0, 0, 0}, 1)));
    Node tree;
    tree.build(polygonsOf(test::icosphere(1, {0.3, 0.1, 0.2}, 1)));
    const NodePtr before = tree.clone();
    EXPECT_GT(takeClippedTwice(tree, other, Turn::Around).polygons.size(), 10U);
    const List<Node*> expected = before->collectNodes(0);
    const List<Node*> nodes = tree.collectNodes(0);
    ASSERT_EQ(nodes.size(), expected.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        EXPECT_TRUE(sameBits(nodes[i]->plane, expected[i]->plane));
        EXPECT_EQ(nodes[i]->polygons.capacity(), 0U);
    }

    ASSERT_TRUE(before->front || before->back);
    EXPECT_GT(takeClippedTwice(*before, other, Turn::AndBack).polygons.size(), 10U);
    EXPECT_TRUE(!before->front && !before->back && before->polygons.empty());

    // One child on either side.
    Node both;
    both.build(listOf({level(0), level(5), level(-5)}));
    ASSERT_TRUE(both.front && both.back);
    (void)takeClippedTwice(both, other, Turn::AndBack);
    EXPECT_TRUE(!both.front && !both.back);
}

} // namespace orva::bspcsg

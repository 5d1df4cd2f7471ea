#include "polygons.hpp"

namespace orva::bspcsg {

TEST(Node, MadeNewIsEmpty) {
    const Node node;
    EXPECT_TRUE(node.front == nullptr && node.back == nullptr && node.polygons.empty());
    EXPECT_TRUE(sameBits(node.plane, Plane{}));
}

TEST(Node, CloneOfOneNodeIsEqualAndItsOwn) {
    Node node;
    node.build(listOf({level(2)}));
    const NodePtr copy = node.clone();
    EXPECT_TRUE(sameTree(copy.get(), &node));
    copy->polygons[0].vertices[0].pos.x = 99;
    copy->plane.w = 7;
    EXPECT_TRUE(sameBits(node.polygons, listOf({level(2)})));
    EXPECT_EQ(node.plane.w, 2.0);
}

TEST(Node, CloneOfATreeIsEqual) {
    Node node;
    node.build(polygonsOf(test::icosphere(1, {0, 0, 0}, 1)));
    EXPECT_TRUE(sameTree(node.clone().get(), &node));
}

TEST(Node, CountsOnlyWhatIsAskedFor) {
    Node node;
    node.build(listOf({level(0, 0), level(0, 5)}));
    node.countElements(nullptr, nullptr, nullptr);
    std::uint32_t nodes = 77;
    std::uint32_t polygons = 77;
    std::uint32_t vertices = 77;
    node.countElements(&nodes, &polygons, &vertices);
    EXPECT_EQ(nodes, 1U);
    EXPECT_EQ(polygons, 2U);
    EXPECT_EQ(vertices, 6U);
    node.countElements(nullptr, &polygons, nullptr);
    EXPECT_EQ(polygons, 2U);
}

TEST(Node, ListsItsTreeLevelByLevelFrontBeforeBack) {
    Node root;
    root.front = std::make_unique<Node>();
    root.back = std::make_unique<Node>();
    root.front->back = std::make_unique<Node>();
    root.back->front = std::make_unique<Node>();
    for (const int hint : {0, 1, 50}) {
        const List<Node*> nodes = root.collectNodes(hint);
        ASSERT_EQ(nodes.size(), 5U);
        EXPECT_EQ(nodes[0], &root);
        EXPECT_EQ(nodes[1], root.front.get());
        EXPECT_EQ(nodes[2], root.back.get());
        EXPECT_EQ(nodes[3], root.front->back.get());
        EXPECT_EQ(nodes[4], root.back->front.get());
    }
    EXPECT_EQ(root.collectNodes(0).capacity(), 5U) << "counted first, reserved exactly";
}

TEST(Node, InvertedTwiceIsRestoredBitForBit) {
    Node node;
    node.build(polygonsOf(test::icosphere(1, {0, 0, 0.25}, 1)));
    const NodePtr before = node.clone();
    node.invert();
    EXPECT_FALSE(sameTree(&node, before.get()));
    node.invert();
    EXPECT_TRUE(sameTree(&node, before.get()));
}

TEST(Node, InvertedFlipsPolygonsAndPlaneAndSwapsChildren) {
    Node node;
    node.build(listOf({level(0), level(1)}));
    ASSERT_TRUE(node.front && !node.back);
    node.invert();
    EXPECT_TRUE(node.back && !node.front) << "a lone front child becomes a lone back child";
    EXPECT_TRUE(sameBits(node.plane, {{-0.0, -0.0, -1}, -0.0})) << "zeros change sign, too";
    Polygon turned = level(0);
    flip(turned);
    EXPECT_TRUE(sameBits(node.polygons[0], turned));
}

TEST(Node, CollectsItsPolygonsLevelByLevel) {
    Node root;
    root.front = std::make_unique<Node>();
    root.back = std::make_unique<Node>();
    root.polygons = listOf({level(0, 1)});
    root.front->polygons = listOf({level(1, 2), level(1, 3)});
    root.back->polygons = listOf({level(-1, 4)});
    const PolygonList expected = listOf({level(0, 1), level(1, 2), level(1, 3), level(-1, 4)});
    EXPECT_TRUE(sameBits(root.collectPolygons(0), expected));
    EXPECT_TRUE(sameBits(root.collectPolygons(2), expected)) << "the hint is no limit";
    EXPECT_TRUE(sameBits(root.collectPolygons(0), expected)) << "the tree is unchanged";
    EXPECT_EQ(root.collectPolygons(0).capacity(), 4U) << "counted first, reserved exactly";
}

TEST(Node, GivesItsPolygonsAwayInTheSameOrderAndIsLeftWithItsRoot) {
    Node tree;
    tree.build(listOf({level(0), level(2), level(1), level(-1), level(3), level(-2)}));
    const PolygonList expected = tree.collectPolygons(0);
    ASSERT_TRUE(tree.front && tree.back);
    EXPECT_TRUE(sameBits(tree.takePolygons(), expected));
    EXPECT_TRUE(tree.polygons.empty() && !tree.front && !tree.back);
    EXPECT_EQ(tree.polygons.capacity(), 0U) << "its storage is given back, too";
    EXPECT_EQ(tree.plane.w, 0.0);
}

TEST(Node, CollectsNothingFromAnEmptyTree) {
    const Node node;
    EXPECT_TRUE(node.collectPolygons(0).empty());
}

} // namespace orva::bspcsg

// No walk over a tree may use the call stack for its depth.
#include "polygons.hpp"

#include <pthread.h>

#include <cmath>

namespace orva::bspcsg {

namespace {

constexpr int LEVELS = 100000;

NodePtr chain(NodePtr Node::*child) {
    auto root = std::make_unique<Node>();
    Node* node = root.get();
    for (int i = 1; i < LEVELS; ++i) {
        node->*child = std::make_unique<Node>();
        node = (node->*child).get();
        node->plane = {{0, 0, 1}, static_cast<double>(-i)};
    }
    return root;
}

void expectLevels(const Node& tree, std::uint32_t expected) {
    std::uint32_t nodes = 0;
    tree.countElements(&nodes, nullptr, nullptr);
    EXPECT_EQ(nodes, expected);
}

void walkDeepTrees() {
    for (NodePtr Node::*child : {&Node::back, &Node::front}) {
        NodePtr tree = chain(child);
        expectLevels(*tree, LEVELS);
        EXPECT_EQ(tree->collectNodes(0).size(), static_cast<std::size_t>(LEVELS));
        const NodePtr copy = tree->clone();
        expectLevels(*copy, LEVELS);
        tree->invert();
        expectLevels(*tree, LEVELS);
        EXPECT_TRUE(tree->collectPolygons(0).empty());
        tree->clipTree(*copy);
        (void)copy->clipPolygonList(listOf({level(-2.5), level(0.5)}));
        tree->build(listOf({level(-2.5), level(0.5)}));
    } // both trees are freed here
}

} // namespace

TEST(DeepTree, OfAHundredThousandLevelsIsWalkedAndFreed) {
    walkDeepTrees();
}

TEST(DeepTree, OfAHundredThousandLevelsFitsASmallStack) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024), 0);
    pthread_t thread{};
    const auto body = [](void*) -> void* {
        walkDeepTrees();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, body, nullptr), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

TEST(DeepTree, BuiltFromParallelFacesIsAChain) {
    PolygonList list;
    for (int i = 0; i < 2000; ++i) list.push_back(level(-i));
    Node tree;
    tree.build(std::move(list));
    expectLevels(tree, 2000);
    EXPECT_FALSE(tree.front);
}

} // namespace orva::bspcsg

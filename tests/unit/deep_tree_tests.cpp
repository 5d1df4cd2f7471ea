// No walk over a tree may use the call stack for its depth: trees of a million levels, in a thread with a small stack.
#include "figures.hpp"
#include "polygons.hpp"

#include <pthread.h>

#include <cmath>

namespace orva::bspcsg {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::uint32_t LEVELS = 100000; // their books take several times the memory
#else
constexpr std::uint32_t LEVELS = 1000000;
#endif

// A recursion over a million levels would need more than this for a return address alone.
void inASmallStack(void (*body)()) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024), 0);
    pthread_t thread{};
    const auto run = [](void* call) -> void* {
        reinterpret_cast<void (*)()>(call)();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, reinterpret_cast<void*>(body)), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

NodePtr linkedChain(NodePtr Node::*child) {
    auto root = std::make_unique<Node>();
    Node* node = root.get();
    for (std::uint32_t i = 1; i < LEVELS; ++i) {
        node->*child = std::make_unique<Node>();
        node = (node->*child).get();
        node->plane = {{0, 0, 1}, -static_cast<double>(i)};
    }
    return root;
}

void expectElements(const Node& tree, std::uint32_t nodes, std::uint32_t polygons) {
    std::uint32_t nodeCount = 0;
    std::uint32_t polygonCount = 0;
    tree.countElements(&nodeCount, &polygonCount, nullptr);
    EXPECT_EQ(nodeCount, nodes);
    EXPECT_EQ(polygonCount, polygons);
}

void walkLinkedChains() {
    for (NodePtr Node::*child : {&Node::back, &Node::front}) {
        NodePtr tree = linkedChain(child);
        expectElements(*tree, LEVELS, 0);
        EXPECT_EQ(tree->collectNodes(0).size(), std::size_t{LEVELS});
        const NodePtr copy = tree->clone();
        expectElements(*copy, LEVELS, 0);
        tree->invert();
        expectElements(*tree, LEVELS, 0);
        EXPECT_TRUE(tree->collectPolygons(0).empty());
        tree->clipTree(*copy);
        (void)copy->clipPolygonList(listOf({level(-2.5), level(0.5)}));
        tree->build(listOf({level(-2.5), level(0.5)}));
    } // both trees are freed here
}

// Parallel faces, the top one first: each plane has all that is left behind it.
void buildAndWalk() {
    PolygonList list;
    list.reserve(LEVELS);
    for (std::uint32_t i = 0; i < LEVELS; ++i) list.push_back(level(-static_cast<double>(i)));
    Node tree;
    tree.build(std::move(list));
    expectElements(tree, LEVELS, LEVELS);
    EXPECT_FALSE(tree.front);

    // Against a copy of itself every face passes all planes above its own, lies in that one, faces like it, and falls
    // out in front. Inside out it goes on behind and falls out in front of the next plane; the last one has no next.
    const NodePtr copy = tree.clone();
    expectElements(*copy, LEVELS, LEVELS);
    tree.clipTree(*copy);
    expectElements(tree, LEVELS, LEVELS);
    tree.invert();
    EXPECT_EQ(tree.collectPolygons(0).size(), std::size_t{LEVELS});
    tree.clipTree(*copy);
    expectElements(tree, LEVELS, LEVELS - 1);
}

} // namespace

TEST(DeepTree, LinkedFromAMillionNodesFitsASmallStack) {
    inASmallStack(walkLinkedChains);
    test::figure("depth.linked-levels", LEVELS);
}

TEST(DeepTree, BuiltFromAMillionParallelFacesFitsASmallStack) {
    inASmallStack(buildAndWalk);
    test::figure("depth.built-levels", LEVELS);
}

} // namespace orva::bspcsg

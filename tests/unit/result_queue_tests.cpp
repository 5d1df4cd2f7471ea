#include "boolean/result_queue.hpp"
#include "polygons.hpp"

#include <thread>
#include <vector>

namespace orva::bspcsg {

namespace {

NodePtr numbered(double number) {
    auto node = std::make_unique<Node>();
    node->plane.w = number;
    return node;
}

} // namespace

TEST(ResultQueue, NewIsEmpty) {
    ResultQueue queue;
    EXPECT_EQ(queue.pop(), nullptr);
}

TEST(ResultQueue, GivesTreesBackInTheOrderOfArrival) {
    ResultQueue queue;
    for (int i = 0; i < 3; ++i) queue.push(numbered(i));
    EXPECT_EQ(queue.pop()->plane.w, 0);
    queue.push(numbered(3));
    for (int i = 1; i < 4; ++i) EXPECT_EQ(queue.pop()->plane.w, i);
    EXPECT_EQ(queue.pop(), nullptr);
}

TEST(ResultQueue, FreesWhatWasNeverTaken) {
    ResultQueue queue;
    for (int i = 0; i < 3; ++i) queue.push(numbered(i));
    (void)queue.pop();
} // the leak sanitizer watches

TEST(ResultQueue, OfManyProducersLosesNothingAndKeepsEachOnesOrder) {
    constexpr int PRODUCERS = 4;
    constexpr int EACH = 5000;
    ResultQueue queue;
    std::vector<std::thread> producers;
    for (int p = 0; p < PRODUCERS; ++p) {
        producers.emplace_back([&queue, p] {
            for (int i = 0; i < EACH; ++i) queue.push(numbered(p * EACH + i));
        });
    }
    int taken = 0;
    std::vector<int> next(PRODUCERS, 0);
    while (taken < PRODUCERS * EACH) {
        const NodePtr tree = queue.pop();
        if (tree == nullptr) {
            std::this_thread::yield();
            continue;
        }
        ++taken;
        const int number = static_cast<int>(tree->plane.w);
        EXPECT_EQ(number % EACH, next[static_cast<std::size_t>(number / EACH)]++);
    }
    for (std::thread& producer : producers) producer.join();
    EXPECT_EQ(queue.pop(), nullptr);
}

} // namespace orva::bspcsg

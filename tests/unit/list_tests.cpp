#include "polygons.hpp"

#include <set>
#include <string>

namespace orva::bspcsg {

namespace {

// An allocator that admits to a small limit, to reach it in a test.
template <typename T> struct SmallAllocator : WorkingAllocator<T> {
    using value_type = T;
    template <typename U> struct rebind { using other = SmallAllocator<U>; };
    SmallAllocator() = default;
    template <typename U> SmallAllocator(const SmallAllocator<U>&) noexcept {}
    static constexpr std::size_t max_size() noexcept { return 4; }
};

template <typename Exception, typename Call> std::string textOf(Call call) {
    try {
        call();
    } catch (const Exception& exception) {
        return exception.what();
    }
    return "nothing was thrown";
}

} // namespace

TEST(List, BeyondItsGreatestLengthSaysVectorTooLong) {
    List<int> list;
    EXPECT_EQ(textOf<std::length_error>([&] { list.reserve(list.max_size() + 1); }), "vector too long");
    EXPECT_EQ(textOf<std::length_error>([&] { list.resize(list.max_size() + 1); }), "vector too long");
}

TEST(List, GrowingPastItsGreatestLengthSaysVectorTooLongAndKeepsWhatItHolds) {
    List<int, SmallAllocator<int>> list;
    for (int i = 0; i < 4; ++i) list.push_back(i);
    const int more = 4;
    EXPECT_EQ(textOf<std::length_error>([&] { list.push_back(more); }), "vector too long");
    EXPECT_EQ(textOf<std::length_error>([&] { list.push_back(5); }), "vector too long");
    const List<int, SmallAllocator<int>> other = list;
    EXPECT_EQ(textOf<std::length_error>([&] { list.append(other); }), "vector too long");
    ASSERT_EQ(list.size(), 4U);
    EXPECT_EQ(list.back(), 3);
}

TEST(List, GrowsToItsGreatestLength) {
    List<int, SmallAllocator<int>> two;
    for (int i = 0; i < 2; ++i) two.push_back(i);
    List<int, SmallAllocator<int>> list;
    list.reserve(4);
    list.append(two);
    list.append(two.data(), two.data() + 2);
    ASSERT_EQ(list.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(list[i], static_cast<int>(i % 2));
    EXPECT_EQ(textOf<std::length_error>([&] { list.append(two.data(), two.data() + 1); }), "vector too long");
    list.resize(1);
    list.resize(4);
    EXPECT_EQ(list.size(), 4U);
}

TEST(Queue, GrowingPastItsGreatestLengthSaysDequeTooLong) {
    Queue<int, SmallAllocator<int>> queue;
    for (int i = 0; i < 4; ++i) queue.push(i);
    EXPECT_EQ(textOf<std::length_error>([&] { queue.push(4); }), "deque<T> too long");
    EXPECT_EQ(queue.take(), 0);
}

TEST(Queue, GivesBackInTheOrderOfArrival) {
    Queue<int> queue;
    for (int i = 0; i < 1000; ++i) queue.push(i);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(queue.take(), i);
    EXPECT_TRUE(queue.empty());
}

TEST(WorkingMemory, MoreThanThereIsSaysBadAllocation) {
    List<Polygon> list;
    EXPECT_EQ(textOf<std::bad_alloc>([&] { list.reserve(list.max_size()); }), "bad allocation");
    EXPECT_EQ(textOf<std::bad_alloc>([] { allocateWorking(std::size_t{1} << 62); }), "bad allocation");
    EXPECT_EQ(textOf<std::bad_alloc>([] { allocateNode(std::size_t{1} << 62); }), "bad allocation");
    EXPECT_EQ(textOf<std::bad_alloc>([] { WorkingAllocator<Vertex>().allocate(std::size_t{1} << 60); }),
              "bad allocation");
}

#if !defined(__SANITIZE_ADDRESS__) // which keeps back what was freed, to watch it

TEST(WorkingMemory, GivenBackIsTakenAgain) {
    std::set<void*> blocks;
    for (int i = 0; i < 10000; ++i) {
        void* block = allocateWorking(1000);
        blocks.insert(block);
        freeWorking(block);
    }
    EXPECT_LT(blocks.size(), 1000U);
}

#endif

TEST(Count, OfMoreThanASigned32BitNumberSaysVectorTooLong) {
    EXPECT_EQ(toCount(0x7FFFFFFF), 0x7FFFFFFF);
    EXPECT_EQ(textOf<std::length_error>([] { toCount(0x80000000); }), "vector too long");
}

} // namespace orva::bspcsg

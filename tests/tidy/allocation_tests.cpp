// Every allocation of the process heap refused, one at a time: std::bad_alloc, nothing lost, the output as it was.
//
// In the short form a sample of them; all with ORVA_LONG in the environment.
#include "figures.hpp"
#include "indexed.hpp"
#include "solids.hpp"
#include "tidied.hpp"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <new>

namespace {

// Counted on the thread that asks for it: others take and give back as they like.
thread_local bool isCounting = false;
thread_local std::uint64_t taken = 0;
thread_local std::int64_t live = 0;
thread_local std::uint64_t refused = 0; // the number of the one that is refused; 0 for none

void* take(std::size_t bytes) {
    if (isCounting && ++taken == refused) throw std::bad_alloc();
    void* memory = std::malloc(bytes == 0 ? 1 : bytes);
    if (memory == nullptr) throw std::bad_alloc();
    if (isCounting) ++live;
    return memory;
}

void release(void* memory) noexcept {
    if (isCounting && memory != nullptr) --live;
    std::free(memory);
}

} // namespace

void* operator new(std::size_t bytes) {
    return take(bytes);
}
void* operator new[](std::size_t bytes) {
    return take(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { // std::stable_sort asks so
    try {
        return take(bytes);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    release(memory);
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}

namespace orva::test {

namespace {

// On Windows each DLL has an operator new of its own: what the first library made for a result is counted there, and
// released here.
bool isNothingLost() {
#ifdef _WIN32
    return live <= 0;
#else
    return live == 0;
#endif
}

// `call` changes its argument as a whole or not at all.
void refuseEach(const char* name, const std::function<tidy::Report(tidy::Solid&)>& call, std::uint64_t sample) {
    SCOPED_TRACE(name);
    const tidy::Solid before = indexed(triangle({1, 2, 3}, {4, 5, 6}, {7, 8, 10}));
    tidy::Solid expected;
    call(expected); // also so that what is kept for good is there
    taken = 0;
    isCounting = true;
    refused = 0;
    {
        tidy::Solid output;
        call(output);
    }
    isCounting = false;
    EXPECT_TRUE(isNothingLost()) << live;
    live = 0;
    const std::uint64_t all = taken;
    ASSERT_GT(all, 20U);

    const std::uint64_t step = longForm() ? 1 : std::max<std::uint64_t>(1, all / sample);
    std::uint64_t tried = 0;
    std::uint64_t without = 0;
    for (std::uint64_t k = 1; k <= all; k += (k < 20 ? 1 : step)) {
        tidy::Solid output = before;
        bool isThrown = false;
        live = 0;
        taken = 0;
        refused = k;
        isCounting = true;
        try {
            call(output);
        } catch (const std::bad_alloc&) {
            isThrown = true;
        }
        isCounting = false;
        refused = 0;
        ++tried;
        if (!isThrown) { // a sort that gets no room for a copy does without
            ++without;
            ASSERT_TRUE(sameBits(output, expected)) << "allocation " << k << " of " << all;
            continue;
        }
        ASSERT_TRUE(isNothingLost()) << live << ", allocation " << k << " of " << all;
        ASSERT_TRUE(sameBits(output, before)) << "allocation " << k << " of " << all;
    }
    EXPECT_LE(without, tried / 4);
    tidy::Solid output;
    call(output); // and all is well afterwards
    EXPECT_TRUE(sameBits(output, expected));
    figure("tidy_allocations", tried);
}

} // namespace

TEST(TidyAllocation, IsRefusedToASoupWithAndWithoutOrigins) {
    Random random(1);
    const Mesh mesh = joined(griddedBox({0, 0, 0}, {1, 1, 1}, 3), soup(random, 30));
    tidy::Options options;
    options.gapWidth = 0.05;
    options.merge = tidy::Merge::All;
    std::vector<tidy::Origin> origins = numbered(mesh);
    for (tidy::Origin& origin : origins) origin.face /= 4;
    refuseEach(
        "marked", [&](tidy::Solid& output) { return tidy::tidySoup(output, mesh, origins, options); }, 300);
    refuseEach(
        "unmarked", [&](tidy::Solid& output) { return tidy::tidySoup(output, mesh, {}, options); }, 300);
}

TEST(TidyAllocation, IsRefusedToTheOperations) {
    const std::vector<Mesh> meshes{box({0, 0, 0}, {2, 2, 2}), box({1, 1, 1}, {3, 3, 3}), box({0, 1, 1}, {1, 3, 3})};
    const std::vector<Mesh> cutters{meshes[1], meshes[2]};
    const std::vector<tidy::Solid> solids{indexed(meshes[0]), indexed(meshes[1])};
    refuseEach(
        "union", [&](tidy::Solid& output) { return tidy::unionSolid(output, meshes); }, 100);
    refuseEach(
        "intersection", [&](tidy::Solid& output) { return tidy::intersectSolid(output, solids); }, 100);
    refuseEach(
        "difference", [&](tidy::Solid& output) { return tidy::subtractSolid(output, meshes[0], cutters); }, 100);
    refuseEach(
        "as one union",
        [&](tidy::Solid& output) { return tidy::subtractSolid(output, meshes[0], cutters, tidy::Cutting::AsOneUnion); },
        100);
}

TEST(TidyAllocation, IsRefusedToAResultAsASoup) {
    const tidy::Solid solid = indexed(unitCube());
    taken = 0;
    live = 0;
    refused = 1;
    isCounting = true;
    EXPECT_THROW(tidy::toSoup(solid), std::bad_alloc);
    isCounting = false;
    refused = 0;
    EXPECT_GE(taken, 1U);
}

} // namespace orva::test

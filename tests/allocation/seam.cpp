#include "seam.hpp"

#include "geometry/allocator.hpp"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace orva::test {

namespace {

std::atomic<long> asked = 0;
std::atomic<long> refused = 0;
std::atomic<long> taken = 0;
std::atomic<long> takenAtTheProcessHeap = 0;
std::atomic<bool> armed = false;
Plan plan;

thread_local bool callersThread = false;
thread_local int processHeapCalls = 0;

bool refuseNext() noexcept {
    if (!armed || !(callersThread || plan.otherThreads)) return false;
    const long number = ++asked;
    if (plan.first == 0 || number < plan.first || (number > plan.first && !plan.onwards)) return false;
    ++refused;
    return true;
}

} // namespace

Armed::Armed(const Plan& wanted) {
    plan = wanted;
    asked = 0;
    refused = 0;
    callersThread = true;
    armed = true;
}

void Armed::end() noexcept {
    armed = false;
    callersThread = false;
}

long points() noexcept {
    return asked;
}
long refusals() noexcept {
    return refused;
}
long live() noexcept {
    return taken;
}
long liveAtTheProcessHeap() noexcept {
    return takenAtTheProcessHeap;
}

} // namespace orva::test

namespace orva::bspcsg::seam {

bool refuses() noexcept {
    return test::refuseNext();
}
void workingBlocks(int change) noexcept {
    test::taken += change;
}
void processHeapCalls(int change) noexcept {
    test::processHeapCalls += change;
}

} // namespace orva::bspcsg::seam

// ---- the process heap ----

namespace {

// Stands in front of every block, so that one which the library took is known as such when it comes back from anywhere.
struct alignas(16) Header {
    std::uint64_t ofTheLibrary;
};

void* take(std::size_t bytes) {
    const bool ofTheLibrary = orva::test::processHeapCalls > 0;
    if (ofTheLibrary && orva::test::refuseNext()) throw std::bad_alloc();
    auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + bytes));
    if (header == nullptr) throw std::bad_alloc();
    header->ofTheLibrary = ofTheLibrary ? 1 : 0;
    if (ofTheLibrary) orva::test::takenAtTheProcessHeap = orva::test::taken++;
    return header + 1;
}

void release(void* memory) noexcept {
    if (memory == nullptr) return;
    Header* header = static_cast<Header*>(memory) - 1;
    if (header->ofTheLibrary != 0) --orva::test::taken;
    std::free(header);
}

} // namespace

void* operator new(std::size_t bytes) {
    return take(bytes);
}
void* operator new[](std::size_t bytes) {
    return take(bytes);
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

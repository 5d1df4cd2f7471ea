// The library's working memory out of the process heap, in place of src/geometry/allocator.cpp. There the address
// sanitizer sees every byte of it; in mimalloc's it would see nothing.
#include "memory.hpp"

#include "geometry/allocator.hpp"

#include <atomic>
#include <cstdlib>

namespace orva {

namespace {

std::atomic<std::size_t> taken = 0;
std::atomic<std::size_t> allowed = 0;

} // namespace

namespace fuzz {

void allowWorkingMemory(std::size_t bytes) {
    allowed = bytes;
    taken = 0;
}

} // namespace fuzz

namespace bspcsg {

void* allocateWorking(std::size_t bytes) {
    if ((taken += bytes) > allowed) throw BadAllocation();
    void* memory = std::malloc(bytes == 0 ? 1 : bytes); // NOLINT(cppcoreguidelines-no-malloc)
    if (memory == nullptr) throw BadAllocation();
    return memory;
}

void freeWorking(void* memory) noexcept {
    std::free(memory); // NOLINT(cppcoreguidelines-no-malloc)
}

void* allocateNode(std::size_t bytes) {
    return allocateWorking(bytes);
}

} // namespace bspcsg

} // namespace orva

// Working memory: everything that a call makes and drops again (polygon lists, vertex lists, tree nodes, queues) comes
// from mimalloc, apart from the host's heap. The text of a failure is part of the interface and the same with every
// standard library, hence an exception type of our own.
#pragma once

#include <cstddef>
#include <new>

namespace orva::bspcsg {

/// std::bad_alloc that says "bad allocation" whatever the standard library underneath would say.
class BadAllocation : public std::bad_alloc {
public:
    const char* what() const noexcept override { return "bad allocation"; }
};

// Where a test gets between the library and its memory. In every build but that of tests/allocation there is nothing
// here for the compiler to keep.
namespace seam {

#if defined(ORVA_ALLOCATION_SEAM)
bool refuses() noexcept;                 ///< asked before working memory is taken: true makes that fail
void workingBlocks(int change) noexcept; ///< told of every block taken and given back
/// Told when a call takes memory from the process heap, and when it is over.
void processHeapCalls(int change) noexcept;
#else
constexpr bool refuses() noexcept {
    return false;
}
constexpr void workingBlocks(int) noexcept {}
constexpr void processHeapCalls(int) noexcept {}
#endif

} // namespace seam

/// Memory for lists and queues; throws BadAllocation.
void* allocateWorking(std::size_t bytes);
void freeWorking(void* memory) noexcept;

/// Memory for one tree node: like allocateWorking, but asks the host's new-handler first.
void* allocateNode(std::size_t bytes);

/// Calls `allocate`, which takes memory from the process heap, and gives its std::bad_alloc our text.
template <typename Allocate> auto onProcessHeap(Allocate allocate) {
    const struct Call {
        Call() noexcept { seam::processHeapCalls(+1); }
        ~Call() { seam::processHeapCalls(-1); }
    } call;
    try {
        return allocate();
    } catch (const std::bad_alloc&) {
        throw BadAllocation();
    }
}

/// The standard allocator interface over allocateWorking.
template <typename T> struct WorkingAllocator {
    using value_type = T;

    WorkingAllocator() = default;
    template <typename U> WorkingAllocator(const WorkingAllocator<U>&) noexcept {}

    T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw BadAllocation();
        return static_cast<T*>(allocateWorking(count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t) noexcept { freeWorking(memory); }

    friend bool operator==(const WorkingAllocator&, const WorkingAllocator&) noexcept { return true; }
};

} // namespace orva::bspcsg

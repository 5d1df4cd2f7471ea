#include "capi/heap.hpp"

#include "geometry/allocator.hpp"

namespace orva::bspcsg {

void* allocateRecord(std::size_t bytes) {
    return onProcessHeap([bytes] { return ::operator new(bytes); });
}
void freeRecord(void* memory) noexcept {
    ::operator delete(memory);
}

void* allocateArray(std::size_t bytes) {
    return onProcessHeap([bytes] { return ::operator new[](bytes); });
}
void freeArray(void* memory) noexcept {
    ::operator delete[](memory);
}

} // namespace orva::bspcsg

#include "geometry/allocator.hpp"

#include <mimalloc.h>

namespace orva::bspcsg {

void* allocateWorking(std::size_t bytes) {
    void* memory = seam::refuses() ? nullptr : mi_malloc(bytes);
    if (memory == nullptr) throw BadAllocation();
    seam::workingBlocks(+1);
    return memory;
}

void freeWorking(void* memory) noexcept {
    if (memory != nullptr) seam::workingBlocks(-1);
    mi_free(memory);
}

void* allocateNode(std::size_t bytes) {
    try {
        if (seam::refuses()) throw std::bad_alloc();
        void* memory = mi_new(bytes);
        seam::workingBlocks(+1);
        return memory;
    } catch (const std::bad_alloc&) {
        throw BadAllocation();
    }
}

} // namespace orva::bspcsg

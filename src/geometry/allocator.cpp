#include "geometry/allocator.hpp"

#include <mimalloc.h>

namespace orva::bspcsg {

void* allocateWorking(std::size_t bytes) {
    void* memory = mi_malloc(bytes);
    if (memory == nullptr) throw BadAllocation();
    return memory;
}

void freeWorking(void* memory) noexcept {
    mi_free(memory);
}

void* allocateNode(std::size_t bytes) {
    try {
        return mi_new(bytes);
    } catch (const std::bad_alloc&) {
        throw BadAllocation();
    }
}

} // namespace orva::bspcsg

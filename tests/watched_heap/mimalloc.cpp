#include "mimalloc.h"

#include <cstdlib>
#include <new>

void* mi_malloc(std::size_t bytes) {
    return std::malloc(bytes);
}

// note: not operator new, which the address sanitizer makes end the process where it should throw.
void* mi_new(std::size_t bytes) {
    for (;;) {
        void* memory = std::malloc(bytes);
        if (memory != nullptr) return memory;
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr) throw std::bad_alloc();
        handler();
    }
}

void mi_free(void* memory) {
    std::free(memory);
}

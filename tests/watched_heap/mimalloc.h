// What the library calls of mimalloc, over malloc. Sanitizers and valgrind watch malloc block by block; of a heap inside
// the heap they see nothing but large pieces, in which an overrun, a use after free or a lost list stays unseen.
#pragma once

#include <cstddef>

void* mi_malloc(std::size_t bytes);
void* mi_new(std::size_t bytes);
void mi_free(void* memory);

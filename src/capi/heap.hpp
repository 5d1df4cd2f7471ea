// The process heap, where the records and arrays of the C interface live.
//
// note: the two allocations stand in a file of their own so that no compiler sees, where they are called, that operator
// new never returns null. A host may replace it by one that does; the callers' tests for null are for that host.
#pragma once

#include <cstddef>

namespace orva::bspcsg {

/// One record, through operator new; throws std::bad_alloc ("bad allocation").
void* allocateRecord(std::size_t bytes);
void freeRecord(void* memory) noexcept;

/// An array, through operator new[]; throws std::bad_alloc ("bad allocation").
void* allocateArray(std::size_t bytes);
void freeArray(void* memory) noexcept;

} // namespace orva::bspcsg

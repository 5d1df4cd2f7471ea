// How much working memory the library gets: where coordinates are so large that rounding is coarser than the tolerance,
// a handful of triangles can be cut into pieces without end, by definition. A fuzzer finds such inputs in seconds; here
// they run out of memory early, with the exception that the library promises, and the case counts as passed.
#pragma once

#include <cstddef>

namespace orva::fuzz {

/// Lets the library take that many bytes from now on, in total: what it gives back does not count.
void allowWorkingMemory(std::size_t bytes);

} // namespace orva::fuzz

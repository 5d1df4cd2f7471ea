// Counts the allocations of one call and refuses those that a plan names: working memory through the seam in
// geometry/allocator.hpp, the process heap through an operator new that knows when the library is the one who asks.
#pragma once

namespace orva::test {

/// Which allocations fail. They are numbered from 1 in the order in which they come.
struct Plan {
    long first = 0;           ///< none where 0
    bool onwards = false;     ///< all later ones as well
    bool otherThreads = true; ///< those of the scheduler's threads are numbered and refused, too
};

/// In force from here to `end`, or to the end of its scope.
class Armed {
public:
    explicit Armed(const Plan& plan);
    ~Armed() { end(); }
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
    void end() noexcept;
};

long points() noexcept;   ///< allocations asked for since the last Armed
long refusals() noexcept; ///< how many of them were refused
long live() noexcept;     ///< blocks that the library has taken, on any heap, and that nobody has given back

/// How many there were when the process heap was asked for another, the last time.
long liveAtTheProcessHeap() noexcept;

} // namespace orva::test

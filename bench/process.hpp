// A process of its own for whatever is measured, and what it takes of time and memory.
#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>

namespace orva::bench {

/// The time now, for differences: by the clock, and the time that the process was running.
struct Clocks {
    Clocks();
    double seconds;
    double processor; ///< with one thread the same on a busy machine
};

/// Bytes that the process holds now.
double residentBytes();

/// Bytes that it held at the most. A new process starts with what it has from the old one.
double mostResidentBytes();

void callApart(double limit, void* result, std::size_t size, const std::function<void(void* result)>& work);

/// What `work` gives, called in a new process that is a copy of this one. Throws std::runtime_error with a few words
/// where nothing comes back: what `work` threw, that it crashed, or that it took longer than `limit` seconds.
///
/// The calling process must not have used the task scheduler: its threads are not copied into the new process.
template <typename Result> Result apart(double limit, const std::function<Result()>& work) {
    static_assert(std::is_trivially_copyable_v<Result>, "it comes back through a pipe");
    Result result{};
    callApart(limit, &result, sizeof result, [&work](void* into) { *static_cast<Result*>(into) = work(); });
    return result;
}

} // namespace orva::bench

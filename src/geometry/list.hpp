// The two containers of the library: List, a contiguous sequence, and Queue, first in first out. They are the standard
// ones on working memory; what they add is that outgrowing them fails with one text everywhere, where the standard
// library would name a function of its own.
#pragma once

#include "geometry/allocator.hpp"

#include <cstdint>
#include <deque>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

namespace orva::bspcsg {

[[noreturn]] inline void throwListTooLong() {
    throw std::length_error("vector too long");
}
[[noreturn]] inline void throwQueueTooLong() {
    throw std::length_error("deque<T> too long");
}

/// `size` as the signed 32-bit count that the public interface works with; throws "vector too long" beyond it.
inline std::int32_t toCount(std::uint64_t size) {
    if (size > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) throwListTooLong();
    return static_cast<std::int32_t>(size);
}

template <typename T, typename Allocator = WorkingAllocator<T>> class List : private std::vector<T, Allocator> {
    using Base = std::vector<T, Allocator>;

public:
    using typename Base::const_iterator;
    using typename Base::iterator;
    using typename Base::value_type;

    using Base::Base;
    using Base::operator[];
    using Base::back;
    using Base::begin;
    using Base::capacity;
    using Base::clear;
    using Base::data;
    using Base::empty;
    using Base::end;
    using Base::front;
    using Base::max_size;
    using Base::size;

    void reserve(std::size_t count) {
        if (count > max_size()) throwListTooLong();
        Base::reserve(count);
    }
    void resize(std::size_t count) {
        if (count > max_size()) throwListTooLong();
        Base::resize(count);
    }
    void push_back(const T& value) {
        checkRoomFor(1);
        Base::push_back(value);
    }
    void push_back(T&& value) {
        checkRoomFor(1);
        Base::push_back(std::move(value));
    }
    using Base::pop_back;
    /// Becomes a copy of another list, in the storage it has if that is enough.
    void assign(const List& other) { Base::assign(other.begin(), other.end()); }
    /// Appends copies of all elements of another list, in order.
    void append(const List& other) {
        checkRoomFor(other.size());
        Base::insert(end(), other.begin(), other.end());
    }

    void append(const T* first, const T* last) {
        checkRoomFor(static_cast<std::size_t>(last - first));
        Base::insert(end(), first, last);
    }

private:
    void checkRoomFor(std::size_t count) const {
        if (count > max_size() - size()) throwListTooLong();
    }
};

template <typename T, typename Allocator = WorkingAllocator<T>> class Queue : private std::deque<T, Allocator> {
    using Base = std::deque<T, Allocator>;

public:
    using Base::empty;
    using Base::front;
    using Base::max_size;
    using Base::size;

    void push(T value) {
        if (size() == max_size()) throwQueueTooLong();
        Base::push_back(std::move(value));
    }
    void pop() { Base::pop_front(); }

    /// Takes the front element out of the queue.
    T take() {
        T value = std::move(front());
        pop();
        return value;
    }
};

} // namespace orva::bspcsg

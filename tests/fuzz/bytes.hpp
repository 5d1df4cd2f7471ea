// An input read byte by byte. Behind its end come zeros, so every input is a whole case.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace orva::fuzz {

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : at_(data), left_(size) {}

    bool empty() const { return left_ == 0; }

    std::uint8_t next() {
        if (left_ == 0) return 0;
        --left_;
        return *at_++;
    }

    /// low to high, both ends included, out of one byte.
    int integer(int low, int high) { return low + next() % (high - low + 1); }

    /// Any bits at all.
    double any() {
        std::uint64_t bits = 0;
        for (int i = 0; i < 8; ++i) bits = bits << 8 | next();
        return std::bit_cast<double>(bits);
    }

private:
    const std::uint8_t* at_;
    std::size_t left_;
};

} // namespace orva::fuzz

/// @file
/// Numbers in binary files, in either byte order and at any place.
#ifndef ORVA_PROGRAM_FORMATS_BYTES_HPP
#define ORVA_PROGRAM_FORMATS_BYTES_HPP

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string>
#include <string_view>

namespace orva::program {

enum class ByteOrder { Little, Big };

/// The number at `place`; the caller knows that its bytes are there.
template <typename T> T readNumber(std::string_view bytes, std::size_t place, ByteOrder order = ByteOrder::Little) {
    std::array<char, sizeof(T)> own;
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(place), sizeof(T), own.begin());
    if ((order == ByteOrder::Little) != (std::endian::native == std::endian::little)) {
        std::reverse(own.begin(), own.end());
    }
    return std::bit_cast<T>(own);
}

template <typename T> void appendNumber(std::string& bytes, T value, ByteOrder order) {
    auto own = std::bit_cast<std::array<char, sizeof(T)>>(value);
    if ((order == ByteOrder::Little) != (std::endian::native == std::endian::little)) {
        std::reverse(own.begin(), own.end());
    }
    bytes.append(own.data(), own.size());
}

} // namespace orva::program

#endif

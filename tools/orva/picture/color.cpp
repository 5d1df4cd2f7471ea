#include "picture/color.hpp"

#include <array>

namespace orva::program {

namespace {

// P. Tol's light scheme, for areas: told apart by people of every kind of colour vision.
constexpr std::array<Color, 7> palette{{{0x77, 0xAA, 0xDD},
                                        {0xEE, 0x88, 0x66},
                                        {0xEE, 0xDD, 0x88},
                                        {0x44, 0xBB, 0x99},
                                        {0xFF, 0xAA, 0xBB},
                                        {0xBB, 0xCC, 0x33},
                                        {0x99, 0xDD, 0xFF}}};

int digitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

} // namespace

std::optional<Color> parseColor(std::string_view text) {
    if (text.starts_with('#')) text.remove_prefix(1);
    if (text.size() != 3 && text.size() != 6) return std::nullopt;
    std::array<std::uint8_t, 3> values{};
    const std::size_t digits = text.size() / 3;
    for (std::size_t i = 0; i < 3; ++i) {
        const int high = digitOf(text[i * digits]);
        const int low = digitOf(text[i * digits + digits - 1]);
        if (high < 0 || low < 0) return std::nullopt;
        values[i] = static_cast<std::uint8_t>(16 * high + low);
    }
    return Color{values[0], values[1], values[2]};
}

Color paletteColor(std::size_t mesh) {
    return palette[mesh % palette.size()];
}

} // namespace orva::program

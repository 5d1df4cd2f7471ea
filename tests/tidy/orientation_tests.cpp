// The filter and the exact sums behind it, against whole numbers that no rounding touches.
#include "shapes.hpp"
#include "tidy/orientation.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace orva::tidy {

namespace {

// Of coordinates below 2^53: products of differences have 108 bits, their difference 109.
int exactly(const Vec2& a, const Vec2& b, const Vec2& c) {
    __extension__ using Wide = __int128;
    const auto whole = [](double value) { return static_cast<Wide>(static_cast<std::int64_t>(value)); };
    const Wide left = (whole(a.x) - whole(c.x)) * (whole(b.y) - whole(c.y));
    const Wide right = (whole(a.y) - whole(c.y)) * (whole(b.x) - whole(c.x));
    return left > right ? 1 : left < right ? -1 : 0;
}

Vec2 times(const Vec2& a, double by) {
    return {a.x * by, a.y * by};
}

void expectExact(const Vec2& a, const Vec2& b, const Vec2& c) {
    const int expected = exactly(a, b, c);
    for (const double by : {1.0, 0x1p-30, 0x1p40}) {
        const Vec2 p = times(a, by);
        const Vec2 q = times(b, by);
        const Vec2 r = times(c, by);
        ASSERT_EQ(orientation(p, q, r), expected)
            << a.x << " " << a.y << ", " << b.x << " " << b.y << ", " << c.x << " " << c.y << ", times " << by;
        ASSERT_EQ(orientation(q, r, p), expected);
        ASSERT_EQ(orientation(q, p, r), -expected);
    }
}

} // namespace

TEST(Orientation, OfTheCornersOfASquare) {
    EXPECT_EQ(orientation({0, 0}, {1, 0}, {0, 1}), 1);
    EXPECT_EQ(orientation({0, 0}, {0, 1}, {1, 0}), -1);
    EXPECT_EQ(orientation({0, 0}, {1, 1}, {2, 2}), 0);
    EXPECT_EQ(orientation({3, 4}, {3, 4}, {1, 2}), 0);
}

TEST(Orientation, OfWholeNumbersOfAnySize) {
    test::Random random(1);
    for (int i = 0; i < 3000; ++i) {
        const double reach = std::ldexp(1.0, random.integer(1, 52));
        const auto value = [&] { return std::floor(random.uniform(-reach, reach)); };
        Vec2 p[3];
        for (Vec2& each : p) {
            each.x = value();
            each.y = value();
        }
        expectExact(p[0], p[1], p[2]);
    }
}

// c lies on the line through a and b, or one unit beside it: the difference of the products is 0 or in the last of 105
// bits, where no filter sees it.
TEST(Orientation, OfPointsBesideALineByTheLastBit) {
    test::Random random(2);
    int onLine = 0;
    for (int i = 0; i < 3000; ++i) {
        const auto value = [&](double reach) { return std::floor(random.uniform(-reach, reach)); };
        Vec2 a;
        Vec2 along;
        a.x = value(0x1p50);
        a.y = value(0x1p50);
        along.x = value(0x1p44);
        along.y = value(0x1p44);
        const double far = random.integer(1, 20);
        const double near = random.integer(-20, 20);
        const Vec2 b{a.x + far * along.x, a.y + far * along.y};
        Vec2 c{a.x + near * along.x, a.y + near * along.y};
        if (exactly(a, b, c) == 0) ++onLine;
        expectExact(a, b, c);
        c.x += random.integer(-1, 1);
        c.y += random.integer(-1, 1);
        expectExact(a, b, c);
    }
    EXPECT_EQ(onLine, 3000);
}

// Differences of these are not exact, so only the multiplied-out sum tells.
TEST(Orientation, OfNumbersOfVeryDifferentSize) {
    EXPECT_EQ(orientation({0x1p-60, 0x1p-60}, {1, 1}, {3, 3}), 0);
    EXPECT_EQ(orientation({0x1p-60, 0x1p-61}, {1, 1}, {3, 3}), -orientation({0x1p-61, 0x1p-60}, {1, 1}, {3, 3}));
    EXPECT_NE(orientation({0x1p-60, 0x1p-61}, {1, 1}, {3, 3}), 0);
    const double next = std::nextafter(0.5, 1.0);
    EXPECT_EQ(orientation({0.5, 0.5}, {12, 12}, {24, 24}), 0);
    EXPECT_EQ(orientation({0.5, next}, {12, 12}, {24, 24}), orientation({0, 1}, {12, 12}, {24, 24}));
    EXPECT_EQ(orientation({next, 0.5}, {12, 12}, {24, 24}), orientation({1, 0}, {12, 12}, {24, 24}));
}

} // namespace orva::tidy

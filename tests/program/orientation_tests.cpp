// On which side a point lies, where doubles cannot tell.
#include "measures/orientation.hpp"

#include "samples.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace orva::program {
namespace {

TEST(Orientation, OfAPoint) {
    const Vec3 a{0, 0, 0};
    const Vec3 b{1, 0, 0};
    const Vec3 c{0, 1, 0};
    EXPECT_EQ(orientation(a, b, c, {0.2, 0.2, 1}), 1);
    EXPECT_EQ(orientation(a, b, c, {0.2, 0.2, -1}), -1);
    EXPECT_EQ(orientation(a, b, c, {7, -3, 0}), 0);
    EXPECT_EQ(orientation(a, c, b, {0.2, 0.2, 1}), -1);
}

TEST(Orientation, OfAPointByTheLeastThatADoubleCanTell) {
    // In the plane x + y + z = 1 but for one bit.
    const Vec3 a{1, 0, 0};
    const Vec3 b{0, 1, 0};
    const Vec3 c{0, 0, 1};
    EXPECT_EQ(orientation(a, b, c, {0.25, 0.25, 0.5}), 0);
    EXPECT_EQ(orientation(a, b, c, {0.25, 0.25, std::nextafter(0.5, 1.0)}), 1);
    EXPECT_EQ(orientation(a, b, c, {0.25, 0.25, std::nextafter(0.5, 0.0)}), -1);
    const double least = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(orientation({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.1, 0.1, 1e-80}), 1);
    EXPECT_EQ(orientation({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.1, 0.1, -least}), -1);
}

#ifdef __SIZEOF_INT128__

__extension__ using Wide = __int128;

// Whole numbers times a power of two, so that 128 bits hold the truth; nearly all of these points are in one plane.
TEST(Orientation, AgreesWithWholeNumbers) {
    std::mt19937_64 random(7);
    int zeros = 0;
    for (int round = 0; round < 20000; ++round) {
        const auto number = [&](std::int64_t limit) {
            return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(2 * limit + 1)) - limit;
        };
        std::array<std::array<std::int64_t, 3>, 4> points{};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::int64_t& value : points[i]) value = number(std::int64_t{1} << 30);
        }
        const std::int64_t s = number(3);
        const std::int64_t t = number(3);
        for (std::size_t k = 0; k < 3; ++k) {
            points[3][k] = points[0][k] + s * (points[1][k] - points[0][k]) + t * (points[2][k] - points[0][k]);
        }
        points[3][static_cast<std::size_t>(round % 3)] += number(1);

        std::array<std::array<Wide, 3>, 3> rows{};
        std::array<Vec3, 4> corners{};
        for (std::size_t i = 0; i < 4; ++i) {
            corners[i] = {std::ldexp(static_cast<double>(points[i][0]), -31),
                          std::ldexp(static_cast<double>(points[i][1]), -31),
                          std::ldexp(static_cast<double>(points[i][2]), -31)};
            for (std::size_t k = 0; k < 3 && i > 0; ++k) rows[i - 1][k] = points[i][k] - points[0][k];
        }
        const Wide determinant = rows[0][0] * (rows[1][1] * rows[2][2] - rows[1][2] * rows[2][1]) -
                                 rows[0][1] * (rows[1][0] * rows[2][2] - rows[1][2] * rows[2][0]) +
                                 rows[0][2] * (rows[1][0] * rows[2][1] - rows[1][1] * rows[2][0]);
        const int expected = determinant > 0 ? 1 : determinant < 0 ? -1 : 0;
        zeros += expected == 0 ? 1 : 0;
        ASSERT_EQ(orientation(corners[0], corners[1], corners[2], corners[3]), expected) << round;

        const Wide flat = rows[0][0] * rows[1][1] - rows[0][1] * rows[1][0];
        ASSERT_EQ(orientation(corners[0], corners[1], corners[2], Projection{}), flat > 0 ? 1 : flat < 0 ? -1 : 0);
    }
    EXPECT_GT(zeros, 1000);
    EXPECT_LT(zeros, 19000);
}

#endif

TEST(Orientation, OfThreePointsNearlyOnALine) {
    const Vec3 a{0.5, 0.5, 0};
    const Vec3 b{12, 12, 0};
    const Vec3 c{24, 24, 0};
    EXPECT_EQ(orientation(a, b, c, Projection{}), 0);
    EXPECT_EQ(orientation({0.5, std::nextafter(0.5, 1.0), 0}, b, c, Projection{}), 1);
    EXPECT_EQ(orientation({std::nextafter(0.5, 1.0), 0.5, 0}, b, c, Projection{}), -1);
    EXPECT_EQ(orientation(a, b, {0, 24, 24}, Projection{&Vec3::y, &Vec3::z}), 1);
}

} // namespace
} // namespace orva::program

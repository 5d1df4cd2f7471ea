// Which triangles pass through each other, and which only touch.
#include "measures/crossings.hpp"

#include "samples.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>

namespace orva::program {
namespace {

constexpr double tolerance = 1e-6;

Crossings crossingsOf(const std::vector<Triangle>& triangles) {
    return findCrossings(shareVertices(meshOf(triangles)), std::vector<bool>(triangles.size()), tolerance);
}

// Whether they cross, which must not depend on order and direction.
bool cross(const Triangle& s, const Triangle& t) {
    int counts[2] = {0, 0};
    for (std::size_t i = 0; i < 3; ++i) {
        for (const bool swapped : {false, true}) {
            Triangle turned{s[i], s[(i + 1) % 3], s[(i + 2) % 3]};
            if (swapped) std::swap(turned[0], turned[1]);
            for (const auto& pair : {std::vector{turned, t}, std::vector{t, turned}}) {
                const Crossings found = crossingsOf(pair);
                ++counts[found.pairs + found.shallow];
            }
        }
    }
    EXPECT_TRUE(counts[0] == 0 || counts[1] == 0);
    return counts[1] > 0;
}

const Triangle flat{{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}};

TEST(Crossings, ApartAndThrough) {
    EXPECT_FALSE(cross(flat, {{{0, 0, 1}, {4, 0, 1}, {0, 4, 2}}}));
    EXPECT_TRUE(cross(flat, {{{1, 1, -1}, {1, 1, 1}, {9, 9, 1}}}));
    EXPECT_TRUE(cross(flat, {{{1, 1, -1}, {1, 1, 1}, {0.5, 1.5, 1}}})); // wholly inside the other
    EXPECT_FALSE(cross(flat, {{{3, 3, -1}, {3, 3, 1}, {9, 9, 1}}}));    // through the plane, beside it
    EXPECT_FALSE(cross(flat, {{{3, 3, -1}, {3, 3, 1}, {2, 2.5, 1}}}));
}

TEST(Crossings, TouchesAreNone) {
    EXPECT_FALSE(cross(flat, {{{1, 1, 0}, {1, 1, 1}, {2, 2, 1}}}));    // a corner on a face
    EXPECT_FALSE(cross(flat, {{{1, 0, 0}, {1, 0, 1}, {2, -1, 0.5}}})); // on an edge
    EXPECT_FALSE(cross(flat, {{{1, 1, 0}, {2, 1, 0}, {1, 1, 1}}}));    // an edge on a face
    EXPECT_FALSE(cross(flat, {{{1, 0, 0}, {3, 0, 0}, {1, 0, 1}}}));    // a piece of an edge, as booleans leave it
    EXPECT_FALSE(cross(flat, {{{2, 2, -1}, {2, 2, 1}, {5, 5, 0}}}));   // two edges
}

TEST(Crossings, EdgeOnAFaceWithTrianglesOnBothSidesOfIt) {
    const Triangle above{{{1, 1, 0}, {2, 1, 0}, {1, 1, 1}}};
    const Triangle below{{{2, 1, 0}, {1, 1, 0}, {1, 1, -1}}};
    EXPECT_EQ(crossingsOf({flat, above, below}).pairs, 1U);
    EXPECT_EQ(crossingsOf({below, flat, above}).pairs, 1U);
    EXPECT_EQ(crossingsOf({flat, above, above}).pairs, 1U); // those two, which lie on each other
    const Triangle shallow{{{2, 1, 0}, {1, 1, 0}, {1, 1, -1e-7}}};
    EXPECT_EQ(crossingsOf({flat, above, shallow}).pairs, 0U);
    EXPECT_EQ(crossingsOf({flat, above, shallow}).shallow, 1U);
}

TEST(Crossings, InOnePlane) {
    EXPECT_TRUE(cross(flat, {{{1, 1, 0}, {9, 1, 0}, {1, 9, 0}}}));
    EXPECT_TRUE(cross(flat, {{{1, 1, 0}, {2, 1, 0}, {1, 2, 0}}}));    // inside
    EXPECT_FALSE(cross(flat, {{{5, 0, 0}, {9, 0, 0}, {5, 4, 0}}}));   // beside
    EXPECT_FALSE(cross(flat, {{{4, 0, 0}, {4, 4, 0}, {0, 4, 0}}}));   // along an edge
    EXPECT_FALSE(cross(flat, {{{1, 0, 0}, {3, 0, 0}, {2, -4, 0}}}));  // along a part of one
    EXPECT_FALSE(cross(flat, {{{2, 0, 0}, {3, -4, 0}, {1, -4, 0}}})); // a corner at an edge
}

TEST(Crossings, OfNeighboursAtAnEdge) {
    EXPECT_FALSE(cross(flat, {{{0, 0, 0}, {4, 0, 0}, {0, 4, 1}}}));
    EXPECT_FALSE(cross(flat, {{{0, 0, 0}, {4, 0, 0}, {0, -4, 0}}}));
    EXPECT_TRUE(cross(flat, {{{0, 0, 0}, {4, 0, 0}, {3, 9, 0}}})); // folded back
}

TEST(Crossings, OfNeighboursAtACorner) {
    EXPECT_FALSE(cross(flat, {{{0, 0, 0}, {1, 1, 1}, {2, 1, 1}}}));
    EXPECT_FALSE(cross(flat, {{{0, 0, 0}, {-1, -1, 1}, {-1, -1, -1}}}));
    EXPECT_TRUE(cross(flat, {{{0, 0, 0}, {1, 1, 1}, {1, 1, -1}}})); // its opposite edge passes through
    EXPECT_TRUE(cross(flat, {{{0, 0, 0}, {9, 9, 1}, {9, 9, -1}}})); // that of the other one does
    EXPECT_TRUE(cross(flat, {{{0, 0, 0}, {1, 9, 0}, {9, 1, 0}}}));  // in one plane
    EXPECT_FALSE(cross(flat, {{{0, 0, 0}, {-1, 9, 0}, {-9, 1, 0}}}));
    EXPECT_FALSE(cross(flat, {{{0, 0, 0}, {1, 1, 0}, {1, 1, 1}}})); // an edge on the face
}

TEST(Crossings, TrianglesWithoutAreaAreLeftOut) {
    EXPECT_FALSE(cross(flat, {{{1, 1, -1}, {1, 1, 1}, {1, 1, 0}}}));
    EXPECT_FALSE(cross(flat, {{{1, 1, -1}, {1, 1, 1}, {1, 1, 1}}}));
    EXPECT_EQ(findCrossings(shareVertices(meshOf({flat, flat})), {false, true}, tolerance).pairs, 0U);
    EXPECT_EQ(findCrossings({}, {}, tolerance).pairs, 0U);
}

TEST(Crossings, Depth) {
    const auto box = boxTriangles({0, 0, 0}, {2, 2, 2});
    const auto with = [&box](double depth) {
        std::vector<Triangle> both = box;
        for (const Triangle& triangle : boxTriangles({2 - depth, 0.5, 0.75}, {4, 1.5, 1.25})) both.push_back(triangle);
        return crossingsOf(both);
    };
    EXPECT_EQ(with(-1e-9).pairs + with(-1e-9).shallow, 0U);
    EXPECT_EQ(with(1e-9).pairs, 0U);
    EXPECT_GT(with(1e-9).shallow, 0U);
    EXPECT_GT(with(1e-5).pairs, 0U);
    EXPECT_NEAR(with(1e-5).place.x, 2.0, 1e-5);
    // In one plane it is the width of what they have in common.
    EXPECT_EQ(crossingsOf({flat, {{{0, 1e-7, 0}, {4, 1e-7, 0}, {2, -4, 0}}}}).pairs, 0U);
    EXPECT_EQ(crossingsOf({flat, {{{0, 1e-5, 0}, {4, 1e-5, 0}, {2, -4, 0}}}}).pairs, 1U);
}

TEST(Crossings, AnySizeOfNumbers) {
    for (const double scale : {1e-290, 1e-5, 1e5, 1e290}) {
        const auto scaled = [scale](Triangle triangle) {
            for (Vec3& v : triangle) v = {scale * v.x, scale * v.y, scale * v.z};
            return triangle;
        };
        const Triangle through{{{1, 1, -1}, {1, 1, 1}, {9, 9, 1}}};
        const Crossings found = crossingsOf({scaled(flat), scaled(through)});
        EXPECT_EQ(found.pairs + found.shallow, 1U) << scale;
        EXPECT_EQ(found.pairs, scale > tolerance ? 1U : 0U) << scale;
    }
}

// ---- against another way to find out, in whole numbers ----

using Whole = std::array<std::int64_t, 3>;

Whole operator-(const Whole& a, const Whole& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Whole times(const Whole& a, const Whole& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
std::int64_t times1(const Whole& a, const Whole& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

struct Fraction {
    std::int64_t over;
    std::int64_t under; // above 0
    bool operator<(const Fraction& other) const { return over * other.under < other.over * under; }
};

// Where a triangle's sides pass through the plane, as places along a direction: none if it does not have corners on
// both sides.
std::vector<Fraction> passages(const std::array<Whole, 3>& triangle, const Whole& normal, const Whole& point,
                               const Whole& direction) {
    std::array<std::int64_t, 3> heights{};
    for (std::size_t k = 0; k < 3; ++k) heights[k] = times1(triangle[k] - point, normal);
    std::vector<Fraction> found;
    const bool both =
        *std::max_element(heights.begin(), heights.end()) > 0 && *std::min_element(heights.begin(), heights.end()) < 0;
    for (std::size_t k = 0; k < 3 && both; ++k) {
        const std::size_t next = (k + 1) % 3;
        if (heights[k] == 0) found.push_back({times1(triangle[k], direction), 1});
        if (heights[k] * heights[next] >= 0) continue;
        const std::int64_t under = std::abs(heights[k]) + std::abs(heights[next]);
        found.push_back({std::abs(heights[next]) * times1(triangle[k], direction) +
                             std::abs(heights[k]) * times1(triangle[next], direction),
                         under});
    }
    return found;
}

// Not for triangles in one plane, which give none.
bool crossInWholeNumbers(const std::array<Whole, 3>& s, const std::array<Whole, 3>& t) {
    const Whole normalS = times(s[1] - s[0], s[2] - s[0]);
    const Whole normalT = times(t[1] - t[0], t[2] - t[0]);
    const Whole direction = times(normalS, normalT);
    auto ofS = passages(s, normalT, t[0], direction);
    auto ofT = passages(t, normalS, s[0], direction);
    if (ofS.size() != 2 || ofT.size() != 2) return false;
    if (ofS[1] < ofS[0]) std::swap(ofS[0], ofS[1]);
    if (ofT[1] < ofT[0]) std::swap(ofT[0], ofT[1]);
    return ofS[0] < ofT[1] && ofT[0] < ofS[1];
}

TEST(Crossings, AgreeWithWholeNumbers) {
    std::mt19937 random(3);
    std::array<int, 2> counts{};
    for (int round = 0; round < 60000; ++round) {
        std::array<std::array<Whole, 3>, 2> whole{};
        std::vector<Triangle> triangles(2);
        for (std::size_t i = 0; i < 2; ++i) {
            for (std::size_t k = 0; k < 3; ++k) {
                for (std::int64_t& value : whole[i][k]) value = static_cast<std::int64_t>(random() % 5);
                const Whole& v = whole[i][k];
                triangles[i][k] = {static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2])};
            }
        }
        const Whole normalS = times(whole[0][1] - whole[0][0], whole[0][2] - whole[0][0]);
        const Whole normalT = times(whole[1][1] - whole[1][0], whole[1][2] - whole[1][0]);
        const bool parallel = times(normalS, normalT) == Whole{};
        if (parallel) continue; // and those without area
        const bool expected = crossInWholeNumbers(whole[0], whole[1]);
        ++counts[expected ? 1 : 0];
        const Crossings found = crossingsOf(triangles);
        ASSERT_EQ(found.pairs + found.shallow, expected ? 1U : 0U) << round;
    }
    EXPECT_GT(counts[0], 10000);
    EXPECT_GT(counts[1], 5000);
}

} // namespace
} // namespace orva::program

// From which distance on a box decides for its polygon: beyond the margin that bsp/sift.hpp derives, and not much
// later.
#include "bsp/sift.hpp"
#include "shapes.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orva::bspcsg {

namespace {

constexpr HierarchyThresholds NEVER{0xFFFFFFFFU, 0};

Polygon triangle(const Vec3& a, const Vec3& b, const Vec3& c) {
    return {{Vertex{a, {}, {}}, Vertex{b, {}, {}}, Vertex{c, {}, {}}}, planeFromPoints(a, b, c)};
}

// Of how many polygons of a list the corners are asked.
std::uint64_t asked(const PolygonList& list, const Plane& plane) {
    Sifter sifter(list, NEVER);
    const Sifter::Part all = sifter.start();
    const std::uint64_t before = pathCounts.exactSides;
    (void)sifter.divide(plane, all, {});
    return pathCounts.exactSides - before;
}

struct Box {
    Vec3 middle;
    Vec3 half;
};

Box boxOf(const Polygon& polygon) {
    Vec3 low = polygon.vertices[0].pos;
    Vec3 high = low;
    for (const Vertex& vertex : polygon.vertices) {
        const Vec3& p = vertex.pos;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return {{(low.x + high.x) / 2, (low.y + high.y) / 2, (low.z + high.z) / 2},
            {(high.x - low.x) / 2, (high.y - low.y) / 2, (high.z - low.z) / 2}};
}

double greatest(const Vec3& a) {
    return std::max({std::abs(a.x), std::abs(a.y), std::abs(a.z)});
}

Vec3 anyDirection(test::Random& random) {
    return unit({random.uniform(-1, 1), random.uniform(-1, 1), random.uniform(-1, 1)});
}

} // namespace

TEST(Paths, ABoxDecidesFromItsMarginOn) {
    constexpr std::uint64_t SEED = 12;
    std::cout << "seed " << SEED << "\n";
    test::Random random(SEED);
    for (const double size : {0.001, 1.0, 1000.0}) {
        for (const double place :
             {0.0, 1e6, -1e10}) { // where the rounding of the corners themselves is nothing, or most
            for (int i = 0; i < 40; ++i) {
                SCOPED_TRACE(testing::Message() << "case " << i << " of size " << size << " at " << place);
                const auto corner = [&] {
                    return Vec3{place + random.uniform(-size, size), random.uniform(-size, size),
                                random.uniform(-size, size)};
                };
                const Polygon each = triangle(corner(), corner(), corner());
                const Vec3 origin = each.vertices[0].pos; // what the bounds are relative to
                const Box box = boxOf(each);
                const Vec3 middle = box.middle - origin;
                const double reach = std::max({std::abs(middle.x) + box.half.x, std::abs(middle.y) + box.half.y,
                                               std::abs(middle.z) + box.half.z});
                const Vec3 n = anyDirection(random);
                const double extent =
                    std::abs(n.x) * box.half.x + std::abs(n.y) * box.half.y + std::abs(n.z) * box.half.z;
                // The plane goes off to one side of the box until the corners are no longer asked.
                const double side = random.integer(0, 1) == 0 ? 1 : -1;
                double within = dot(n, box.middle);
                double beyond = within - side * (10 * size + 0.1);
                const PolygonList list{each};
                ASSERT_EQ(asked(list, {n, within}), 1U);
                ASSERT_EQ(asked(list, {n, beyond}), 0U);
                for (int step = 0; step < 50; ++step) {
                    const double w = (within + beyond) / 2;
                    (asked(list, {n, w}) != 0 ? within : beyond) = w;
                }
                const double height = dot(n, origin) - within;
                const double margin = EPSILON + 0x1p-16 * (reach + std::abs(height)) +
                                      1e-14 * (greatest(origin) + reach + std::abs(within));
                EXPECT_NEAR(std::abs(dot(n, middle) + height) - extent, margin,
                            0.05 * margin + 1e-15 * std::abs(place));
            }
        }
    }
}

TEST(Paths, OnlyPlanesWithANormalOfAboutUnitLengthAndWithinReachAreHeldAgainstBoxes) {
    const PolygonList list{triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0})};
    for (const auto& [length, count] :
         {std::pair{0.9, 1U}, {0.996, 0U}, {1.0, 0U}, {1.004, 0U}, {1.1, 1U}, {0.0, 1U}}) {
        EXPECT_EQ(asked(list, {{0, 0, length}, 5}), count) << length;
        EXPECT_EQ(asked(list, {{-length, 0, 0}, 5}), count) << length;
    }
    for (const auto& [w, count] : {std::pair{9e29, 0U}, {1e30, 1U}, {1e31, 1U}}) {
        EXPECT_EQ(asked(list, {{0, 0, 1}, w}), count) << w;
        EXPECT_EQ(asked(list, {{0, 0, 1}, -w}), count) << -w;
    }
}

TEST(Paths, ACornerOutOfReachSpoilsNoOtherBox) {
    for (const double far : {1e30, -1e30, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        for (double Vec3::*const component : {&Vec3::x, &Vec3::y, &Vec3::z}) {
            Polygon spoilt = triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
            for (Vertex& vertex : spoilt.vertices) vertex.pos.*component = far;
            const Polygon fine = triangle({0, 0, 1}, {1, 0, 2}, {0, 1, 1});
            EXPECT_EQ(asked({spoilt, fine, fine}, {{0, 0, 1}, -3}), 1U) << far;
            EXPECT_EQ(asked({fine, spoilt, fine}, {{0, 0, 1}, -3}), 1U) << far;
        }
    }
}

TEST(Paths, AListBecomesAHierarchyAtExactlyItsThresholds) {
    constexpr HierarchyThresholds thresholds{5, 3};
    for (const auto& [polygons, hierarchies] : {std::pair{4U, 0U}, {5U, 2U}, {6U, 2U}}) {
        PolygonList list;
        for (std::uint32_t i = 0; i < polygons; ++i) list.push_back(triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}));
        Sifter sifter(list, thresholds);
        Sifter::Part part = sifter.start();
        const std::uint64_t before = pathCounts.hierarchyDivisions;
        for (int plane = 0; plane < 5; ++plane) part = sifter.divide({{0, 0, 1}, -5}, part, {}).front; // all in front
        EXPECT_EQ(pathCounts.hierarchyDivisions - before, hierarchies) << polygons << " polygons";
    }
}

} // namespace orva::bspcsg

// Polygons with holes into triangles: as many as there have to be, that add up to the polygon, all the right way round.
#include "shapes.hpp"
#include "tidy/ears.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace orva::tidy {

namespace {

using Ring = std::vector<Vec2>;

double twiceArea(const Vec2& a, const Vec2& b, const Vec2& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double twiceArea(const Ring& ring) {
    double sum = 0;
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) sum += twiceArea(ring[0], ring[i], ring[i + 1]);
    return sum;
}

class Ears : public testing::Test {
protected:
    void add(const Ring& ring) {
        for (const Vec2& at : ring) {
            const auto [found, isNew] = points.try_emplace({at.x, at.y}, static_cast<std::uint32_t>(points.size()));
            cutter.addCorner(at, found->second, corners, corners);
            ++corners;
        }
        cutter.endLoop();
        area += twiceArea(ring);
        ++loops;
    }

    // Every side across from what it should be: each of the loops' sides once, each wire twice.
    void expectSidesAddUp() {
        std::map<std::uint32_t, int> sides;
        std::map<std::uint32_t, int> wires;
        for (const EarCutter::Ear& ear : cutter.ears) {
            for (const Across& across : ear.across) ++(across.isWire ? wires : sides)[across.number];
        }
        EXPECT_EQ(sides.size(), corners);
        for (const auto& [side, times] : sides) EXPECT_EQ(times, 1) << "side " << side;
        for (const auto& [wire, times] : wires) EXPECT_EQ(times, 2) << "wire " << wire;
        EXPECT_LE(wires.size(), cutter.wires);
    }

    // For an outline with holes that do not touch.
    void expectDivided() {
        cutter.cut();
        EXPECT_EQ(cutter.forced, 0U);
        EXPECT_EQ(cutter.ears.size(), corners + 2 * (loops - 1) - 2);
        expectSidesAddUp();
        double sum = 0;
        for (const EarCutter::Ear& ear : cutter.ears) {
            const Vec2& a = cutter.nodes[ear.node[0]].at;
            const Vec2& b = cutter.nodes[ear.node[1]].at;
            const Vec2& c = cutter.nodes[ear.node[2]].at;
            EXPECT_GT(orientation(a, b, c), 0);
            sum += twiceArea(a, b, c);
        }
        EXPECT_NEAR(sum, area, 1e-9 * std::fabs(area));
    }

    EarCutter cutter;
    std::map<std::pair<double, double>, std::uint32_t> points;
    std::uint32_t corners = 0;
    std::size_t loops = 0;
    double area = 0;
};

Ring square(double x, double y, double size) {
    return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

Ring reversed(Ring ring) {
    return {ring.rbegin(), ring.rend()};
}

// A star around a centre: corners in directions that go all around, at random distances. Directions come from the
// corners of a square, so that no library's sine is asked.
Ring star(test::Random& random, const Vec2& centre, double low, double high, int count) {
    Ring ring;
    for (int i = 0; i < count; ++i) {
        const double turn = 4.0 * i / count;
        const double t = turn - std::floor(turn);
        const Vec2 way = turn < 1   ? Vec2{1 - t, t}
                         : turn < 2 ? Vec2{-t, 1 - t}
                         : turn < 3 ? Vec2{t - 1, -t}
                                    : Vec2{t, t - 1};
        const double distance = random.uniform(low, high);
        ring.push_back({centre.x + distance * way.x, centre.y + distance * way.y});
    }
    return ring;
}

} // namespace

TEST_F(Ears, OfATriangleAreItself) {
    add({{0, 0}, {1, 0}, {0, 1}});
    expectDivided();
}

TEST_F(Ears, OfASquareWithASquareHole) {
    add(square(0, 0, 3));
    add(reversed(square(1, 1, 1)));
    expectDivided();
}

TEST_F(Ears, OfManyHolesInRowsWhoseCornersAreOnLines) {
    add(square(0, 0, 20));
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 6; ++j) add(reversed(square(1 + 3 * i, 1 + 3 * j, 2)));
    }
    expectDivided();
}

TEST_F(Ears, OfAnOutlineWithPointsInTheMiddleOfItsSides) {
    add({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 1}, {3, 3}, {2, 3}, {0, 3}, {0, 2}, {0, 1}});
    expectDivided();
}

TEST_F(Ears, OfACombWithManyTeeth) {
    Ring comb{{200, 0}, {200, 5}};
    for (int i = 99; i >= 0; --i) {
        comb.push_back({2.0 * i + 1, 1});
        comb.push_back({2.0 * i, 5});
    }
    comb.push_back({-1, 0});
    add(comb);
    expectDivided();
}

TEST_F(Ears, OfRandomStarsWithHoles) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        cutter.clear();
        points.clear();
        corners = 0;
        loops = 0;
        area = 0;
        const int count = 4 * random.integer(1, 60);
        const Ring outline = star(random, {0, 0}, 10, 30, count);
        add(outline);
        // Within 10 / sqrt(2) of the centre there is nothing of the outline: room for four stars beside each other.
        const int holes = random.integer(0, 4);
        for (int i = 0; i < holes; ++i) {
            const Vec2 centre{i % 2 == 0 ? -2.0 : 2.0, i < 2 ? -2.0 : 2.0};
            const int corners2 = 4 * random.integer(1, 20);
            add(reversed(star(random, centre, 0.5, 1.9, corners2)));
        }
        expectDivided();
    }
}

TEST_F(Ears, OfAnIslandInAHole) {
    add(square(0, 0, 9));
    add(reversed(square(1, 1, 7)));
    add(square(2, 2, 5));
    add(reversed(square(3, 3, 3)));
    cutter.cut();
    EXPECT_EQ(cutter.forced, 0U);
    EXPECT_EQ(cutter.ears.size(), 16U);
    expectSidesAddUp();
}

TEST_F(Ears, OfAHoleThatTouchesTheOutlineInACorner) {
    add(square(0, 0, 4));
    add({{0, 0}, {1, 2}, {2, 1}});
    cutter.cut();
    EXPECT_EQ(cutter.forced, 0U);
    expectSidesAddUp();
}

TEST_F(Ears, OfTwoHolesThatTouchInACorner) {
    add(square(0, 0, 9));
    add(reversed(square(1, 1, 3)));
    add(reversed(square(4, 4, 3)));
    cutter.cut();
    EXPECT_EQ(cutter.forced, 0U);
    expectSidesAddUp();
    double sum = 0;
    for (const EarCutter::Ear& ear : cutter.ears) {
        sum += twiceArea(cutter.nodes[ear.node[0]].at, cutter.nodes[ear.node[1]].at, cutter.nodes[ear.node[2]].at);
    }
    EXPECT_DOUBLE_EQ(sum, 2 * (81.0 - 18.0));
}

// note: what crosses itself has no division. The sides still add up, and that is all there is to ask for.
TEST_F(Ears, OfAnOutlineThatCrossesItselfAreForcedAndAddUp) {
    add({{0, 0}, {4, 4}, {4, 0}, {0, 4}, {-1, 2}});
    cutter.cut();
    EXPECT_GT(cutter.forced, 0U);
    EXPECT_EQ(cutter.ears.size(), 3U);
    expectSidesAddUp();
}

TEST_F(Ears, OfAnOutlineWithoutAreaAreForcedAndAddUp) {
    add({{0, 0}, {1, 0}, {2, 0}, {3, 0}});
    cutter.cut();
    EXPECT_EQ(cutter.forced, 2U);
    expectSidesAddUp();
}

TEST_F(Ears, OfRandomLoopsThatCrossEachOtherAddUp) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        cutter.clear();
        points.clear();
        corners = 0;
        for (int more = random.integer(1, 4); more > 0; --more) {
            Ring ring;
            for (int count = random.integer(3, 9); count > 0; --count) {
                Vec2 at;
                at.x = random.integer(0, 4);
                at.y = random.integer(0, 4);
                ring.push_back(at);
            }
            add(ring);
        }
        cutter.cut();
        expectSidesAddUp();
    }
}

} // namespace orva::tidy

// Whole walks of divisions, held against the plain way: every list divided polygon by polygon with splitPolygon.
#include "bsp/sift.hpp"
#include "polygons.hpp"

#include <cmath>
#include <limits>

#ifndef ORVA_TEST_PART
#define ORVA_TEST_PART 1 // one seed of so many where every step is watched (tests/sanitize)
#endif

namespace orva::bspcsg {

namespace {

constexpr HierarchyThresholds ALWAYS{1, 0};
constexpr HierarchyThresholds NEVER{0xFFFFFFFFU, 0};

double wildNumber(test::Random& random) {
    static constexpr double wild[]{NaN,
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   1e308,
                                   -1e200,
                                   1e39,
                                   5e-324,
                                   0.0,
                                   -0.0};
    return wild[random.integer(0, 8)];
}

// A patch of a sphere, a soup or a sheet, with something wild in it now and then.
PolygonList randomList(test::Random& random) {
    PolygonList list;
    switch (random.integer(0, 3)) {
    case 0:
        list = polygonsOf(test::icosphere(random.integer(0, 2), {0, 0, 0}, 1));
        break;
    case 1:
        list = polygonsOf(test::soup(random, random.integer(1, 200)));
        break;
    case 2:
        list = polygonsOf(test::griddedBox({-1, -1, -1}, {1, 1, 1}, random.integer(1, 5)));
        break;
    default:
        list = polygonsOf(test::scaled(test::soup(random, random.integer(1, 120)), 1e6));
    }
    if (random.integer(0, 2) == 0) {
        for (int i = 0; i < 3; ++i) {
            Polygon& polygon = list[static_cast<std::size_t>(random.integer(0, static_cast<int>(list.size()) - 1))];
            switch (random.integer(0, 4)) {
            case 0:
                polygon.vertices[1].pos.y = wildNumber(random);
                break;
            case 1:
                polygon.plane.normal.x = wildNumber(random);
                break;
            case 2:
                polygon.vertices.clear();
                break;
            case 3:
                polygon.plane = {{3, 4, 5}, 6};
                break;
            default:
                polygon.vertices[2] = polygon.vertices[0];
            }
        }
    }
    return list;
}

Plane randomPlane(test::Random& random, const PolygonList& list) {
    if (random.integer(0, 1) == 0) { // of one of the polygons: much lies in it or touches it
        Plane plane = list[static_cast<std::size_t>(random.integer(0, static_cast<int>(list.size()) - 1))].plane;
        if (random.integer(0, 3) == 0) plane.w += random.integer(-2, 2) * 1e-6;
        return random.integer(0, 3) == 0 ? flipped(plane) : plane;
    }
    Plane plane{{random.uniform(-1, 1), random.uniform(-1, 1), random.uniform(-1, 1)}, 0};
    if (random.integer(0, 9) != 0) plane.normal = unit(plane.normal);
    plane.w = random.uniform(-0.5, 0.5);
    if (random.integer(0, 19) == 0) plane.normal.z = wildNumber(random);
    if (random.integer(0, 19) == 0) plane.w = wildNumber(random);
    return plane;
}

struct PlainParts {
    PolygonList kept;
    PolygonList front;
    PolygonList back;
};

PlainParts dividePlainly(const Plane& plane, const PolygonList& list, Sifter::Rules rules) {
    PlainParts parts;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i == 0 && rules.keepFirst) {
            parts.kept.push_back(list[i]);
        } else if (rules.keepCoplanar) {
            splitPolygon(plane, list[i], parts.kept, parts.kept, parts.front, parts.back);
        } else {
            splitPolygon(plane, list[i], parts.front, parts.back, parts.front, parts.back);
        }
    }
    if (rules.dropBack) parts.back.clear();
    return parts;
}

void compare(std::uint64_t seed, HierarchyThresholds thresholds) {
    SCOPED_TRACE(testing::Message() << "seed " << seed << ", hierarchies from " << thresholds.polygons
                                    << " polygons and " << thresholds.planes << " planes");
    test::Random random(seed);
    const PolygonList list = randomList(random);
    Sifter sifter(list, thresholds);
    struct Open {
        Sifter::Part part;
        PolygonList plain;
        int level;
    };
    std::vector<Open> open{{sifter.start(), list, 0}};
    const int levels = random.integer(1, 9);
    while (!open.empty()) {
        const Open top = open.back();
        open.pop_back();
        ASSERT_TRUE(sameBits(sifter.first(top.part), top.plain[0]));
        if (top.level == levels) {
            PolygonList left;
            sifter.takeAll(top.part, [&](const Slot& slot) { left.push_back(sifter.polygonAt(slot.polygon)); });
            ASSERT_TRUE(sameBits(left, top.plain));
            continue;
        }
        const Plane plane = randomPlane(random, list);
        const Sifter::Rules rules{random.integer(0, 1) == 0, random.integer(0, 1) == 0, random.integer(0, 7) == 0};
        const Sifter::Parts divided = sifter.divide(plane, top.part, rules);
        PolygonList kept;
        sifter.forEachKept([&kept](const Polygon& polygon) { kept.push_back(polygon); });
        const PlainParts expected = dividePlainly(plane, top.plain, rules);
        ASSERT_EQ(sifter.keptCount(), expected.kept.size());
        ASSERT_TRUE(sameBits(kept, expected.kept));
        ASSERT_EQ(divided.front.count, expected.front.size());
        ASSERT_EQ(divided.back.count, expected.back.size());
        // The front part lies on top and goes first.
        if (divided.back.count > 0) open.push_back({divided.back, expected.back, top.level + 1});
        if (divided.front.count > 0) open.push_back({divided.front, expected.front, top.level + 1});
    }
}

// How often what the sifter calls certain was seen to be so.
int checkCertain(std::uint64_t seed, HierarchyThresholds thresholds) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    test::Random random(seed);
    const PolygonList list = randomList(random);
    Sifter sifter(list, thresholds);
    const int count = random.integer(1, 30);
    std::vector<Plane> planes;
    std::vector<bool> inFront;
    Sifter::Part part = sifter.start();
    for (int i = 0; i < count && part.count > 0; ++i) {
        planes.push_back(randomPlane(random, list));
        const Sifter::Parts parts = sifter.divide(planes.back(), part, {});
        inFront.push_back(random.integer(0, 1) == 0 ? parts.front.count > 0 : parts.back.count == 0);
        // Of the two parts one goes on; the front part is on top and has to go first in any case.
        if (inFront.back()) {
            part = parts.front;
        } else {
            if (parts.front.count > 0) sifter.takeAll(parts.front, [](const Slot&) {});
            part = parts.back;
        }
    }
    int certain = 0;
    if (part.count == 0) return 0;
    sifter.takeAll(part, [&](const Slot& slot) {
        if (!sifter.isCertain(slot.polygon)) return;
        ++certain;
        for (std::size_t i = 0; i < planes.size(); ++i) {
            EXPECT_EQ(sideOf(planes[i], sifter.polygonAt(slot.polygon)),
                      inFront[i] ? PolygonSide::Front : PolygonSide::Back);
        }
    });
    return certain;
}

} // namespace

TEST(Sifter, DividesLikeThePlainWayWhereverHierarchiesBegin) {
    constexpr std::uint64_t SEED = 500;
    constexpr std::uint64_t SEEDS = 1500 / ORVA_TEST_PART;
    std::cout << "seeds from " << SEED << "\n";
    for (std::uint64_t seed = SEED; seed < SEED + SEEDS && !testing::Test::HasFailure(); ++seed) {
        for (const HierarchyThresholds thresholds : {ALWAYS, {2, 0}, {7, 2}, {48, 3}, NEVER}) {
            compare(seed, thresholds);
        }
    }
}

TEST(Sifter, CallsCertainOnlyWhatGoesTheSameWayAgain) {
    constexpr std::uint64_t SEED = 9000;
    std::cout << "seeds from " << SEED << "\n";
    int certain = 0;
    for (std::uint64_t seed = SEED; seed < SEED + 3000 && !testing::Test::HasFailure(); ++seed) {
        for (const HierarchyThresholds thresholds : {ALWAYS, NEVER}) certain += checkCertain(seed, thresholds);
    }
    EXPECT_GT(certain, 10000);
}

TEST(Sifter, CallsCertainWhatPassedUsualPlanesOfWhichItIsInNone) {
    // A triangle from 0 to 2 above the ground, at a place, and what is left of it in front of a plane.
    const auto isCertain = [](double place, const Plane& plane) {
        Sifter sifter(listOf({polygon({{place, 0, 0}, {place + 1, 0, 2}, {place, 1, 2}})}));
        const Sifter::Parts parts = sifter.divide(plane, sifter.start(), {});
        EXPECT_EQ(parts.front.count, 1U);
        bool certain = false;
        sifter.takeAll(parts.front, [&](const Slot& slot) { certain = sifter.isCertain(slot.polygon); });
        return certain;
    };
    EXPECT_TRUE(isCertain(0, {{0, 0, 1}, -5})) << "passed far off";
    EXPECT_TRUE(isCertain(0, {{0, 0, 1}, -2e-6})) << "passed close by";
    EXPECT_TRUE(isCertain(0, {{0, 0, 1}, 1})) << "cut";
    EXPECT_FALSE(isCertain(0, {{0, 0, 2}, -9})) << "passed off a plane whose normal is no unit";
    EXPECT_FALSE(isCertain(0, {{0, 0, 2}, 2})) << "cut by one";
    EXPECT_TRUE(isCertain(1e8, {{0, 0, 1}, -5})) << "passed far off, where rounding is near the tolerance";
    EXPECT_FALSE(isCertain(1e8, {{0, 0, 1}, 1})) << "cut there";
    EXPECT_FALSE(isCertain(1e31, {{0, 0, 1}, -5})) << "without a box";
    const Plane own = polygon({{0, 0, 0}, {1, 0, 2}, {0, 1, 2}}).plane;
    EXPECT_FALSE(isCertain(0, own)) << "in the plane";
}

namespace {

bool holds(const Bounds& box, const Vec3& origin, const Vec3& p) {
    const std::array<double, 3> at{p.x - origin.x, p.y - origin.y, p.z - origin.z};
    for (std::size_t i = 0; i < 3; ++i) {
        if (!(std::abs(at[i] - box.middle[i]) <= box.half[i])) return false;
    }
    return true;
}

} // namespace

TEST(Bounds, HoldEveryVertexAlsoAfterRoundingToFloats) {
    test::Random random(6);
    for (int i = 0; i < 20000; ++i) {
        const double scale = random.integer(0, 1) == 0 ? 1.0 : random.uniform(0, 1) * 1e29;
        const Vec3 origin{random.uniform(-scale, scale), random.integer(0, 1) == 0 ? 0.0 : 1e6, 0};
        const Polygon triangle =
            polygon({{random.uniform(-scale, scale), random.uniform(-1, 1), random.uniform(-1e-40, 1e-40)},
                     {random.uniform(-scale, scale), 1e-3, 0},
                     {random.uniform(-scale, scale), 0.1, 0}});
        const Bounds box = boundsOf(triangle, origin);
        for (const Vertex& vertex : triangle.vertices) EXPECT_TRUE(holds(box, origin, vertex.pos));
    }
}

TEST(Bounds, OfWhatHasNoBoxAreNotNumbers) {
    for (const Polygon& none : {Polygon(), polygon({{0, 0, 0}, {1, NaN, 0}, {0, 1, 0}})}) {
        const Bounds box = boundsOf(none, {0, 0, 0});
        for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(std::isnan(box.middle[i]) && std::isnan(box.half[i]));
    }
}

TEST(Bounds, BeyondTheReachOfFloatsAreNotNumbers) {
    for (const double far : {std::numeric_limits<double>::infinity(), 1e300, -1e300, 3.4e38, -1e30, 1e30}) {
        for (double Vec3::*const component : {&Vec3::x, &Vec3::y, &Vec3::z}) {
            for (std::size_t corner = 0; corner < 3; ++corner) {
                Polygon triangle = polygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
                triangle.vertices[corner].pos.*component = far;
                const Bounds box = boundsOf(triangle, {0, 0, 0});
                for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(std::isnan(box.middle[i]) && std::isnan(box.half[i]));
                triangle.vertices[corner].pos.*component = far < 0 ? -9e29 : 9e29;
                EXPECT_FALSE(std::isnan(boundsOf(triangle, {0, 0, 0}).middle[0]));
            }
        }
    }
}

TEST(Bounds, AreAsSmallAsFloatsAllow) {
    const Bounds box = boundsOf(polygon({{1, 20, 300}, {3, 24, 308}, {2, 22, 304}}), {1, 10, 100});
    const std::array<float, 3> middle{1, 12, 204};
    const std::array<float, 3> half{1, 2, 4};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(box.middle[i], middle[i]);
        EXPECT_NEAR(box.half[i], half[i], 1e-6F * half[i]);
    }
}

} // namespace orva::bspcsg

// Whole levels of divisions, held against the plain way: every list divided polygon by polygon with splitPolygon.
#include "bsp/sift.hpp"
#include "polygons.hpp"

#include <cmath>
#include <limits>

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
    std::vector<Sifter::Part> parts{sifter.start()};
    std::vector<PolygonList> plain{list};
    const int levels = random.integer(1, 9);
    for (int level = 0; level < levels; ++level) {
        std::vector<Sifter::Part> nextParts;
        std::vector<PolygonList> nextPlain;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const Plane plane = randomPlane(random, list);
            const Sifter::Rules rules{random.integer(0, 1) == 0, random.integer(0, 1) == 0, random.integer(0, 7) == 0};
            ASSERT_TRUE(sameBits(sifter.first(parts[i]), plain[i][0]));
            const Sifter::Parts divided = sifter.divide(plane, parts[i], rules);
            PolygonList kept;
            sifter.forEachKept([&kept](const Polygon& polygon, std::uint32_t) { kept.push_back(polygon); });
            const PlainParts expected = dividePlainly(plane, plain[i], rules);
            ASSERT_TRUE(sameBits(kept, expected.kept));
            ASSERT_EQ(divided.front.count, expected.front.size());
            ASSERT_EQ(divided.back.count, expected.back.size());
            for (const auto& [part, polygons] :
                 {std::pair{divided.front, expected.front}, {divided.back, expected.back}}) {
                if (part.count == 0) continue;
                nextParts.push_back(part);
                nextPlain.push_back(polygons);
            }
        }
        sifter.descend();
        parts = std::move(nextParts);
        plain = std::move(nextPlain);
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        PolygonList left;
        sifter.forEach(parts[i], [&left](const Polygon& polygon, std::uint32_t) { left.push_back(polygon); });
        ASSERT_TRUE(sameBits(left, plain[i]));
    }
}

} // namespace

TEST(Sifter, DividesLikeThePlainWayWhereverHierarchiesBegin) {
    constexpr std::uint64_t SEED = 500;
    std::cout << "seeds from " << SEED << "\n";
    for (std::uint64_t seed = SEED; seed < SEED + 1500 && !testing::Test::HasFailure(); ++seed) {
        for (const HierarchyThresholds thresholds : {ALWAYS, {2, 0}, {7, 2}, {48, 3}, NEVER}) {
            compare(seed, thresholds);
        }
    }
}

TEST(Bounds, HoldEveryVertexAlsoAfterRoundingToFloats) {
    test::Random random(6);
    for (int i = 0; i < 20000; ++i) {
        const double scale = random.integer(0, 1) == 0 ? 1.0 : random.uniform(0, 1) * 1e30;
        const Polygon triangle =
            polygon({{random.uniform(-scale, scale), random.uniform(-1, 1), random.uniform(-1e-40, 1e-40)},
                     {random.uniform(-scale, scale), 1e-3, 0},
                     {random.uniform(-scale, scale), 0.1, 0}});
        const Bounds box = boundsOf(triangle);
        for (const Vertex& vertex : triangle.vertices) {
            EXPECT_TRUE(box.side[0] <= vertex.pos.x && vertex.pos.x <= box.side[3]);
            EXPECT_TRUE(box.side[1] <= vertex.pos.y && vertex.pos.y <= box.side[4]);
            EXPECT_TRUE(box.side[2] <= vertex.pos.z && vertex.pos.z <= box.side[5]);
        }
    }
}

TEST(Bounds, OfWhatHasNoBoxAreNotNumbers) {
    for (const float side : boundsOf(Polygon()).side) EXPECT_TRUE(std::isnan(side));
    for (const float side : boundsOf(polygon({{0, 0, 0}, {1, NaN, 0}, {0, 1, 0}})).side) EXPECT_TRUE(std::isnan(side));
}

TEST(Bounds, BeyondTheReachOfFloatsHoldEveryVertexOrAreNotNumbers) {
    for (const double far : {std::numeric_limits<double>::infinity(), 1e300, -1e300, 3.4e38}) {
        for (const double x : {0.0, far}) {
            const Bounds box = boundsOf(polygon({{x, 0, 0}, {1, far, 0}, {0, 1, 0}}));
            if (std::isnan(box.side[0])) continue;
            for (const float side : box.side) EXPECT_FALSE(std::isnan(side)) << "all or none";
            EXPECT_TRUE(box.side[1] <= far && far <= box.side[4]) << far;
        }
    }
}

} // namespace orva::bspcsg

// Soups that nobody would make on purpose, and large: each comes to an end, as nothing worse than it was.
//
// note: no time is asked for. What grew with the square of the soup would take minutes here.
#include "indexed.hpp"
#include "measures.hpp"
#include "tidied.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

namespace orva::test {

namespace {

// Edges that have no opposite one between the same positions, each of those taken once.
std::uint64_t countUnmatched(const tidy::Solid& solid) {
    std::vector<std::array<std::uint32_t, 3>> edges; // the lower end, the higher one, the direction
    for (const std::array<std::uint32_t, 3>& face : solid.faces) {
        for (std::size_t k = 0; k < 3; ++k) {
            const std::uint32_t from = face[k];
            const std::uint32_t to = face[(k + 1) % 3];
            if (from != to) edges.push_back({std::min(from, to), std::max(from, to), from < to ? 1U : 0U});
        }
    }
    std::sort(edges.begin(), edges.end());
    std::uint64_t unmatched = 0;
    for (std::size_t first = 0, last = 0; first < edges.size(); first = last) {
        std::int64_t sum = 0;
        for (; last < edges.size() && edges[last][0] == edges[first][0] && edges[last][1] == edges[first][1]; ++last) {
            sum += edges[last][2] == 1 ? 1 : -1;
        }
        unmatched += static_cast<std::uint64_t>(sum < 0 ? -sum : sum);
    }
    return unmatched;
}

// Whatever came in: what comes out is whole, says truly whether it is closed, and has no more open edges.
void expectNoWorse(const Mesh& soup, const std::vector<tidy::Origin>& origins, const tidy::Options& options = {}) {
    const Tidied result = tidied(soup, origins, options);
    const Counted after = count(result.solid);
    EXPECT_EQ(result.solid.corners.size(), result.solid.faces.size());
    EXPECT_EQ(result.solid.origins.size(), result.solid.faces.size());
    EXPECT_EQ(after.badFaces, 0U);
    EXPECT_EQ(after.unusedVertices, 0U);
    EXPECT_EQ(after.dividedVertices, 0U);
    EXPECT_EQ(result.report.soupTriangles, soup.vertices.size() / 3);
    if (result.report.closed) {
        EXPECT_TRUE(isClosed(result.solid)) << result.report;
    }
    EXPECT_LE(result.report.openEdges, countUnmatched(indexed(soup)) + 3 * result.report.facesLeft) << result.report;
    EXPECT_LE(after.openEdges, result.report.openEdges) << result.report;
}

// With marks, without, all of one face, and of two: the last two of the beginning alone where `all` is false, since a
// face that crosses itself thousands of times takes the square of that.
void expectNoWorse(const Mesh& soup, bool all = true) {
    const tidy::Options options = withMerge(tidy::Merge::All);
    {
        SCOPED_TRACE("without origins");
        expectNoWorse(soup, {}, options);
    }
    {
        SCOPED_TRACE("each of its own");
        expectNoWorse(soup, numbered(soup), options);
    }
    Mesh part = soup;
    if (!all) part.vertices.resize(std::min<std::size_t>(part.vertices.size(), 3 * 300));
    for (const std::uint32_t faces : {1U, 2U}) {
        SCOPED_TRACE(testing::Message() << "all of " << faces);
        std::vector<tidy::Origin> origins = numbered(part);
        for (tidy::Origin& origin : origins) origin.face %= faces;
        expectNoWorse(part, origins, options);
    }
}

Vec3 onCircle(int i, int count) {
    // By the rational points of the circle, all around.
    const double turn = 4.0 * i / count;
    const double t = turn - std::floor(turn);
    const double c = (1 - t * t) / (1 + t * t);
    const double s = 2 * t / (1 + t * t);
    switch (static_cast<int>(turn)) {
    case 0:
        return {c, s, 0};
    case 1:
        return {-s, c, 0};
    case 2:
        return {-c, -s, 0};
    default:
        return {s, -c, 0};
    }
}

Mesh repeated(int times, const std::function<Mesh(int)>& part) {
    Mesh mesh;
    for (int i = 0; i < times; ++i) {
        const Mesh each = part(i);
        mesh.vertices.insert(mesh.vertices.end(), each.vertices.begin(), each.vertices.end());
    }
    return mesh;
}

} // namespace

TEST(Wild, FiftyThousandEqualTriangles) {
    expectNoWorse(repeated(50000, [](int) { return triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}); }));
}

TEST(Wild, TwentyFiveThousandTrianglesAndAsManyTurnedAround) {
    const auto part = [](int i) {
        return i % 2 == 0 ? triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}) : triangle({0, 0, 0}, {0, 1, 0}, {1, 0, 0});
    };
    const Mesh soup = repeated(50000, part);
    expectNoWorse(soup);
    EXPECT_TRUE(tidied(soup, numbered(soup)).solid.faces.empty());
}

TEST(Wild, FiftyThousandVerticesOnOneLine) {
    expectNoWorse(repeated(50000, [](int i) {
        return triangle({i * 1e-3, 0, 0}, {(i * 7919 % 50000) * 1e-3, 0, 0}, {(i * 17389 % 50000) * 1e-3, 0, 0});
    }));
}

TEST(Wild, ATriangleOverAnEdgeOfFiftyThousandParts) {
    const Mesh comb = repeated(50000, [](int i) {
        const double x = i / 50000.0;
        return triangle({x, 0, 0}, {(i + 1) / 50000.0, 0, 0}, {x, -1.0 - i % 3, 0});
    });
    expectNoWorse(joined(comb, triangle({1, 0, 0}, {0, 0, 0}, {0.5, 1, 0})));
}

TEST(Wild, AFanOfEightThousandAroundAVertex) {
    const auto fan = [](double z, bool turned) {
        return repeated(8000, [=](int i) {
            Vec3 a = onCircle(i, 8000);
            Vec3 b = onCircle((i + 1) % 8000, 8000);
            a.z = b.z = 0.5;
            return turned ? triangle({0, 0, z}, b, a) : triangle({0, 0, z}, a, b);
        });
    };
    const Mesh cone = joined(fan(1, false), fan(0, true));
    expectNoWorse(cone);
    const Tidied result = tidied(cone, numbered(cone));
    EXPECT_TRUE(result.report.closed) << result.report;
    EXPECT_NEAR(volume(result.solid), volume(cone), 1e-6);
}

TEST(Wild, AFlatFanOfTwentyThousandIsOneFace) {
    const Mesh disc = repeated(20000, [](int i) {
        return triangle({0, 0, 0}, scaled(triangle(onCircle(i, 20000), {}, {}), 100).vertices[0].pos,
                        scaled(triangle(onCircle((i + 1) % 20000, 20000), {}, {}), 100).vertices[0].pos);
    });
    expectNoWorse(disc);
}

// Every pair of them at one edge: ten thousand faces around it, none with its opposite but one.
TEST(Wild, TenThousandTrianglesAtOneEdge) {
    expectNoWorse(
        repeated(10000,
                 [](int i) {
                     const Vec3 p = onCircle(i, 10000);
                     return i % 2 == 0 ? triangle({0, 0, 0}, {0, 0, 1}, p) : triangle({0, 0, 1}, {0, 0, 0}, p);
                 }),
        false);
}

TEST(Wild, TenThousandOpenTrianglesAtOneVertex) {
    Random random(1);
    expectNoWorse(repeated(10000,
                           [&random](int) {
                               Vec3 p[2];
                               for (Vec3& each : p) {
                                   each.x = random.uniform(-1, 1);
                                   each.y = random.uniform(-1, 1);
                                   each.z = random.uniform(-1, 1);
                               }
                               return triangle({0, 0, 0}, p[0], p[1]);
                           }),
                  false);
}

TEST(Wild, TenThousandTrianglesOfNothingInParticular) {
    Random random(2);
    expectNoWorse(soup(random, 10000), false);
}

TEST(Wild, TenThousandTrianglesOnAGridOfThreeStepsEachWay) {
    Random random(3);
    expectNoWorse(repeated(10000,
                           [&random](int) {
                               Vec3 p[3];
                               for (Vec3& each : p) {
                                   each.x = random.integer(0, 3);
                                   each.y = random.integer(0, 3);
                                   each.z = random.integer(0, 3);
                               }
                               return triangle(p[0], p[1], p[2]);
                           }),
                  false);
}

// All of them closer to each other than the tolerance, and their planes any.
TEST(Wild, TenThousandTrianglesSmallerThanTheTolerance) {
    Random random(4);
    expectNoWorse(scaled(soup(random, 10000), 5e-6));
}

TEST(Wild, TenThousandTrianglesInOnePlaneOneOverTheOther) {
    Random random(5);
    Mesh flat = soup(random, 10000);
    for (Vertex& vertex : flat.vertices) vertex.pos.z = 0.25;
    expectNoWorse(flat, false);
}

TEST(Wild, WithAGapWidthOfItsOwnSizeOrMore) {
    Random random(6);
    const Mesh some = soup(random, 2000);
    for (const double width : {0.1, 1.0, 1e3, 1e300, std::numeric_limits<double>::infinity()}) {
        SCOPED_TRACE(width);
        tidy::Options options;
        options.gapWidth = width;
        expectNoWorse(some, {}, options);
        expectNoWorse(some, numbered(some), options);
    }
}

TEST(Wild, WithATolerancesThatIsNone) {
    Random random(7);
    const Mesh some = soup(random, 500);
    for (const double tolerance : {-1.0, std::numeric_limits<double>::quiet_NaN(), 1e-320, 1e-9, 0.3, 1e300,
                                   std::numeric_limits<double>::infinity()}) {
        SCOPED_TRACE(tolerance);
        tidy::Options options;
        options.tolerance = tolerance;
        options.gapWidth = -tolerance;
        expectNoWorse(some, {}, options);
        expectNoWorse(some, numbered(some), options);
    }
}

TEST(Wild, CoordinatesOfAnySizeBesideEachOther) {
    Random random(8);
    static constexpr std::array<double, 14> sizes{0, 5e-324, 1e-300, 1e-160, 1e-80, 1e-20, 1e-6,
                                                  1, 1e6,    1e20,   1e50,   1e75,  1e160, 1e308};
    for (int seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Mesh mesh;
        for (int i = random.integer(1, 20); i > 0; --i) {
            Vec3 p[3];
            for (Vec3& each : p) {
                for (double Vec3::*const axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
                    each.*axis = sizes[static_cast<std::size_t>(random.integer(0, 13))] * random.integer(-1, 1);
                }
            }
            mesh = joined(mesh, triangle(p[0], p[1], p[2]));
        }
        expectNoWorse(mesh, {});
        expectNoWorse(mesh, numbered(mesh));
    }
}

} // namespace orva::test

// The laws of tidied solids on random ones: closed by index, the volume kept, few triangles, tidied once and for all.
//
// A failure names the seed of its case. ORVA_LONG in the environment makes it twenty times as many.
#include "figures.hpp"
#include "measures.hpp"
#include "operations.hpp"
#include "solids.hpp"
#include "tidied.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <set>
#include <string>
#include <utility>

namespace orva::test {

namespace {

constexpr std::pair<const char*, DrawSolid> kinds[]{{"on the grid", solidOnGrid}, {"anywhere", solidAnywhere}};

// The second operand now and then lies beside the first one by less than the tolerance of the operations.
Mesh drawNear(Random& random, DrawSolid draw) {
    Mesh mesh = draw(random);
    if (random.integer(0, 3) == 0) {
        const double by = random.integer(-4, 4) * 0.4e-6;
        mesh = moved(std::move(mesh), {by, -by, 2 * by});
    }
    return mesh;
}

int failures() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

void forCases(const char* name, int count, const std::function<void(Random&, DrawSolid)>& check) {
    if (longForm()) count *= 20;
    int failed = 0;
    for (const auto& [kind, draw] : kinds) {
        for (int seed = 0; seed < count && failed < 3; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", solids " << kind);
            Random random(static_cast<std::uint64_t>(seed));
            const int before = failures();
            check(random, draw);
            if (failures() != before) ++failed;
        }
    }
    figure(std::string("tidy_laws.") + name, 2 * static_cast<std::uint64_t>(count));
}

struct Operation {
    const char* name;
    Tidied (*call)(const Mesh& a, const Mesh& b, const tidy::Options& options);
    TwoMeshOperation soup;

    Tidied tidied(const Mesh& a, const Mesh& b, const tidy::Options& options = {}) const { return call(a, b, options); }
};
using Options = tidy::Options;
const Operation operations[]{
    {"union",
     [](const Mesh& a, const Mesh& b, const Options& options) {
         return united({a, b}, options);
     },
     unite},
    {"difference", [](const Mesh& a, const Mesh& b, const Options& options) { return subtracted(a, {b}, options); },
     subtract},
    {"intersection",
     [](const Mesh& a, const Mesh& b, const Options& options) {
         return intersected({a, b}, options);
     },
     intersect}};

double movedIn(const tidy::Report& report) {
    return report.movedByWeld + report.movedByZip + report.movedByDrop;
}

// Of meshes below 10: what the tolerance of 8e-6 is in the unit of the coordinates.
double toleranceOf(const tidy::Report& report) {
    return 8e-6 / report.scale;
}

void expectSound(const Tidied& result) {
    EXPECT_TRUE(isWhole(result.solid));
    EXPECT_TRUE(result.report.closed) << result.report;
    EXPECT_TRUE(isClosed(result.solid)) << result.report;
    EXPECT_EQ(result.report.openEdges, 0U);
    EXPECT_EQ(result.report.facesLeft, 0U);
    EXPECT_LE(result.report.movedByWeld, toleranceOf(result.report));
    EXPECT_LE(result.report.movedByZip, toleranceOf(result.report));
    EXPECT_LE(result.report.movedByDrop, toleranceOf(result.report));
}

// How far a surface of that area can carry a volume.
double slack(const Tidied& result) {
    return 1e-8 + (area(result.solid) + result.report.loopArea) * (movedIn(result.report) + toleranceOf(result.report));
}

// In the middle of how many sides of the soup's triangles the vertices lie.
std::size_t countJunctions(const Mesh& soup, const tidy::Solid& solid, double distance) {
    std::set<std::array<double, 3>> places;
    for (const Vec3& p : solid.vertices) places.insert({p.x, p.y, p.z});
    std::size_t junctions = 0;
    for (std::size_t i = 0; i < soup.vertices.size(); ++i) {
        const Vec3& a = soup.vertices[i].pos;
        const Vec3& b = soup.vertices[i % 3 == 2 ? i - 2 : i + 1].pos;
        for (const auto& [x, y, z] : places) {
            const Vec3 p{x, y, z};
            const Mesh ends = joined(triangle(a, a, a), triangle(b, b, b));
            if (distanceTo(triangle(a, b, b), p) <= distance && distanceTo(ends, p) > distance) ++junctions;
        }
    }
    return junctions;
}

} // namespace

TEST(TidyLaws, ResultsAreClosedByIndexWithTheVolumeOfTheSoup) {
    forCases("pairs", 250, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = drawNear(random, draw);
        for (const Operation& operation : operations) {
            SCOPED_TRACE(operation.name);
            const Tidied result = operation.tidied(a, b);
            expectSound(result);
            const double scale = result.report.scale;
            const Mesh soup = scaled(operation.soup(scaled(a, scale), scaled(b, scale)), 1 / scale);
            EXPECT_EQ(result.report.soupTriangles, soup.vertices.size() / 3);
            EXPECT_NEAR(volume(result.solid), volume(soup), slack(result)) << result.report;
            for (const Vec3& vertex : result.solid.vertices) {
                EXPECT_LE(std::min(distanceTo(a, vertex), distanceTo(b, vertex)),
                          movedIn(result.report) + toleranceOf(result.report));
            }
            // note: a triangle that was not cut, with a neighbour's corner in the middle of a side, has to become two.
            if (result.solid.faces.size() > soup.vertices.size() / 3) {
                EXPECT_LE(result.solid.faces.size(),
                          soup.vertices.size() / 3 + countJunctions(soup, result.solid, toleranceOf(result.report)))
                    << result.report;
            }
        }
    });
}

// Of solids that do not come near each other's planes every bit stays. Where they touch, a vertex that was put in the
// middle of an edge, so that two solids stay apart, may be put somewhere else: the solid is the same then, too.
TEST(TidyLaws, TidyingWhatIsTidiedChangesNothing) {
    int cases = 0;
    int changed = 0;
    forCases("again", 150, [&](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        for (const tidy::Merge merge : {tidy::Merge::None, tidy::Merge::Cut, tidy::Merge::All}) {
            const Operation& operation = operations[random.integer(0, 2)];
            SCOPED_TRACE(testing::Message() << operation.name << ", merge " << static_cast<int>(merge));
            tidy::Options options;
            options.merge = merge;
            options.scale = false;
            for (const bool marked : {true, false}) {
                SCOPED_TRACE(marked ? "with origins" : "without origins");
                const Tidied first =
                    marked ? operation.tidied(a, b, options) : tidied(operation.soup(a, b), {}, options);
                const Tidied again = tidied(tidy::toSoup(first.solid),
                                            marked ? first.solid.origins : std::vector<tidy::Origin>{}, options);
                const testing::AssertionResult same = sameBits(again.solid, first.solid);
                if (draw == solidAnywhere) {
                    EXPECT_TRUE(same) << first.report << "\n" << again.report;
                    continue;
                }
                ++cases;
                if (same) continue;
                ++changed;
                expectSound(again);
                EXPECT_LE(again.solid.faces.size(), first.solid.faces.size());
                EXPECT_NEAR(volume(again.solid), volume(first.solid), slack(again));
            }
        }
    });
    EXPECT_LE(changed, cases / 50) << "of " << cases;
}

TEST(TidyLaws, SwappedOperandsGiveTheSameVolume) {
    forCases("swapped", 100, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        for (const int i : {0, 2}) {
            const Tidied one = operations[i].tidied(a, b);
            const Tidied other = operations[i].tidied(b, a);
            EXPECT_NEAR(volume(one.solid), volume(other.solid), slack(one) + slack(other)) << operations[i].name;
        }
    });
}

TEST(TidyLaws, ManyCuttersAreOneSolidInEveryWayOfCutting) {
    forCases("cutters", 60, [](Random& random, DrawSolid draw) {
        const Mesh base = draw(random);
        std::vector<Mesh> cutters;
        for (int count = random.integer(1, 4); count > 0; --count) cutters.push_back(draw(random));
        double expected = -1;
        for (const tidy::Cutting cutting :
             {tidy::Cutting::InTurn, tidy::Cutting::AsOneUnion, tidy::Cutting::AsOneUnionParallel}) {
            SCOPED_TRACE(testing::Message() << "way " << static_cast<int>(cutting));
            const Tidied result = withAWorker([&] { return subtracted(base, cutters, {}, cutting); });
            expectSound(result);
            if (expected < 0) expected = volume(result.solid);
            EXPECT_NEAR(volume(result.solid), expected, 2 * slack(result) + 1e-6);
        }
    });
}

// The shuffled pieces of a result, turned corner by corner: other numbers, the same solid.
TEST(TidyLaws, TheOrderOfTheSoupIsOfNoMatterToTheSolid) {
    forCases("shuffled", 60, [](Random& random, DrawSolid draw) {
        const Mesh a = draw(random);
        const Mesh b = draw(random);
        const Mesh soup = operations[random.integer(0, 2)].soup(a, b);
        Mesh shuffled;
        std::vector<std::size_t> order(soup.vertices.size() / 3);
        for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
        for (std::size_t i = order.size(); i-- > 1;) {
            std::swap(order[i], order[static_cast<std::size_t>(random.integer(0, static_cast<int>(i)))]);
        }
        for (const std::size_t i : order) {
            const auto turn = static_cast<std::size_t>(random.integer(0, 2));
            for (std::size_t k = 0; k < 3; ++k) shuffled.vertices.push_back(soup.vertices[3 * i + (k + turn) % 3]);
        }
        const Tidied one = tidied(soup);
        const Tidied other = tidied(shuffled);
        expectSound(one);
        expectSound(other);
        EXPECT_EQ(one.report.pieces, other.report.pieces);
        EXPECT_NEAR(volume(one.solid), volume(other.solid), slack(one) + slack(other));
    });
}

} // namespace orva::test

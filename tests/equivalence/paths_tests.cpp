// Which ways through the tree were taken and how much was done on them, in the library built with counts of that.
#include "boolean/combine.hpp"
#include "boolean/recipes.hpp"
#include "bsp/sift.hpp"
#include "cases.hpp"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <array>
#include <limits>

namespace orva::equivalence {

TEST(Paths, AreReachedAsFarAsTheyAreNotForcedAway) {
    constexpr std::uint64_t SEED = 77;
    std::cout << "seed " << SEED << "\n";
    Random random(SEED);
    for (int i = 0; i < 20; ++i) {
        const MeshPair pair = i == 0 ? fineSpheres(random) : boxesOnCoarseGrid(random);
        Mesh result;
        bspcsg::combineMeshes(result, pair.a, pair.b, bspcsg::unionTrees);
    }
    const auto& counts = bspcsg::pathCounts;
    std::cout << "divided as slots " << counts.slotDivisions << " times, as hierarchies " << counts.hierarchyDivisions
              << " times; not clipped again " << counts.certain << " polygons, clipped again " << counts.uncertain
              << "\n";
    if (ORVA_HIERARCHY_POLYGONS == 1) {
        EXPECT_EQ(counts.slotDivisions, 0U);
    } else {
        EXPECT_GT(counts.slotDivisions, 1000U);
    }
    if (ORVA_HIERARCHY_POLYGONS == 0xFFFFFFFFU) {
        EXPECT_EQ(counts.hierarchyDivisions, 0U);
    } else {
        EXPECT_GT(counts.hierarchyDivisions, 1000U);
    }
    EXPECT_GT(counts.certain, 100U);
    EXPECT_GT(counts.uncertain, 20U);
}

#if ORVA_HIERARCHY_POLYGONS == 150

namespace {

// What was counted, in the order of PathCounts.
using Work = std::array<std::uint64_t, 13>;

Work workSoFar() {
    const auto& counts = bspcsg::pathCounts;
    return {counts.slotDivisions, counts.slots,   counts.hierarchyDivisions, counts.entries,     counts.exactSides,
            counts.inHierarchies, counts.stacked, counts.newEntries,         counts.copiedLanes, counts.checks,
            counts.askedAgain,    counts.certain, counts.uncertain};
}

template <typename Call> Work workOf(Call call) {
    const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
    const Work before = workSoFar();
    call();
    Work work = workSoFar();
    for (std::size_t i = 0; i < work.size(); ++i) work[i] -= before[i];
    return work;
}

Mesh sphere(int level, const test::Vec3& centre) {
    return test::icosphere(level, centre, 1);
}

} // namespace

// What only costs time is seen here: no result tells of it. A change that is meant changes these numbers.
TEST(Paths, TakeTheWorkThatIsOnRecord) {
    const Mesh ball = sphere(3, {0, 0, 0});
    const Mesh grid = test::griddedBox({0, 0, 0}, {1, 1, 1}, 10);
    test::Random random(4);
    const Mesh soup = test::soup(random, 100);
    Mesh scattered = test::soup(random, 250);
    for (std::size_t i = 0; i < scattered.vertices.size(); ++i) { // each triangle a tenth of its size
        const test::Vec3& corner = scattered.vertices[i - i % 3].pos;
        test::Vec3& p = scattered.vertices[i].pos;
        p = {corner.x + (p.x - corner.x) / 10, corner.y + (p.y - corner.y) / 10, corner.z + (p.z - corner.z) / 10};
    }
    const Mesh turned = test::turned(test::griddedBox({-0.5, -0.5, -0.5}, {0.5, 0.6, 0.7}, 9), random);
    Mesh wild = sphere(2, {0.1, 0.2, 0.3});
    wild.vertices[100].pos.x = std::numeric_limits<double>::quiet_NaN();
    wild.vertices[200].pos.y = 1e31;
    wild.vertices[301].pos = wild.vertices[300].pos;
    const struct {
        const char* name;
        Mesh a;
        Mesh b;
        bspcsg::CombineFunction combine;
        Work onRecord;
    } cases[] = {
        {"union of spheres",
         ball,
         sphere(3, {0.7, 0.3, 0.2}),
         bspcsg::unionTrees,
         {6529, 433778, 8039, 102234, 83033, 21428, 900510, 5506, 25647, 8404, 6839, 2959, 0}},
        {"difference of spheres",
         ball,
         sphere(3, {0.7, 0.3, 0.2}),
         bspcsg::subtractTrees,
         {788, 253039, 8681, 117517, 48706, 13940, 261519, 3988, 10817, 6300, 511, 425, 0}},
        {"intersection of spheres",
         ball,
         sphere(3, {0.7, 0.3, 0.2}),
         bspcsg::intersectTrees,
         {788, 192431, 8167, 92802, 40598, 9717, 198390, 2943, 4082, 4204, 511, 425, 0}},
        {"the same sphere twice",
         sphere(2, {0, 0, 0}),
         sphere(2, {0, 0, 0}),
         bspcsg::unionTrees,
         {1233, 119207, 1327, 16859, 20346, 1528, 120735, 719, 602, 5670, 320, 0, 320}},
        {"boxes with a face in common",
         grid,
         test::moved(grid, {0.95, 0.35, 0}),
         bspcsg::unionTrees,
         {57, 29974, 0, 0, 8468, 0, 31894, 0, 0, 540, 1058, 700, 400}},
        {"a gridded box, turned",
         ball,
         turned,
         bspcsg::subtractTrees,
         {269, 135310, 4881, 74673, 23972, 4758, 139995, 2568, 2941, 545, 73, 972, 0}},
        {"triangles anywhere",
         soup,
         ball,
         bspcsg::intersectTrees,
         {19635, 457450, 4875, 64290, 90417, 13233, 33708712, 4253, 1975, 9394, 5062, 1982, 0}},
        {"small triangles anywhere",
         scattered,
         ball,
         bspcsg::unionTrees,
         {4462, 310440, 2621, 31157, 31659, 2671, 1394390, 872, 2465, 2956, 1742, 1127, 0}},
        {"thousands of kilometres across",
         test::scaled(ball, 3e6),
         test::scaled(sphere(3, {0.7, 0.3, 0.2}), 3e6),
         bspcsg::unionTrees,
         {7682, 568546, 9221, 110449, 89384, 24239, 1038306, 6964, 32039, 4481, 7349, 92, 2868}},
        {"far from the origin",
         test::moved(ball, {1e5, 2e5, -1e5}),
         sphere(3, {1e5 + 0.5, 2e5, -1e5}),
         bspcsg::unionTrees,
         {5120, 356383, 8230, 107206, 69755, 19078, 368231, 4854, 21895, 7681, 5660, 2530, 1}},
        {"where rounding is near the tolerance",
         test::moved(ball, {4e6, 8e5, -1.2e6}),
         sphere(3, {4e6 + 0.5, 8e5, -1.2e6}),
         bspcsg::unionTrees,
         {5945, 449449, 9381, 111157, 72502, 20376, 462595, 5512, 24274, 5858, 6117, 1233, 1298}},
        {"a thousand times larger",
         test::scaled(ball, 1000),
         test::scaled(sphere(3, {0.7, 0.3, 0.2}), 1000),
         bspcsg::unionTrees,
         {6531, 433816, 8039, 102292, 83033, 21431, 900768, 5507, 25649, 8405, 6846, 2960, 0}},
        {"with corners that are no numbers, and far ones",
         wild,
         ball,
         bspcsg::subtractTrees,
         {314, 117005, 2403, 35034, 16865, 6240, 124562, 2033, 4299, 2258, 0, 0, 0}},
        {"a face heavy enough for a task",
         test::griddedBox({0, 0, 0}, {1, 1, 1}, 23),
         sphere(2, {0.5, 0.5, 1}),
         bspcsg::unionTrees,
         {1130, 250232, 1818, 6249, 21891, 9656, 558984, 2474, 3845, 3335, 190, 342, 0}},
    };
    for (const auto& each : cases) {
        Mesh result;
        const Work work = workOf([&] { bspcsg::combineMeshes(result, each.a, each.b, each.combine); });
        EXPECT_EQ(work, each.onRecord) << each.name;
    }
}

#endif

} // namespace orva::equivalence

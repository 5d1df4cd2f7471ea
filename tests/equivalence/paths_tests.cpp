// Which ways through the tree were taken and how much was done on them, in the library built with counts of that.
#include "boolean/combine.hpp"
#include "boolean/recipes.hpp"
#include "bsp/sift.hpp"
#include "cases.hpp"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

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

// What only costs time is seen here: no result tells of it. A change that is meant changes these numbers.
#if ORVA_HIERARCHY_POLYGONS == 150
TEST(Paths, OfTwoSpheresTakeTheWorkThatIsOnRecord) {
    const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
    auto& counts = bspcsg::pathCounts;
    for (auto* count : {&counts.slotDivisions, &counts.slots, &counts.hierarchyDivisions, &counts.entries,
                        &counts.exactSides, &counts.inHierarchies, &counts.certain, &counts.uncertain}) {
        *count = 0;
    }
    Mesh result;
    bspcsg::combineMeshes(result, test::icosphere(3, {0, 0, 0}, 1), test::icosphere(3, {0.7, 0.3, 0.2}, 1),
                          bspcsg::unionTrees);
    EXPECT_EQ(counts.slotDivisions, 6529U);
    EXPECT_EQ(counts.slots, 433778U);
    EXPECT_EQ(counts.hierarchyDivisions, 8039U);
    EXPECT_EQ(counts.entries, 102234U);
    EXPECT_EQ(counts.exactSides, 83033U);
    EXPECT_EQ(counts.inHierarchies, 21428U);
    EXPECT_EQ(counts.certain, 2959U);
    EXPECT_EQ(counts.uncertain, 0U);
}
#endif

} // namespace orva::equivalence

// Which ways through the tree were taken, in the library built with counts of them.
#include "boolean/combine.hpp"
#include "boolean/recipes.hpp"
#include "bsp/sift.hpp"
#include "cases.hpp"

#include <gtest/gtest.h>

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

} // namespace orva::equivalence

// The tree's own steps against the reference, node by node and polygon by polygon, on lists such as no mesh gives.
#include "cases.hpp"
#include "library.hpp"
#include "same.hpp"
#include "seeds.hpp"

#include <tbb/global_control.h>

#include <algorithm>

namespace orva::equivalence {

namespace {

using reference::PolygonList;

// One tree in both implementations, and the steps on both.
struct Both {
    reference::Tree expected;
    bspcsg::NodePtr actual;

    void build(const PolygonList& polygons) {
        reference::build(*expected, polygons);
        actual->build(toLibrary(polygons));
        EXPECT_TRUE(same(*toReference(*actual), *expected)) << "after build of " << polygons.size() << " polygons";
    }
    void clipTree(const Both& other) {
        reference::clipTree(*expected, *other.expected);
        actual->clipTree(*other.actual);
        EXPECT_TRUE(same(*toReference(*actual), *expected)) << "after clipTree";
    }
    void invert() {
        reference::invert(*expected);
        actual->invert();
        EXPECT_TRUE(same(*toReference(*actual), *expected)) << "after invert";
    }
    void becomeItsClone() {
        expected = reference::clone(*expected);
        bspcsg::NodePtr copy = actual->clone();
        EXPECT_TRUE(same(*toReference(*actual), *expected)) << "the cloned tree";
        actual = std::move(copy);
        EXPECT_TRUE(same(*toReference(*actual), *expected)) << "the clone";
    }
    void clip(const PolygonList& polygons) const {
        const PolygonList kept = reference::clipPolygonList(*expected, polygons);
        EXPECT_TRUE(same(toReference(actual->clipPolygonList(toLibrary(polygons))), kept))
            << "clipPolygonList of " << polygons.size() << " polygons, of which " << kept.size() << " are left";
        EXPECT_TRUE(same(*toReference(*actual), *expected)) << "after clipPolygonList, which only reads the tree";
    }
    PolygonList collect() const {
        PolygonList collected = reference::collect(*expected);
        EXPECT_TRUE(same(toReference(actual->collectPolygons(0)), collected)) << "collectPolygons";
        return collected;
    }
};

Both empty() {
    return {std::make_unique<reference::Node>(), std::make_unique<bspcsg::Node>()};
}

Both arbitrary(Random& random, int nodes) {
    reference::Tree tree = arbitraryTree(random, nodes);
    bspcsg::NodePtr same = toLibrary(*tree);
    return {std::move(tree), std::move(same)};
}

std::size_t polygonsIn(const Both& tree) {
    return reference::collect(*tree.expected).size();
}

} // namespace

TEST(Trees, BuildOntoEmptyAndBuiltOnes) {
    forSeeds(400, [](Random& random) {
        Both tree = empty();
        tree.build(polygonList(random, listLength(random, 70)));
        tree.build(polygonList(random, listLength(random, 130)));
        tree.becomeItsClone();
        tree.collect();
    });
}

TEST(Trees, BuildOfLongLists) {
    forSeeds(150, [](Random& random) {
        // Few planes, so that many polygons meet at a node, and small ones, so that not every plane cuts all.
        Both tree = chance(random, 50) ? empty() : arbitrary(random, random.integer(1, 9));
        PolygonList list = polygonList(random, listLength(random, 1026));
        const PolygonList planes = polygonList(random, 4);
        for (reference::Polygon& polygon : list) {
            if (chance(random, 70)) polygon.plane = planes[static_cast<std::size_t>(random.integer(0, 3))].plane;
        }
        tree.build(list);
    });
}

TEST(Trees, BuildOntoArbitraryTrees) {
    forSeeds(3000, [](Random& random) {
        Both tree = arbitrary(random, random.integer(1, 20));
        tree.build(polygonList(random, listLength(random, 64)));
        tree.collect();
    });
}

TEST(Trees, ClipLongListsAgainstSmallTrees) {
    forSeeds(2500, [](Random& random) {
        const Both tree = arbitrary(random, random.integer(1, 8));
        tree.clip(polygonList(random, listLength(random, 4097)));
    });
}

TEST(Trees, ClipListsAgainstLargerTrees) {
    forSeeds(5000, [](Random& random) {
        const Both tree = arbitrary(random, random.integer(9, 60));
        tree.clip(polygonList(random, listLength(random, 260)));
    });
}

TEST(Trees, ClipAgainstDeepChains) {
    forSeeds(400, [](Random& random) {
        const Both tree = arbitrary(random, random.integer(200, 1000));
        tree.clip(polygonList(random, listLength(random, 33)));
    });
}

TEST(Trees, ClipPatchesAToleranceOffThePlanes) {
    forSeeds(600, [](Random& random) {
        reference::Tree planes = std::make_unique<reference::Node>();
        reference::build(*planes, smoothSurface(random, random.integer(1, 40)));
        PolygonList list = patchesAlong(random, *planes, random.integer(1, 700));
        if (chance(random, 50)) {
            const Placement placement = anyPlacement(random);
            place(placement, *planes);
            place(placement, list);
        }
        bspcsg::NodePtr same = toLibrary(*planes);
        const Both tree{std::move(planes), std::move(same)};
        tree.clip(list);
    });
}

TEST(Trees, ClipSmoothSurfaces) {
    forSeeds(60, [](Random& random) {
        const PolygonList planes = smoothSurface(random, random.integer(20, 300));
        PolygonList list = chance(random, 50) ? smoothSurface(random, random.integer(100, 3000)) : planes;
        Both tree = empty();
        // The tree of another surface, or of some faces of the same one: each of those touches it.
        if (chance(random, 50)) {
            tree.build(planes);
        } else {
            PolygonList some;
            for (int i = 0; i < 60; ++i) some.push_back(list[static_cast<std::size_t>(i) * 7 % list.size()]);
            tree.build(some);
        }
        if (chance(random, 30)) tree.invert();
        tree.clip(list);
    });
}

TEST(Trees, BuildOfSmoothSurfaces) {
    forSeeds(40, [](Random& random) {
        PolygonList list = smoothSurface(random, random.integer(40, 700));
        if (chance(random, 50)) place(anyPlacement(random), list);
        Both tree = empty();
        tree.build(list);
        tree.build(smoothSurface(random, random.integer(40, 200)));
    });
}

TEST(Trees, InvertCloneAndCollectArbitraryOnes) {
    forSeeds(600, [](Random& random) {
        Both tree = arbitrary(random, random.integer(1, 100));
        tree.invert();
        tree.becomeItsClone();
        tree.invert();
        tree.collect();
    });
}

TEST(Trees, ClippedTwiceAndBuiltIn) {
    forSeeds(1500, [](Random& random) {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, oneOf(random, {1U, 2U, 8U}));
        Both a = chance(random, 70) ? empty() : arbitrary(random, random.integer(1, 10));
        Both b = chance(random, 70) ? empty() : arbitrary(random, random.integer(1, 10));
        a.build(chance(random, 50) ? smoothSurface(random, random.integer(8, 60)) : polygonList(random, 20));
        b.build(chance(random, 50) ? patchesAlong(random, *a.expected, random.integer(1, 60))
                                   : polygonList(random, listLength(random, 65)));
        const bool turnedBack = chance(random, 50);
        reference::clipTree(*b.expected, *a.expected);
        reference::invert(*b.expected);
        reference::clipTree(*b.expected, *a.expected);
        if (turnedBack) reference::invert(*b.expected);
        const PolygonList expected = reference::collect(*b.expected);
        reference::build(*a.expected, expected);

        bspcsg::Newcomers<double> newcomers =
            takeClippedTwice(*b.actual, *a.actual, turnedBack ? bspcsg::Turn::AndBack : bspcsg::Turn::Around);
        EXPECT_TRUE(same(toReference(newcomers.polygons), expected)) << "after takeClippedTwice";
        a.actual->buildIn(std::move(newcomers));
        EXPECT_TRUE(same(*toReference(*a.actual), *a.expected)) << "after buildIn";
    });
}

TEST(Trees, ManyStepsOnTwoTrees) {
    forSeeds(1500, [](Random& random) {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, oneOf(random, {1U, 2U, 8U}));
        Both a = chance(random, 70) ? empty() : arbitrary(random, random.integer(1, 10));
        Both b = chance(random, 70) ? empty() : arbitrary(random, random.integer(1, 10));
        a.build(polygonList(random, listLength(random, 33)));
        b.build(polygonList(random, listLength(random, 17)));
        for (int i = 0; i < 8; ++i) {
            if (chance(random, 50)) std::swap(a, b);
            // Pieces multiply; what has grown too large to go on with quickly has been compared already.
            if (polygonsIn(a) + polygonsIn(b) > 3000) break;
            switch (random.integer(0, 5)) {
            case 0:
            case 1:
                a.clipTree(b);
                break;
            case 2:
                a.invert();
                break;
            case 3:
                a.becomeItsClone();
                break;
            case 4:
                a.build(b.collect());
                break;
            default:
                a.clip(polygonList(random, listLength(random, 65)));
                break;
            }
        }
    });
}

TEST(Trees, ClipTreeWithHeavyNodesWithOneTwoAndEightThreads) {
    forSeeds(200, [](Random& random) {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, oneOf(random, {1U, 2U, 8U}));
        reference::Tree heavy = arbitraryTree(random, random.integer(1, 6));
        heavy->polygons = polygonList(random, random.integer(1020, 1100));
        if (heavy->front) heavy->front->polygons = polygonList(random, listLength(random, 2049));
        bspcsg::NodePtr same = toLibrary(*heavy);
        Both tree{std::move(heavy), std::move(same)};
        tree.clipTree(arbitrary(random, random.integer(1, 6)));
        tree.invert();
        tree.clipTree(arbitrary(random, random.integer(1, 6)));
    });
}

} // namespace orva::equivalence

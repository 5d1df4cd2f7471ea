// Whether a mesh is fit: one defect a test, and what is said of it.
#include "measures/fitness.hpp"

#include "orva/bspcsg.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace orva::program {
namespace {

using Lines = std::vector<std::string>;

std::vector<Triangle> unitBox() {
    return boxTriangles({0, 0, 0}, {1, 1, 1});
}

std::vector<Triangle> turned(std::vector<Triangle> triangles) {
    for (Triangle& triangle : triangles) std::swap(triangle[1], triangle[2]);
    return triangles;
}

std::vector<Triangle> operator+(std::vector<Triangle> a, const std::vector<Triangle>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Fitness fitnessOf(const std::vector<Triangle>& triangles) {
    return measureFitness(modelOf(meshOf(triangles)));
}

Lines complaintsOf(const std::vector<Triangle>& triangles) {
    return complaints(fitnessOf(triangles));
}

TEST(Fitness, OfABox) {
    const Fitness fitness = fitnessOf(boxTriangles({-1, 0, 0}, {1, 3, 4}));
    EXPECT_EQ(fitness.triangles, 12U);
    EXPECT_EQ(fitness.parts, 1U);
    EXPECT_EQ(fitness.boundaryEdges, 0U);
    EXPECT_EQ(fitness.nonManifoldEdges, 0U);
    EXPECT_EQ(fitness.flippedEdges, 0U);
    EXPECT_EQ(fitness.openEdges, 0U);
    EXPECT_EQ(fitness.degenerate, 0U);
    EXPECT_EQ(fitness.thin, 0U);
    EXPECT_EQ(fitness.duplicates, 0U);
    EXPECT_EQ(fitness.insideOutParts, 0U);
    EXPECT_EQ(fitness.crossings.pairs + fitness.crossings.shallow, 0U);
    EXPECT_EQ(fitness.byIndex.vertices, 8U);
    EXPECT_FALSE(fitness.ownIndices);
    EXPECT_TRUE(isEdgeManifold(fitness.byIndex));
    EXPECT_DOUBLE_EQ(fitness.volume, 24.0);
    EXPECT_DOUBLE_EQ(fitness.area, 52.0);
    EXPECT_EQ(fitness.box.low.x, -1.0);
    EXPECT_EQ(fitness.box.high.z, 4.0);
    EXPECT_EQ(complaints(fitness), Lines());
    EXPECT_EQ(remarks(fitness), Lines());
}

TEST(Fitness, NoTriangles) {
    const Fitness fitness = measureFitness({});
    EXPECT_EQ(fitness.triangles, 0U);
    EXPECT_EQ(fitness.parts, 0U);
    EXPECT_EQ(fitness.box.high.x, 0.0);
    EXPECT_EQ(complaints(fitness), Lines{"it has no triangles, and a boolean with an empty mesh gives nothing; check "
                                         "that the right thing was exported"});
    EXPECT_EQ(remarks(fitness), Lines());
}

// ---- edges ----

TEST(Fitness, MissingTriangle) {
    std::vector<Triangle> triangles = unitBox();
    triangles.pop_back();
    const Fitness fitness = fitnessOf(triangles);
    EXPECT_EQ(fitness.boundaryEdges, 3U);
    EXPECT_EQ(fitness.openEdges, 3U);
    EXPECT_EQ(fitness.parts, 1U);
    EXPECT_EQ(complaints(fitness),
              Lines{"3 edges have a triangle on one side only: the surface is open, gaps up to 0.5;"
                    " close its holes"});
}

TEST(Fitness, FlippedTriangle) {
    std::vector<Triangle> triangles = unitBox();
    std::swap(triangles[4][0], triangles[4][1]);
    const Fitness fitness = fitnessOf(triangles);
    EXPECT_EQ(fitness.boundaryEdges, 0U);
    EXPECT_EQ(fitness.flippedEdges, 3U);
    EXPECT_EQ(complaints(fitness), Lines{"3 edges lie between triangles that face opposite ways; turn the triangles "
                                         "that face inward"});
}

TEST(Fitness, DoubledTriangle) {
    std::vector<Triangle> triangles = unitBox();
    triangles.push_back({triangles[3][1], triangles[3][2], triangles[3][0]});
    const Fitness fitness = fitnessOf(triangles);
    EXPECT_EQ(fitness.duplicates, 1U);
    EXPECT_EQ(fitness.nonManifoldEdges, 3U);
    EXPECT_EQ(complaints(fitness),
              (Lines{"3 edges have more than two triangles; take away the walls inside, or part what touches there",
                     "1 triangle has the corners of another one; keep one of each"}));
}

TEST(Fitness, TriangleThriceInWhateverOrderIsADuplicateTwice) {
    const Triangle triangle{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}};
    EXPECT_EQ(fitnessOf({triangle, triangle, {{triangle[2], triangle[1], triangle[0]}}}).duplicates, 2U);
}

TEST(Fitness, EdgeOfFourTriangles) {
    const Fitness fitness = fitnessOf(unitBox() + boxTriangles({1, 1, 0}, {2, 2, 1}));
    EXPECT_EQ(fitness.nonManifoldEdges, 1U);
    EXPECT_EQ(fitness.flippedEdges, 0U);
    EXPECT_EQ(fitness.parts, 1U);
    EXPECT_EQ(complaints(fitness),
              Lines{"1 edge has more than two triangles; take away the walls inside, or part what touches there"});
}

TEST(Fitness, WallInside) {
    const Fitness fitness = fitnessOf(unitBox() + boxTriangles({1, 0, 0}, {2, 1, 1}));
    EXPECT_EQ(fitness.nonManifoldEdges, 4U);
    EXPECT_EQ(fitness.duplicates, 0U); // the wall's two sides are divided along different diagonals
}

TEST(Fitness, NegativeZeroIsZero) {
    std::vector<Triangle> triangles = unitBox();
    for (Vec3& corner : triangles[0]) {
        if (corner.x == 0.0) corner.x = -0.0;
    }
    EXPECT_EQ(complaintsOf(triangles), Lines());
    EXPECT_EQ(fitnessOf(triangles).boundaryEdges, 0U);
}

TEST(Fitness, EdgesThatMatchWithinTheToleranceOnly) {
    std::vector<Triangle> triangles = unitBox();
    triangles[7][0].x += 1e-9;
    const Fitness fitness = fitnessOf(triangles);
    EXPECT_EQ(fitness.boundaryEdges, 4U);
    EXPECT_EQ(fitness.openEdges, 0U);
    EXPECT_EQ(complaints(fitness), Lines());
    EXPECT_EQ(remarks(fitness), Lines{"4 edges match their neighbours only piece by piece, within 8e-06, as results of "
                                      "booleans do"});
}

TEST(Fitness, ResultOfABooleanIsFit) {
    Mesh result;
    bspcsg::subtractMesh(result, box({0, 0, 0}, {2, 2, 2}), box({0.5, 0.5, -1}, {1.5, 1.5, 3}));
    const Fitness fitness = measureFitness(modelOf(result));
    EXPECT_GT(fitness.boundaryEdges, 0U);
    EXPECT_EQ(fitness.parts, 1U);
    EXPECT_EQ(complaints(fitness), Lines());
}

// ---- crossings ----

TEST(Fitness, PartsThatCross) {
    const Fitness fitness = fitnessOf(boxTriangles({0, 0, 0}, {2, 2, 2}) + boxTriangles({1, 1, 1}, {3, 3, 3}));
    EXPECT_GT(fitness.crossings.pairs, 0U);
    EXPECT_EQ(fitness.boundaryEdges + fitness.nonManifoldEdges, 0U);
    const Lines found = complaints(fitness);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].starts_with(std::to_string(fitness.crossings.pairs) + " pairs of triangles cross, one of "
                                                                               "them near "))
        << found[0];
    EXPECT_TRUE(found[0].ends_with(": the surface passes through itself; unite the parts that overlap (orva union), or "
                                   "repair it where it was made"))
        << found[0];
}

TEST(Fitness, TriangleTwiceIsNoCrossingBesides) {
    std::vector<Triangle> triangles = unitBox();
    triangles.push_back({triangles[3][1], triangles[3][2], triangles[3][0]});
    EXPECT_EQ(fitnessOf(triangles).crossings.pairs, 0U);
}

TEST(Fitness, CrossingByLessThanTheToleranceIsANote) {
    const Fitness fitness =
        fitnessOf(boxTriangles({0, 0, 0}, {2, 2, 2}) + boxTriangles({2 - 1e-6, 0.5, 0.5}, {3, 1.5, 1.5}));
    EXPECT_EQ(fitness.crossings.pairs, 0U);
    EXPECT_GT(fitness.crossings.shallow, 0U);
    EXPECT_EQ(complaints(fitness), Lines());
    EXPECT_EQ(remarks(fitness), Lines{std::to_string(fitness.crossings.shallow) +
                                      " pairs of triangles cross by less than 8e-06, as in results of booleans"});
}

// ---- by index ----

TEST(Fitness, TwoVerticesInOnePositionAreTwoByIndex) {
    // Boxes that touch along an edge: by position four triangles meet there, by index two and two.
    Model model = modelOf(meshOf(unitBox() + boxTriangles({1, 1, 0}, {2, 2, 1})));
    model.indices.reserve(72);
    for (const auto& first : {unitBox(), boxTriangles({1, 1, 0}, {2, 2, 1})}) {
        const SharedVertices part = shareVertices(meshOf(first));
        const std::size_t base = model.indices.empty() ? 0 : 8;
        for (const std::size_t corner : part.corners) {
            model.indices.push_back(static_cast<std::uint32_t>(base + corner));
        }
    }
    Fitness fitness = measureFitness(model);
    EXPECT_TRUE(fitness.ownIndices);
    EXPECT_TRUE(isEdgeManifold(fitness.byIndex));
    EXPECT_EQ(fitness.byIndex.vertices, 16U);
    EXPECT_EQ(fitness.byIndex.umbrellas, 0U);
    EXPECT_EQ(fitness.nonManifoldEdges, 1U);

    model.indices.clear();
    fitness = measureFitness(model);
    EXPECT_FALSE(fitness.ownIndices);
    EXPECT_EQ(fitness.byIndex.doubledEdges, 1U);
    EXPECT_EQ(fitness.byIndex.vertices, 14U);
}

// ---- parts and the inside ----

TEST(Fitness, TwoParts) {
    const Fitness fitness = fitnessOf(unitBox() + boxTriangles({5, 0, 0}, {6, 1, 1}));
    EXPECT_EQ(fitness.parts, 2U);
    EXPECT_EQ(complaints(fitness), Lines());
}

TEST(Fitness, PartsThatTouchInACornerAreTwo) {
    const Fitness fitness = fitnessOf(unitBox() + boxTriangles({1, 1, 1}, {2, 2, 2}));
    EXPECT_EQ(fitness.parts, 2U);
    EXPECT_EQ(complaints(fitness), Lines());
}

TEST(Fitness, HollowIsNoDefect) {
    const Fitness fitness = fitnessOf(boxTriangles({-1, -1, -1}, {2, 2, 2}) + turned(unitBox()));
    EXPECT_EQ(fitness.parts, 2U);
    EXPECT_EQ(fitness.insideOutParts, 0U);
    EXPECT_DOUBLE_EQ(fitness.volume, 26.0);
    EXPECT_EQ(complaints(fitness), Lines());
}

TEST(Fitness, OneOfTwoPartsInsideOut) {
    const Fitness fitness =
        fitnessOf(boxTriangles({-1, -1, -1}, {2, 2, 2}) + turned(boxTriangles({5, 0, 0}, {6, 1, 1})));
    EXPECT_EQ(fitness.insideOutParts, 1U);
    EXPECT_EQ(complaints(fitness), Lines{"1 part is inside out; turn its triangles around"});
}

TEST(Fitness, InsideOut) {
    const Fitness fitness = fitnessOf(turned(unitBox()));
    EXPECT_EQ(fitness.flippedEdges, 0U);
    EXPECT_DOUBLE_EQ(fitness.volume, -1.0);
    EXPECT_EQ(complaints(fitness),
              Lines{"its volume is negative, -1: it is inside out; turn all of its triangles around"});
}

TEST(Fitness, SheetOfTwoSidesEnclosesNothing) {
    const std::vector<Triangle> sheet{{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}}, {{{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}}};
    const Lines found = complaintsOf(sheet + turned(sheet));
    ASSERT_EQ(found.size(), 3U); // duplicates, an edge of four, and this
    EXPECT_EQ(found.back(), "it encloses no volume; give it a thickness");
}

// ---- triangles ----

TEST(Fitness, TrianglesWithoutArea) {
    const std::string line = " no area, and parts of the result can vanish there; take them away";
    // On a line, and in a point.
    Fitness fitness = fitnessOf(unitBox() + std::vector<Triangle>{{{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}}});
    EXPECT_EQ(fitness.degenerate, 1U);
    EXPECT_EQ(fitness.boundaryEdges + fitness.nonManifoldEdges, 0U);
    EXPECT_EQ(complaints(fitness), Lines{"1 triangle has" + line});

    fitness = fitnessOf(unitBox() + std::vector<Triangle>(2, {{{0, 0, 0}, {1, 0, 0}, {0, 0, 0}}}));
    EXPECT_EQ(fitness.degenerate, 2U);
    EXPECT_EQ(fitness.thin, 0U);
    EXPECT_EQ(complaints(fitness).back(), "2 triangles have" + line);
}

// Why that is worth a complaint: the same box, but for a triangle without area that comes first.
TEST(Fitness, TriangleWithoutAreaSpoilsAUnion) {
    const Mesh spoilt =
        meshOf(std::vector<Triangle>{{{{2, 0, 0}, {2, 1, 0}, {2, 2, 0}}}} + boxTriangles({0, 0, 0}, {2, 2, 2}));
    Mesh result;
    bspcsg::unionMesh(result, spoilt, box({1, 1, 1}, {3, 3, 3}));
    EXPECT_LT(measureFitness(modelOf(result)).volume, 8.0); // of 15
}

TEST(Fitness, TrianglesNarrowerThanTheTolerance) {
    const Fitness fitness =
        fitnessOf({{{{0, 0, 0}, {1, 0, 0}, {0.5, 5e-7, 0}}}, {{{0, 0, 0}, {1, 0, 0}, {0.5, 2e-6, 0}}}});
    EXPECT_EQ(fitness.thin, 1U);
    EXPECT_EQ(remarks(fitness).back(), "1 triangle is narrower than the tolerance of 1e-06");
}

// ---- size ----

TEST(Fitness, Tiny) {
    EXPECT_EQ(complaintsOf(boxTriangles({0, 0, 0}, {4e-5, 2e-5, 2e-5})),
              Lines{"it is 4e-05 across, and what is closer than the tolerance of 1e-06 counts as one place; scale it "
                    "by 1e5 or so (orva convert --scale)"});
    EXPECT_EQ(complaintsOf(boxTriangles({7, 7, 7}, {7 + 2e-3, 7 + 1e-4, 7 + 1e-4})), Lines());
}

TEST(Fitness, Huge) {
    EXPECT_EQ(complaintsOf(boxTriangles({0, 0, 0}, {1, 1, 4e12})),
              Lines{"coordinates go up to 4e+12, where doubles are 0.0005 apart: too coarse for the tolerance of 1e-06;"
                    " scale it by 1e-9 or so (orva convert --scale)"});
    EXPECT_EQ(complaintsOf(boxTriangles({0, 0, 0}, {1, 1, 9e8})), Lines());
}

TEST(Fitness, FarAway) {
    EXPECT_EQ(complaintsOf(boxTriangles({-4e12, 0, 0}, {1 - 4e12, 1, 1})),
              Lines{"coordinates go up to 4e+12, where doubles are 0.0005 apart: too coarse for the tolerance of 1e-06;"
                    " move the mesh to the origin (orva convert --move)"});
}

TEST(Fitness, OfAnySizeWhereTheUnitIsChosen) {
    for (const double size : {1e-9, 1e-5, 1.0, 1e12}) {
        const Fitness fitness = fitnessOf(boxTriangles({0, 0, 0}, {size, size, size}));
        EXPECT_EQ(complaints(fitness, true), Lines()) << size;
        EXPECT_EQ(complaints(fitness).empty(), size == 1.0) << size;
    }
    // What no unit helps.
    EXPECT_EQ(complaints(fitnessOf(boxTriangles({-4e12, 0, 0}, {1 - 4e12, 1, 1})), true).size(), 1U);
    const std::vector<Triangle> sheet{{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}}, {{{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}}};
    EXPECT_EQ(complaints(fitnessOf(sheet + turned(sheet)), true).back(), "it encloses no volume; give it a thickness");
}

TEST(Fitness, BeyondWhatCanBeMultiplied) {
    const Lines found = complaintsOf(boxTriangles({0, 0, 0}, {1e300, 1e300, 1e300}));
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.back(), "coordinates go up to 1e+300, where doubles are 1e+284 apart: too coarse for the tolerance "
                            "of 1e-06; scale it by 1e-297 or so (orva convert --scale)");
}

} // namespace
} // namespace orva::program

#include "measures/closedness.hpp"

#include "mesh/vectors.hpp"
#include "samples.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace orva::program {
namespace {

constexpr double tolerance = CLOSING_TOLERANCE;

std::vector<Triangle> unitBox() {
    return boxTriangles({0, 0, 0}, {1, 1, 1});
}

// Cuts the triangle at the middle of its first edge, moved by `aside`; its neighbour there knows nothing of it.
void cut(std::vector<Triangle>& triangles, std::size_t index, const Vec3& aside) {
    const Triangle whole = triangles[index];
    const Vec3 middle = 0.5 * (whole[0] + whole[1]) + aside;
    triangles[index] = {whole[0], middle, whole[2]};
    triangles.push_back({middle, whole[1], whole[2]});
}

void expectClosed(const std::vector<Triangle>& triangles) {
    const Closedness closedness = measureClosedness(meshOf(triangles), tolerance);
    EXPECT_EQ(closedness.openEdges, 0U);
    EXPECT_EQ(closedness.largestGap, 0.0);
}

TEST(Closedness, ClosedBox) {
    expectClosed(unitBox());
}

TEST(Closedness, NoTriangles) {
    expectClosed({});
}

TEST(Closedness, ClosedBoxFarFromTheOrigin) {
    expectClosed(boxTriangles({1e6, 1e6, 1e6}, {1e6 + 1, 1e6 + 1, 1e6 + 1}));
}

TEST(Closedness, BoxInsideOut) {
    std::vector<Triangle> triangles = unitBox();
    for (Triangle& triangle : triangles) std::reverse(triangle.begin(), triangle.end());
    expectClosed(triangles);
}

TEST(Closedness, BoxesThatShareAnEdge) {
    std::vector<Triangle> triangles = unitBox();
    const std::vector<Triangle> other = boxTriangles({1, 1, 0}, {2, 2, 1});
    triangles.insert(triangles.end(), other.begin(), other.end());
    expectClosed(triangles);
}

TEST(Closedness, BoxWithTJunctions) {
    std::vector<Triangle> triangles = unitBox();
    for (std::size_t i = 0; i < 12; ++i) cut(triangles, i, {0, 0, 0});
    expectClosed(triangles);
}

TEST(Closedness, TJunctionsUpToTheToleranceAside) {
    std::vector<Triangle> triangles = unitBox();
    cut(triangles, 0, {0.5 * tolerance, 0, 0.5 * tolerance});
    cut(triangles, 5, {0, -0.5 * tolerance, 0});
    expectClosed(triangles);
}

TEST(Closedness, TJunctionFartherAsideThanTheTolerance) {
    std::vector<Triangle> triangles = unitBox();
    cut(triangles, 0, {10 * tolerance, 0, 0}); // the first edge runs along y: the crack is a thin triangle
    const Closedness closedness = measureClosedness(meshOf(triangles), tolerance);
    EXPECT_EQ(closedness.openEdges, 3U);
    EXPECT_NEAR(closedness.largestGap, 10 * tolerance, 1e-9);
}

// As after two cuts at planes that differ by less than they tell apart: no two corners meet exactly.
TEST(Closedness, CornersScatteredWithinTheTolerance) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> within(-1e-6, 1e-6);
    std::vector<Triangle> triangles = unitBox();
    cut(triangles, 3, {0, 0, 0});
    for (Triangle& triangle : triangles) {
        for (Vec3& corner : triangle) {
            const double x = within(random);
            const double y = within(random);
            const double z = within(random);
            corner = corner + Vec3{x, y, z};
        }
    }
    expectClosed(triangles);
}

TEST(Closedness, SliversThinnerThanTheTolerance) {
    std::vector<Triangle> triangles = unitBox();
    const Vec3 a = triangles[0][0];
    const Vec3 b = triangles[0][1];
    triangles.push_back({a, b, 0.3 * a + 0.7 * b + Vec3{0, 0, 1e-6}});
    triangles.push_back({a, a + Vec3{1e-6, 0, 0}, a + Vec3{0, 1e-6, 0}});
    expectClosed(triangles);
}

TEST(Closedness, OpenBox) {
    std::vector<Triangle> triangles = unitBox();
    triangles.resize(10); // no top
    const Closedness closedness = measureClosedness(meshOf(triangles), tolerance);
    EXPECT_EQ(closedness.openEdges, 4U);
    EXPECT_DOUBLE_EQ(closedness.largestGap, 0.5); // from the middle of one side to the sides next to it
}

TEST(Closedness, TriangleThatIsThereTwice) {
    std::vector<Triangle> triangles = unitBox();
    triangles.push_back(triangles.front());
    EXPECT_EQ(measureClosedness(meshOf(triangles), tolerance).openEdges, 3U);
}

TEST(Closedness, TriangleTurnedAround) {
    std::vector<Triangle> triangles = unitBox();
    std::reverse(triangles.front().begin(), triangles.front().end());
    EXPECT_EQ(measureClosedness(meshOf(triangles), tolerance).openEdges, 6U); // each of three, twice one way
}

// Welding chains of near vertices must not open what is closed without it.
TEST(Closedness, FineMeshSmallerThanTheTolerance) {
    std::vector<Triangle> triangles;
    constexpr int steps = 40;
    const auto at = [](int i, int j) { // on a cone of 3e-5 in height and width, around a closed ring
        const double angle = 2 * 3.14159265358979 * (i % steps) / steps;
        return Vec3{1e-6 * j * std::cos(angle), 1e-6 * j * std::sin(angle), 1e-6 * j};
    };
    for (int i = 0; i < steps; ++i) {
        for (int j = 0; j < 30; ++j) {
            triangles.push_back({at(i, j), at(i, j + 1), at(i + 1, j + 1)});
            triangles.push_back({at(i, j), at(i + 1, j + 1), at(i + 1, j)});
        }
        triangles.push_back({Vec3{0, 0, 3e-5}, at(i + 1, 30), at(i, 30)});
    }
    expectClosed(triangles);
}

} // namespace
} // namespace orva::program

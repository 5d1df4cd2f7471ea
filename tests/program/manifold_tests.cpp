// By index: what other programs than booleans ask of a mesh.
#include "measures/manifold.hpp"

#include <gtest/gtest.h>

namespace orva::program {
namespace {

using Indices = std::vector<std::size_t>;

const Indices tetrahedron{0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3};

Indices operator+(Indices a, const Indices& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The tetrahedron with other numbers.
Indices with(std::size_t v0, std::size_t v1, std::size_t v2, std::size_t v3) {
    Indices numbers;
    for (const std::size_t vertex : tetrahedron) numbers.push_back(Indices{v0, v1, v2, v3}[vertex]);
    return numbers;
}

TEST(Manifold, Tetrahedron) {
    const Manifold manifold = measureManifold(tetrahedron, 4);
    EXPECT_TRUE(isEdgeManifold(manifold));
    EXPECT_EQ(manifold.vertices, 4U);
    EXPECT_EQ(manifold.umbrellas, 0U);
}

TEST(Manifold, NoTriangles) {
    EXPECT_TRUE(isEdgeManifold(measureManifold({}, 0)));
    EXPECT_EQ(measureManifold({}, 5).vertices, 0U); // none of them is used
}

TEST(Manifold, OpenEdges) {
    const Manifold manifold = measureManifold({0, 2, 1, 0, 1, 3, 1, 2, 3}, 4);
    EXPECT_FALSE(isEdgeManifold(manifold));
    EXPECT_EQ(manifold.openEdges, 3U);
    EXPECT_EQ(manifold.umbrellas, 0U); // a fan may be open
}

TEST(Manifold, TurnedTriangle) {
    const Manifold manifold = measureManifold({0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 3, 0}, 4);
    EXPECT_FALSE(isEdgeManifold(manifold));
    EXPECT_EQ(manifold.turnedEdges, 3U);
    EXPECT_EQ(manifold.openEdges + manifold.doubledEdges, 0U);
}

TEST(Manifold, EdgeOfFourTriangles) {
    const Manifold manifold = measureManifold(tetrahedron + with(0, 1, 4, 5), 6);
    EXPECT_FALSE(isEdgeManifold(manifold));
    EXPECT_EQ(manifold.doubledEdges, 1U);
    EXPECT_EQ(manifold.openEdges + manifold.turnedEdges, 0U);
    EXPECT_EQ(manifold.umbrellas, 0U); // its triangles hang together by that edge
}

TEST(Manifold, TwoFansAtAVertex) {
    Manifold manifold = measureManifold(tetrahedron + with(0, 4, 5, 6), 7);
    EXPECT_TRUE(isEdgeManifold(manifold));
    EXPECT_EQ(manifold.umbrellas, 1U);
    manifold = measureManifold(tetrahedron + with(0, 4, 5, 6) + with(0, 7, 8, 9), 10);
    EXPECT_EQ(manifold.umbrellas, 1U);                               // one vertex, however many fans
    EXPECT_EQ(measureManifold({0, 1, 2, 0, 3, 4}, 5).umbrellas, 1U); // open ones, too
}

TEST(Manifold, TrianglesWithAVertexTwice) {
    const Manifold manifold = measureManifold(tetrahedron + Indices{0, 0, 1, 3, 2, 3, 5, 5, 5}, 6);
    EXPECT_FALSE(isEdgeManifold(manifold));
    EXPECT_EQ(manifold.collapsed, 3U);
    EXPECT_EQ(manifold.openEdges + manifold.doubledEdges + manifold.turnedEdges, 0U);
    EXPECT_EQ(manifold.umbrellas, 0U);
    EXPECT_EQ(manifold.vertices, 5U);
}

} // namespace
} // namespace orva::program

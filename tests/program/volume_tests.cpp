#include "measures/volume.hpp"

#include "samples.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace orva::program {
namespace {

TEST(Volume, OfABox) {
    EXPECT_DOUBLE_EQ(signedVolume(box({-1, -2, -3}, {1, 2, 3})), 48.0);
}

TEST(Volume, OfNothing) {
    EXPECT_EQ(signedVolume({}), 0.0);
}

TEST(Volume, IsNegativeInsideOut) {
    Mesh mesh = box({0, 0, 0}, {1, 1, 1});
    std::reverse(mesh.vertices.begin(), mesh.vertices.end());
    EXPECT_DOUBLE_EQ(signedVolume(mesh), -1.0);
}

TEST(Volume, KeepsItsDigitsFarFromTheOrigin) {
    EXPECT_DOUBLE_EQ(signedVolume(box({1e9, 1e9, -1e9}, {1e9 + 1, 1e9 + 1, -1e9 + 1})), 1.0);
}

TEST(Volume, OfTwoBoxesApart) {
    std::vector<Triangle> triangles = boxTriangles({0, 0, 0}, {1, 1, 1});
    const std::vector<Triangle> other = boxTriangles({5, 5, 5}, {7, 7, 7});
    triangles.insert(triangles.end(), other.begin(), other.end());
    EXPECT_DOUBLE_EQ(signedVolume(meshOf(triangles)), 9.0);
}

} // namespace
} // namespace orva::program

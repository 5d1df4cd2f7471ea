// The opinion that the other tests ask, itself asked.
#include "indexed.hpp"

namespace orva::test {

TEST(Checker, TakesABoxForClosed) {
    const tidy::Solid box = indexed(unitCube());
    EXPECT_TRUE(isClosed(box));
    EXPECT_TRUE(isWhole(box));
    EXPECT_EQ(box.vertices.size(), 8U);
    EXPECT_DOUBLE_EQ(volume(box), 1.0);
    EXPECT_DOUBLE_EQ(area(box), 6.0);
}

TEST(Checker, CountsTheEdgesAroundAMissingFace) {
    tidy::Solid box = indexed(unitCube());
    box.faces.pop_back();
    EXPECT_EQ(count(box).openEdges, 3U);
    EXPECT_FALSE(isClosed(box));
}

TEST(Checker, SeesAFaceThatIsThereTwice) {
    tidy::Solid box = indexed(unitCube());
    box.faces.push_back(box.faces.front());
    EXPECT_EQ(count(box).repeatedEdges, 3U);
    EXPECT_FALSE(isClosed(box));
}

TEST(Checker, SeesAFaceThatIsTurnedAround) {
    tidy::Solid box = indexed(unitCube());
    std::swap(box.faces[0][0], box.faces[0][1]);
    EXPECT_FALSE(isClosed(box));
}

TEST(Checker, SeesTwoBoxesThatShareAVertex) {
    const tidy::Solid both = indexed(joined(unitCube(), box({1, 1, 1}, {2, 2, 2})));
    EXPECT_EQ(count(both).dividedVertices, 1U);
    EXPECT_FALSE(isClosed(both));
}

TEST(Checker, SeesTwoBoxesThatShareAnEdge) {
    const tidy::Solid both = indexed(joined(unitCube(), box({1, 1, 0}, {2, 2, 1})));
    EXPECT_EQ(count(both).repeatedEdges, 2U);
    EXPECT_FALSE(isClosed(both));
}

TEST(Checker, SeesAFaceWithEqualCornersAndAVertexInNoFace) {
    tidy::Solid box = indexed(unitCube());
    box.faces.push_back({0, 1, 1});
    box.vertices.emplace_back();
    EXPECT_EQ(count(box).badFaces, 1U);
    EXPECT_EQ(count(box).unusedVertices, 1U);
    EXPECT_FALSE(isWhole(box));
}

} // namespace orva::test

#include "mesh/convert.hpp"
#include "polygons.hpp"

#include <cmath>

namespace orva::bspcsg {

using test::Mesh;

namespace {

Mesh pointsInSpace(int count) {
    Mesh mesh;
    for (int i = 0; i < count; ++i) mesh.vertices.push_back(test::at(i, i * i, 1));
    return mesh;
}

} // namespace

TEST(MeshToPolygons, WithoutVerticesLeavesTheListAlone) {
    PolygonList list = listOf({level(1)});
    meshToPolygons(Mesh{}, list);
    EXPECT_TRUE(sameBits(list, listOf({level(1)})));
}

TEST(MeshToPolygons, OfOneOrTwoVerticesIsEmpty) {
    for (const int count : {1, 2}) {
        PolygonList list = listOf({level(1)});
        meshToPolygons(pointsInSpace(count), list);
        EXPECT_TRUE(list.empty());
    }
}

TEST(MeshToPolygons, LeavesOutVerticesBehindTheLastTriangle) {
    PolygonList list;
    meshToPolygons(pointsInSpace(7), list);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1].vertices[2].pos.x, 5.0);
}

TEST(MeshToPolygons, KeepsEveryValueOfATriangle) {
    const Mesh mesh{{{{0, 0, 0}, {1, 2, 3}, {4, 5}}, {{1, 0, 0}, {-0.0, 7, 8}, {9, 10}}, {{0, 1, 0}, {}, {11, 12}}}};
    PolygonList list;
    meshToPolygons(mesh, list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_TRUE(sameBits(list[0].plane, {{0, 0, 1}, 0}));
    for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(test::sameBits(list[0].vertices[i], mesh.vertices[i]));
}

TEST(MeshToPolygons, KeepsDegenerateTriangles) {
    PolygonList list;
    meshToPolygons(test::triangle({1, 1, 1}, {1, 1, 1}, {2, 3, 4}), list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_TRUE(std::isnan(list[0].plane.normal.x) && std::isnan(list[0].plane.w));
}

TEST(MeshToPolygons, ReplacesAListOfLargerPolygons) {
    PolygonList list = listOf({polygon({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}), Polygon(), level(3)});
    meshToPolygons(test::triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}), list);
    EXPECT_TRUE(sameBits(list, listOf({polygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})})));
}

TEST(PolygonsToMesh, FansFromTheFirstVertex) {
    Mesh mesh;
    polygonsToMesh(listOf({polygon({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}})}), mesh);
    std::vector<double> xy;
    for (const Vertex& vertex : mesh.vertices) xy.push_back(vertex.pos.x + 10 * vertex.pos.y);
    EXPECT_EQ(xy, (std::vector<double>{0, 1, 11, 0, 11, 10}));
}

TEST(PolygonsToMesh, GivesThreeTrianglesForAPentagonAndNoneForALine) {
    Mesh mesh;
    polygonsToMesh(listOf({polygon({{0, 0, 0}, {1, 0, 0}})}), mesh);
    EXPECT_TRUE(mesh.vertices.empty());
    polygonsToMesh(listOf({Polygon(), polygon({{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {1, 2, 0}, {0, 1, 0}})}), mesh);
    EXPECT_EQ(mesh.vertices.size(), 9U);
    EXPECT_EQ(mesh.vertices.capacity(), 9U) << "counted first, reserved exactly";
}

TEST(PolygonsToMesh, AppendsBehindWhatTheMeshHolds) {
    Mesh mesh = pointsInSpace(3);
    polygonsToMesh(listOf({level(4)}), mesh);
    ASSERT_EQ(mesh.vertices.size(), 6U);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(test::sameBits(mesh.vertices[i], pointsInSpace(3).vertices[i]));
    EXPECT_EQ(mesh.vertices[3].pos.z, 4.0);
}

TEST(MeshConversion, ThereAndBackRestoresEveryBit) {
    test::Random random(4);
    const Mesh mesh = test::soup(random, 50);
    PolygonList list;
    meshToPolygons(mesh, list);
    Mesh back;
    polygonsToMesh(list, back);
    EXPECT_TRUE(test::sameBits(back, mesh));
}

} // namespace orva::bspcsg

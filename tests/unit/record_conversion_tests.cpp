#include "capi/convert.hpp"
#include "polygons.hpp"

namespace orva::bspcsg {

TEST(MeshDToPolygons, ClearsTheListBeforeAnythingElse) {
    VertexD vertex{};
    for (const MeshD record : {MeshD{0, &vertex}, MeshD{-3, &vertex}, MeshD{3, nullptr}, MeshD{2, &vertex}}) {
        PolygonList list = listOf({level(1)});
        meshDToPolygons(&record, list);
        EXPECT_TRUE(list.empty()) << "count " << record.count;
    }
    PolygonList list = listOf({level(1)});
    meshDToPolygons(nullptr, list);
    EXPECT_TRUE(list.empty());
}

TEST(MeshDToPolygons, IsTheRuleOfTheMesh) {
    test::Random random(5);
    test::Mesh mesh = test::soup(random, 20);
    mesh.vertices.push_back(test::at(1, 2, 3));
    const MeshD record = test::viewOf(mesh);
    PolygonList list;
    meshDToPolygons(&record, list);
    EXPECT_TRUE(sameBits(list, polygonsOf(mesh)));
}

TEST(PolygonsToMeshD, OverwritesTheRecordWithANewArray) {
    VertexD kept{};
    MeshD record{7, &kept};
    polygonsToMeshD(listOf({polygon({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}), Polygon(), level(2)}), &record);
    ASSERT_EQ(record.count, 9);
    EXPECT_NE(record.vertices, &kept);
    EXPECT_EQ(record.vertices[4].pos[0], 1.0);
    EXPECT_EQ(record.vertices[8].pos[2], 2.0);
    orva_meshd_free_vertices(record.vertices);
}

TEST(PolygonsToMeshD, WritesNullForNothingAndLeavesANullRecordAlone) {
    VertexD kept{};
    MeshD record{7, &kept};
    polygonsToMeshD({}, &record);
    EXPECT_EQ(record.count, 0);
    EXPECT_EQ(record.vertices, nullptr);
    polygonsToMeshD(listOf({level(1)}), nullptr);
}

} // namespace orva::bspcsg

#include "orva/orva.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(CRecords, HaveTheLayoutThatTheHeaderDraws) {
    EXPECT_EQ(sizeof(VertexD), 64U);
    EXPECT_EQ(sizeof(VertexF), 32U);
    EXPECT_EQ(offsetof(VertexD, normal), 24U);
    EXPECT_EQ(offsetof(VertexD, aux), 48U);
    EXPECT_EQ(offsetof(MeshD, count), 0U);
    EXPECT_EQ(offsetof(MeshD, vertices), sizeof(void*));
    EXPECT_EQ(sizeof(MeshF), 2 * sizeof(void*));
}

TEST(CRecords, OfANegativeCountAreNull) {
    EXPECT_EQ(orva_meshd_create(-1), nullptr);
    EXPECT_EQ(orva_meshf_create(-1), nullptr);
}

TEST(CRecords, OfNoVerticesHaveANullArray) {
    MeshD* mesh = orva_meshd_create(0);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->count, 0);
    EXPECT_EQ(mesh->vertices, nullptr);
    orva_meshd_destroy(mesh);

    MeshF* single = orva_meshf_create(0);
    ASSERT_NE(single, nullptr);
    EXPECT_EQ(single->count, 0);
    EXPECT_EQ(single->vertices, nullptr);
    orva_meshf_destroy(single);
}

TEST(CRecords, HaveRoomForEveryVertex) {
    MeshD* mesh = orva_meshd_create(3);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->count, 3);
    std::memset(mesh->vertices, 1, std::size_t{3} * 64); // valgrind and the address sanitizer watch the ends
    orva_meshd_destroy(mesh);

    MeshF* single = orva_meshf_create(4);
    ASSERT_NE(single, nullptr);
    EXPECT_EQ(single->count, 4);
    std::memset(single->vertices, 1, std::size_t{4} * 32);
    orva_meshf_destroy(single);
}

TEST(CRecords, ArraysOfNoVerticesAreNull) {
    for (const int n : {0, -5}) {
        EXPECT_EQ(orva_meshd_alloc_vertices(n), nullptr);
        EXPECT_EQ(orva_meshf_alloc_vertices(n), nullptr);
    }
}

TEST(CRecords, ReleasingNullDoesNothing) {
    orva_meshd_destroy(nullptr);
    orva_meshf_destroy(nullptr);
    orva_meshd_free_vertices(nullptr);
    orva_meshf_free_vertices(nullptr);
}

TEST(CRecords, WhoseArrayTheHostTookAwayReleaseOnlyThemselves) {
    MeshD* mesh = orva_meshd_create(3);
    VertexD* taken = mesh->vertices;
    mesh->vertices = nullptr;
    orva_meshd_destroy(mesh);
    std::memset(taken, 1, std::size_t{3} * 64); // still the host's
    orva_meshd_free_vertices(taken);

    MeshF* single = orva_meshf_create(1);
    orva_meshf_free_vertices(single->vertices);
    single->vertices = orva_meshf_alloc_vertices(2);
    orva_meshf_destroy(single);
}

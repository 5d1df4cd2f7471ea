// What orva/orva.hpp takes and gives back, over a library of this file's own that counts arrays and fails on demand.
#include "orva/orva.hpp"

#include <gtest/gtest.h>

#include <set>

namespace {

std::set<VertexD*> arrays; // made and not yet released
bool outOfMemory = false;

} // namespace

VertexD* orva_meshd_alloc_vertices(int32_t n) {
    if (n < 1) return nullptr;
    if (outOfMemory) throw std::bad_alloc();
    auto* made = new VertexD[static_cast<std::size_t>(n)];
    arrays.insert(made);
    return made;
}

void orva_meshd_free_vertices(VertexD* vertices) {
    if (vertices == nullptr) return;
    EXPECT_EQ(arrays.erase(vertices), 1U) << "released twice, or never made";
    delete[] vertices;
}

// As the library leaves a record when its array cannot be had: the new count beside the old array.
void orva_bspcsg_union_mesh(MeshD* output, const MeshD* a, const MeshD*) {
    output->count = a->count;
    output->vertices = orva_meshd_alloc_vertices(a->count);
    std::copy(a->vertices, a->vertices + a->count, output->vertices);
}

void orva_bspcsg_subtract_multi_mesh(MeshD* output, const MeshD* base, const MeshD* cutters, int32_t) {
    orva_bspcsg_union_mesh(output, base, cutters);
}

namespace orva::c {

namespace {

class Ownership : public testing::Test {
protected:
    ~Ownership() override { EXPECT_TRUE(arrays.empty()) << arrays.size() << " arrays were never released"; }
};

Mesh numbered(std::size_t count) {
    Mesh mesh(count);
    for (std::size_t i = 0; i < count; ++i) mesh[i].aux[0] = static_cast<double>(i);
    return mesh;
}

} // namespace

TEST_F(Ownership, OfNothingTakesNothing) {
    const Mesh none;
    const Mesh empty(std::size_t{0});
    const Mesh copy(View{});
    EXPECT_TRUE(arrays.empty());
    EXPECT_TRUE(none.empty() && empty.empty() && copy.empty());
}

TEST_F(Ownership, EndsWithTheMesh) {
    {
        const Mesh mesh = numbered(3);
        EXPECT_EQ(arrays.size(), 1U);
    }
    EXPECT_TRUE(arrays.empty());
}

TEST_F(Ownership, MovesAlong) {
    Mesh first = numbered(3);
    const VertexD* vertices = first.data();
    Mesh second(std::move(first));
    EXPECT_EQ(second.data(), vertices);
    EXPECT_TRUE(first.empty());       // NOLINT: documented to be empty
    EXPECT_EQ(first.data(), nullptr); // NOLINT

    Mesh third = numbered(6);
    third = std::move(second);
    EXPECT_EQ(third.data(), vertices);
    EXPECT_EQ(third.size(), 3U);
    EXPECT_TRUE(second.empty()); // NOLINT
    EXPECT_EQ(arrays.size(), 1U) << "what it held before was released";
    static_assert(!std::is_copy_constructible_v<Mesh> && !std::is_copy_assignable_v<Mesh>);
    static_assert(std::is_nothrow_move_constructible_v<Mesh> && std::is_nothrow_move_assignable_v<Mesh>);
}

TEST_F(Ownership, StaysWhenAMeshIsMovedIntoItself) {
    Mesh mesh = numbered(3);
    Mesh& same = mesh;
    mesh = std::move(same);
    ASSERT_EQ(mesh.size(), 3U);
    EXPECT_EQ(mesh[2].aux[0], 2.0);
}

TEST_F(Ownership, ChangesWithASwap) {
    Mesh a = numbered(3);
    Mesh b;
    a.swap(b);
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(b.size(), 3U);
}

TEST_F(Ownership, IsGivenAwayAndTakenOver) {
    Mesh mesh = numbered(3);
    const MeshD record = mesh.release();
    EXPECT_TRUE(mesh.empty());
    EXPECT_EQ(record.count, 3);
    const Mesh again(record);
    EXPECT_EQ(again.data(), record.vertices);
    EXPECT_EQ(arrays.size(), 1U);
}

TEST_F(Ownership, OfACopyIsItsOwn) {
    const Mesh mesh = numbered(3);
    const Mesh copy{View(mesh)};
    EXPECT_NE(copy.data(), mesh.data());
    EXPECT_EQ(copy[2].aux[0], 2.0);
    EXPECT_EQ(arrays.size(), 2U);
}

TEST_F(Ownership, OfTheOutputIsReplacedByAResult) {
    const Mesh a = numbered(3);
    Mesh output = numbered(6);
    unionMesh(output, a, a);
    EXPECT_EQ(output.size(), 3U);
    subtractMultiMesh(output, a, {a, a});
    EXPECT_EQ(arrays.size(), 2U);
    unionMesh(output, output, output);
    ASSERT_EQ(output.size(), 3U);
    EXPECT_EQ(output[2].aux[0], 2.0);
    EXPECT_EQ(arrays.size(), 2U);
}

TEST_F(Ownership, IsAsItWasWhenMemoryRunsOut) {
    const Mesh a = numbered(3);
    Mesh output = numbered(6);
    const VertexD* vertices = output.data();
    outOfMemory = true;
    EXPECT_THROW(unionMesh(output, a, a), std::bad_alloc);
    EXPECT_THROW(subtractMultiMesh(output, a, {a}), std::bad_alloc);
    EXPECT_THROW(Mesh{std::size_t{3}}, std::bad_alloc);
    EXPECT_THROW(Mesh{View(a)}, std::bad_alloc);
    outOfMemory = false;
    EXPECT_EQ(output.data(), vertices);
    EXPECT_EQ(output.size(), 6U);
    EXPECT_EQ(arrays.size(), 2U);
}

} // namespace orva::c

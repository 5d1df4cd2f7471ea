#include "operations.hpp"

namespace orva::test {

namespace {

const Mesh cube = unitCube();

// A record whose contents a call must not touch.
struct Untouched {
    VertexD vertex{};
    MeshD record{77, &vertex};
    bool holds() const { return record.count == 77 && record.vertices == &vertex; }
};

} // namespace

TEST(COperations, WithANullPointerWriteNothing) {
    const MeshD a = viewOf(cube);
    for (const TwoMeshOperation& operation : twoMeshOperations) {
        SCOPED_TRACE(operation.name);
        Untouched output;
        operation.c(nullptr, &a, &a);
        operation.c(&output.record, nullptr, &a);
        operation.c(&output.record, &a, nullptr);
        EXPECT_TRUE(output.holds());
    }
}

TEST(COperations, OfEmptyRecordsGiveAnEmptyRecord) {
    const MeshD full = viewOf(cube);
    VertexD vertex{};
    const MeshD noCount{0, &vertex};
    const MeshD noArray{36, nullptr};
    for (const TwoMeshOperation& operation : twoMeshOperations) {
        for (const auto& [a, b] : {std::pair{&noCount, &noCount},
                                   {&noCount, &full},
                                   {&full, &noCount},
                                   {&noArray, &full},
                                   {&full, &noArray}}) {
            SCOPED_TRACE(operation.name);
            Untouched output;
            operation.c(&output.record, a, b);
            EXPECT_EQ(output.record.count, 0);
            EXPECT_EQ(output.record.vertices, nullptr);
        }
    }
}

TEST(COperations, IgnoreAVertexBehindTheLastTriangle) {
    Mesh mesh = triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    Mesh four = mesh;
    four.vertices.push_back(at(9, 9, 9));
    const Mesh far = moved(cube, {5, 5, 5});
    const Mesh result = unite.throughC(four, far);
    EXPECT_FALSE(result.vertices.empty());
    EXPECT_TRUE(sameBits(result, unite.throughC(mesh, far)));
}

TEST(COperations, OfDistantCubesKeepTheirTriangles) {
    const Mesh far = moved(cube, {5, 5, 5});
    const Mesh both = unite.throughC(cube, far);
    EXPECT_EQ(both.vertices.size(), 72U);
    EXPECT_TRUE(sameTriangles(both, joined(cube, far)));

    Untouched output;
    const MeshD a = viewOf(cube);
    const MeshD b = viewOf(far);
    orva_bspcsg_intersect_mesh(&output.record, &a, &b);
    EXPECT_EQ(output.record.count, 0);
    EXPECT_EQ(output.record.vertices, nullptr);
}

TEST(COperations, CarryNormalsAndAuxOfWhateverIsNotCut) {
    Random random(13);
    Mesh a = cube;
    for (Vertex& vertex : a.vertices) {
        vertex.normal = {random.uniform(-9, 9), -0.0, random.uniform(-9, 9)};
        vertex.aux = {random.uniform(-9, 9), random.uniform(-9, 9)};
    }
    const Mesh b = moved(a, {5, 5, 5});
    EXPECT_TRUE(sameTriangles(unite.throughC(a, b), joined(a, b)));
}

TEST(COperations, LeaveTheOldArrayOfTheOutputToTheHost) {
    const MeshD a = viewOf(cube);
    const Mesh far = moved(cube, {5, 5, 5});
    const MeshD b = viewOf(far);
    MeshD* output = orva_meshd_create(3);
    VertexD* old = output->vertices;
    old[0].pos[0] = 123;
    orva_bspcsg_union_mesh(output, &a, &b);
    EXPECT_NE(output->vertices, old);
    EXPECT_EQ(old[0].pos[0], 123);
    orva_meshd_free_vertices(old);
    orva_meshd_destroy(output);
}

TEST(COperations, IntoOneOfTheirInputs) {
    const Mesh other = box({0.5, 0.5, 0.5}, {2, 2, 2});
    const Mesh expected = subtract(cube, other);
    MeshD a = viewOf(cube);
    const MeshD b = viewOf(other);
    orva_bspcsg_subtract_mesh(&a, &a, &b);
    EXPECT_TRUE(sameBits(meshOf(a), expected));
    orva_meshd_free_vertices(a.vertices);
}

TEST(COperations, GiveTheBitsOfTheNamespacedOnes) {
    Random random(14);
    const Mesh a = turned(icosphere(2, {0, 0, 0}, 1), random);
    const Mesh b = turned(cube, random);
    for (const TwoMeshOperation& operation : twoMeshOperations) {
        EXPECT_FALSE(operation(a, b).vertices.empty());
        EXPECT_TRUE(sameBits(operation(a, b), operation.throughC(a, b)));
    }
}

} // namespace orva::test

#include "measures.hpp"
#include "operations.hpp"

#include <cmath>
#include <limits>

namespace orva::test {

namespace {

const Mesh cube = unitCube();
const Mesh shiftedCube = box({0.5, 0.25, 0.25}, {1.5, 0.75, 2});

} // namespace

TEST(Operations, AppendBehindWhatTheOutputHolds) {
    for (const TwoMeshOperation& operation : twoMeshOperations) {
        SCOPED_TRACE(operation.name);
        Mesh output = triangle({7, 8, 9}, {1, 2, 3}, {4, 5, 6});
        const Mesh before = output;
        operation.cpp(output, cube, shiftedCube);
        EXPECT_TRUE(sameBits(output, joined(before, operation(cube, shiftedCube))));
    }
}

TEST(Operations, WithAnEmptyOperandAppendNothing) {
    Mesh twoPoints;
    twoPoints.vertices.resize(2);
    for (const Mesh& empty : {Mesh{}, twoPoints}) {
        for (const TwoMeshOperation& operation : twoMeshOperations) {
            SCOPED_TRACE(operation.name);
            EXPECT_TRUE(operation(cube, empty).vertices.empty());
            EXPECT_TRUE(operation(empty, cube).vertices.empty());
            EXPECT_TRUE(operation(empty, empty).vertices.empty());
        }
    }
}

TEST(Operations, OfDisjointCubesKeepTheirTriangles) {
    const Mesh far = moved(cube, {5, 5, 5});
    EXPECT_TRUE(sameTriangles(unite(cube, far), joined(cube, far)));
    EXPECT_TRUE(intersect(cube, far).vertices.empty());
    EXPECT_TRUE(sameTriangles(subtract(cube, far), cube));
}

TEST(Operations, OfDisjointSpheresKeepTheirVolumes) {
    const Mesh a = icosphere(2, {0, 0, 0}, 1);
    const Mesh b = icosphere(2, {1.5, 1.5, 1.5}, 1);
    EXPECT_NEAR(volume(unite(a, b)), volume(a) + volume(b), 1e-9);
    EXPECT_TRUE(intersect(a, b).vertices.empty());
    EXPECT_NEAR(volume(subtract(a, b)), volume(a), 1e-9);
}

TEST(Operations, OfCrossingBoxesHaveTheirVolumes) {
    EXPECT_NEAR(volume(unite(cube, shiftedCube)), 1 + 0.875 - 0.1875, 1e-12);
    EXPECT_NEAR(volume(intersect(cube, shiftedCube)), 0.1875, 1e-12);
    EXPECT_NEAR(volume(subtract(cube, shiftedCube)), 1 - 0.1875, 1e-12);
    EXPECT_NEAR(volume(subtract(shiftedCube, cube)), 0.875 - 0.1875, 1e-12) << "the order counts";
}

TEST(Operations, OfASolidInsideAnother) {
    const Mesh inner = box({0.25, 0.25, 0.25}, {0.75, 0.75, 0.75});
    EXPECT_NEAR(volume(unite(cube, inner)), 1, 1e-12);
    EXPECT_NEAR(volume(intersect(cube, inner)), 0.125, 1e-12);
    EXPECT_NEAR(volume(subtract(cube, inner)), 0.875, 1e-12) << "a cavity";
    EXPECT_TRUE(subtract(inner, cube).vertices.empty());
}

TEST(Operations, OfAMeshWithItself) {
    for (const Mesh& mesh : {cube, icosphere(2, {0.1, 0.2, 0.3}, 1)}) {
        EXPECT_NEAR(volume(unite(mesh, mesh)), volume(mesh), 1e-9);
        EXPECT_NEAR(volume(intersect(mesh, mesh)), volume(mesh), 1e-9);
        EXPECT_NEAR(volume(subtract(mesh, mesh)), 0, 1e-9);
    }
}

TEST(Operations, OfCubesThatTouch) {
    for (const Vec3& by :
         {Vec3{1, 0, 0}, Vec3{1, 1, 0}, Vec3{1, 1, 1}, Vec3{1, 0.5, 0}}) { // face, edge, corner, part of a face
        SCOPED_TRACE(testing::Message() << by.x << " " << by.y << " " << by.z);
        const Mesh other = moved(cube, by);
        EXPECT_NEAR(volume(unite(cube, other)), 2, 1e-12);
        EXPECT_NEAR(volume(intersect(cube, other)), 0, 1e-12);
        EXPECT_NEAR(volume(subtract(cube, other)), 1, 1e-12);
    }
}

TEST(Operations, WallsLeftByTheCutterCarryItsValuesTurnedAround) {
    Mesh cutter = box({0.25, 0.25, -1}, {0.75, 0.75, 2});
    for (Vertex& vertex : cutter.vertices) vertex.aux = {42, 43};
    int walls = 0;
    for (const Vertex& vertex : subtract(cube, cutter).vertices) {
        if (vertex.aux[0] != 42) continue;
        ++walls;
        EXPECT_EQ(vertex.aux[1], 43) << "the same at all three corners, so the same everywhere";
        const double x = vertex.pos.x - 0.5;
        const double y = vertex.pos.y - 0.5;
        EXPECT_LT(vertex.normal.x * x + vertex.normal.y * y, 0) << "into the hole, away from the solid";
    }
    EXPECT_GT(walls, 0);
}

TEST(Operations, ThatCutNothingLeaveNormalsAndAuxAsTheyWere) {
    Random random(11);
    Mesh a = cube;
    for (Vertex& vertex : a.vertices) {
        vertex.normal = {random.uniform(-9, 9), random.uniform(-9, 9), -0.0};
        vertex.aux = {random.uniform(-9, 9), random.uniform(-9, 9)};
    }
    const Mesh b = moved(a, {5, 5, 5});
    EXPECT_TRUE(sameTriangles(unite(a, b), joined(a, b)));
}

TEST(Operations, IntoOneOfTheirInputs) {
    for (const TwoMeshOperation& operation : twoMeshOperations) {
        SCOPED_TRACE(operation.name);
        const Mesh result = operation(cube, shiftedCube);
        Mesh a = cube;
        operation.cpp(a, a, shiftedCube);
        EXPECT_TRUE(sameBits(a, joined(cube, result)));
        Mesh b = shiftedCube;
        operation.cpp(b, cube, b);
        EXPECT_TRUE(sameBits(b, joined(shiftedCube, result)));
    }
}

TEST(Operations, OfOpenAndInsideOutAndMeaninglessMeshesEnd) {
    Random random(12);
    Mesh open = cube;
    open.vertices.resize(30);
    Mesh insideOut = cube;
    for (std::size_t i = 0; i < insideOut.vertices.size(); i += 3)
        std::swap(insideOut.vertices[i], insideOut.vertices[i + 1]);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    Mesh broken = cube;
    broken.vertices[4].pos.y = nan;
    broken.vertices[9].pos.x = infinity;
    const std::vector<Mesh> meshes{open,
                                   insideOut,
                                   soup(random, 40),
                                   broken,
                                   scaled(cube, 1e160),
                                   scaled(cube, 1e-160),
                                   triangle({0, 0, 0}, {0, 0, 0}, {0, 0, 0})};
    for (const TwoMeshOperation& operation : twoMeshOperations) {
        for (const Mesh& a : meshes) {
            for (const Mesh& b : meshes) EXPECT_TRUE(sameBits(operation(a, b), operation.throughC(a, b)));
        }
    }
}

} // namespace orva::test

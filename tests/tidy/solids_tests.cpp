// Operations with tidied results, one situation at a time.
#include "bits.hpp"
#include "measures.hpp"
#include "operations.hpp"
#include "tidied.hpp"

#include <cmath>
#include <limits>
#include <new>

namespace orva::test {

namespace {

void expectSolid(const Tidied& result, double expectedVolume, double within = 1e-5) {
    EXPECT_TRUE(result.report.closed) << result.report;
    EXPECT_TRUE(isClosed(result.solid));
    EXPECT_TRUE(isWhole(result.solid));
    EXPECT_EQ(result.report.facesLeft, 0U);
    EXPECT_EQ(result.report.forcedEars, 0U);
    EXPECT_NEAR(volume(result.solid), expectedVolume, within);
}

double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 normalOf(const tidy::Solid& solid, std::size_t face) {
    const Vec3& a = solid.vertices[solid.faces[face][0]];
    const Vec3& b = solid.vertices[solid.faces[face][1]];
    const Vec3& c = solid.vertices[solid.faces[face][2]];
    const Vec3 u{b.x - a.x, b.y - a.y, b.z - a.z};
    const Vec3 v{c.x - a.x, c.y - a.y, c.z - a.z};
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

// What the face that a corner came from carries there, by its linear values; bit for bit at that face's own corners.
void expectCarried(const Tidied& result, const std::vector<Mesh>& meshes, std::uint32_t firstFlipped) {
    for (std::size_t i = 0; i < result.solid.faces.size(); ++i) {
        const tidy::Origin origin = result.solid.origins[i];
        ASSERT_LT(origin.mesh, meshes.size());
        ASSERT_LT(3 * std::size_t{origin.face}, meshes[origin.mesh].vertices.size());
        const double sign = origin.mesh >= firstFlipped ? -1 : 1;
        const Vertex* source = &meshes[origin.mesh].vertices[3 * std::size_t{origin.face}];
        EXPECT_LE(distanceTo({{source, source + 3}}, source->pos), 0.0);
        EXPECT_GT(sign * dot(normalOf(result.solid, i), source->normal), 0.0) << "face " << i;
        for (std::size_t k = 0; k < 3; ++k) {
            const Vec3& at = result.solid.vertices[result.solid.faces[i][k]];
            const tidy::Corner& corner = result.solid.corners[i][k];
            // Of a box: the normal is that of all corners, aux runs over the face from 0 to 1.
            EXPECT_EQ(corner.normal.x, sign * source->normal.x);
            EXPECT_EQ(corner.normal.y, sign * source->normal.y);
            EXPECT_EQ(corner.normal.z, sign * source->normal.z);
            const Vec3 u{source[1].pos.x - source->pos.x, source[1].pos.y - source->pos.y,
                         source[1].pos.z - source->pos.z};
            const Vec3 v{source[2].pos.x - source->pos.x, source[2].pos.y - source->pos.y,
                         source[2].pos.z - source->pos.z};
            const Vec3 p{at.x - source->pos.x, at.y - source->pos.y, at.z - source->pos.z};
            const double uu = dot(u, u);
            const double uv = dot(u, v);
            const double vv = dot(v, v);
            const double s = (dot(p, u) * vv - dot(p, v) * uv) / (uu * vv - uv * uv);
            const double t = (dot(p, v) * uu - dot(p, u) * uv) / (uu * vv - uv * uv);
            for (std::size_t j = 0; j < 2; ++j) {
                const double expected =
                    source->aux[j] + s * (source[1].aux[j] - source->aux[j]) + t * (source[2].aux[j] - source->aux[j]);
                EXPECT_NEAR(corner.aux[j], expected, 1e-9);
                for (std::size_t c = 0; c < 3; ++c) {
                    const Vec3& q = source[c].pos;
                    if (q.x == at.x && q.y == at.y && q.z == at.z) {
                        EXPECT_EQ(corner.aux[j], source[c].aux[j]);
                    }
                }
            }
        }
    }
}

} // namespace

TEST(TidySolid, OfABoxWithAPocketHasAsFewTrianglesAsItsShapeNeeds) {
    const Mesh block = box({0, 0, 0}, {4, 4, 3});
    const Mesh pocket = box({1, 1, 2}, {3, 3, 4});
    for (const tidy::Merge merge : {tidy::Merge::None, tidy::Merge::Cut, tidy::Merge::All}) {
        const Tidied result = subtracted(block, {pocket}, withMerge(merge));
        expectSolid(result, 48 - 4);
        // A diagonal of each wall crosses the rim, and the faces on both sides have a corner there.
        EXPECT_EQ(result.solid.faces.size(), merge == tidy::Merge::None ? 36U : 28U);
        EXPECT_LE(result.solid.faces.size(), result.report.soupTriangles);
        EXPECT_EQ(result.report.pieces, 1U);
        expectCarried(result, {block, pocket}, 1);
    }
}

TEST(TidySolid, OfABoxWithoutItsCornerIsThat) {
    const Mesh a = box({0, 0, 0}, {2, 2, 2});
    const Mesh b = box({1, 1, 1}, {3, 3, 3});
    const Tidied result = subtracted(a, {b});
    expectSolid(result, 7);
    EXPECT_EQ(result.solid.vertices.size(), 14U);
    EXPECT_EQ(result.solid.faces.size(), 24U);
    expectCarried(result, {a, b}, 1);
    const Tidied both = united({a, b});
    expectSolid(both, 15);
    expectCarried(both, {a, b}, 2);
    const Tidied common = intersected({a, b});
    expectSolid(common, 1);
    EXPECT_EQ(common.solid.faces.size(), 12U);
    expectCarried(common, {a, b}, 2);
}

TEST(TidySolid, OfAWallWithSixtyWindowsIsClosedWhicheverWayTheyAreCut) {
    const Mesh wall = box({0, 0, 0}, {60, 1, 25});
    std::vector<Mesh> windows;
    for (int row = 0; row < 5; ++row) {
        for (int i = 0; i < 12; ++i) {
            const double x = 5 * i + 1.3;
            const double z = 5 * row + 1.1;
            windows.push_back(box({x, -1, z}, {x + 2.1, 2, z + 2.7}));
        }
    }
    for (const tidy::Cutting cutting :
         {tidy::Cutting::InTurn, tidy::Cutting::AsOneUnion, tidy::Cutting::AsOneUnionParallel}) {
        const Tidied result = withAWorker([&] { return subtracted(wall, windows, {}, cutting); });
        expectSolid(result, 60 * 25 - 60 * 2.1 * 2.7, 1e-4);
        // Front and back with 60 holes: 4 + 240 corners, 362 triangles; four sides; four walls a window.
        EXPECT_EQ(result.solid.faces.size(), 2U * 362 + 8 + 480);
        EXPECT_EQ(result.solid.vertices.size(), 8U + 480);
        EXPECT_EQ(result.report.pieces, 1U);
    }
}

TEST(TidySolid, OfBoxesThatTouchInAVertexOrAnEdgeIsTwo) {
    for (const Vec3& by : {Vec3{1, 1, 1}, Vec3{1, 1, 0}, Vec3{1, 1, 0.5}}) {
        const Tidied result = united({unitCube(), moved(unitCube(), by)});
        expectSolid(result, 2);
        EXPECT_EQ(result.report.pieces, 2U) << by.z;
    }
}

TEST(TidySolid, OfBoxesThatTouchInAFaceIsOne) {
    const Tidied whole = united({unitCube(), moved(unitCube(), {1, 0, 0})});
    expectSolid(whole, 2);
    EXPECT_EQ(whole.report.pieces, 1U);
    EXPECT_EQ(whole.solid.faces.size(), 20U); // faces of two meshes are never one
    const Tidied part = united({unitCube(), moved(unitCube(), {1, 0.25, 0.5})});
    expectSolid(part, 2);
    EXPECT_EQ(part.report.pieces, 1U);
}

TEST(TidySolid, OfABoxWithItselfIsTheBox) {
    Random random(3);
    const Mesh mesh = turned(box({0, 0, 0}, {1, 2, 3}), random);
    expectSolid(united({mesh, mesh}), 6);
    EXPECT_EQ(united({mesh, mesh}).solid.faces.size(), 12U);
    expectSolid(intersected({mesh, mesh}), 6);
    const Tidied nothing = subtracted(mesh, {mesh});
    expectSolid(nothing, 0);
    EXPECT_TRUE(nothing.solid.faces.empty());
}

TEST(TidySolid, OfNothing) {
    EXPECT_TRUE(united({}).solid.faces.empty());
    EXPECT_TRUE(intersected({}).report.closed);
    EXPECT_TRUE(united({unitCube(), Mesh()}).solid.faces.empty()); // an empty mesh empties every result
    EXPECT_TRUE(intersected({Mesh(), unitCube()}).solid.faces.empty());
    EXPECT_TRUE(subtracted({}, {unitCube()}).solid.faces.empty());
    EXPECT_TRUE(subtracted(unitCube(), {Mesh()}).solid.faces.empty());
}

TEST(TidySolid, OfOneMeshIsTheMeshTidied) {
    Random random(9);
    const Mesh mesh = turned(griddedBox({0, 0, 0}, {1, 2, 3}, 3), random);
    for (const Tidied& result : {united({mesh}), intersected({mesh}), subtracted(mesh, {})}) {
        expectSolid(result, 6);
        EXPECT_TRUE(sameBits(tidy::toSoup(result.solid), mesh));
        for (std::uint32_t i = 0; i < result.solid.origins.size(); ++i) {
            EXPECT_TRUE((result.solid.origins[i] == tidy::Origin{0, i}));
        }
    }
}

TEST(TidySolid, WithHolesSeveralHolesAndAnIslandInOneFace) {
    const Mesh block = box({0, 0, 0}, {20, 20, 2});
    // A moat, the block in it, and a blind hole in that; two more holes beside.
    const Mesh moat = box({2, 2, 1}, {11, 11, 3});
    const Mesh island = box({4, 4, 0.5}, {9, 9, 2});
    const Mesh inIsland = box({5.5, 5.2, 1.5}, {7, 8, 3});
    const Mesh beside = box({13, 3, 1.2}, {17, 5, 3});
    const Mesh through = box({13, 13, -1}, {17, 17, 3});
    const double cutAway = 81 - 25 + 1.5 * 2.8 * 0.5 + 8 * 0.8 + 16 * 2;
    const Tidied carved = united({tidy::toSoup(subtracted(block, {moat}).solid), island});
    expectSolid(carved, 800 - 81 + 25);
    Tidied result;
    result.report =
        tidy::subtractSolid(result.solid, carved.solid, {indexed(inIsland), indexed(beside), indexed(through)});
    expectSolid(result, 800 - cutAway, 1e-4);
    EXPECT_EQ(result.report.pieces, 1U);
}

TEST(TidySolid, KeepsCornersThatWereNotCutBitForBitAtAnySize) {
    for (const double size : {1e-5, 0.1, 1.0, 1234.5, 1e7}) {
        SCOPED_TRACE(size);
        Random random(11);
        const Mesh ball = scaled(turned(icosphere(2, {0.1, 0.2, 0.3}, 1.1), random), size);
        const Mesh cutter = scaled(turned(box({0.5, -0.2, -0.3}, {2, 0.4, 0.5}), random), size);
        const Tidied result = subtracted(ball, {cutter});
        EXPECT_TRUE(result.report.closed) << result.report;
        EXPECT_TRUE(isClosed(result.solid));
        std::size_t uncut = 0;
        for (std::size_t i = 0; i < result.solid.faces.size(); ++i) {
            const tidy::Origin origin = result.solid.origins[i];
            ASSERT_LT(origin.mesh, 2U);
            if (origin.mesh != 0) continue;
            const Vertex* source = &ball.vertices[3 * std::size_t{origin.face}];
            int same = 0;
            for (std::size_t k = 0; k < 3; ++k) {
                const Vec3& p = result.solid.vertices[result.solid.faces[i][k]];
                for (std::size_t c = 0; c < 3; ++c) {
                    if (!sameBits(p.x, source[c].pos.x) || !sameBits(p.y, source[c].pos.y)) continue;
                    const tidy::Corner& corner = result.solid.corners[i][k];
                    EXPECT_TRUE(sameBits({p, corner.normal, corner.aux}, source[c]));
                    ++same;
                }
            }
            if (same == 3) ++uncut;
        }
        EXPECT_GT(uncut, 100U); // most of the 320
    }
}

TEST(TidySolid, IsComputedInTheUnitThatIsGivenWhereNotToBeScaled) {
    const Mesh a = scaled(box({0, 0, 0}, {2, 2, 2}), 3);
    const Mesh b = scaled(box({1, 1, 1}, {3, 3, 3}), 3);
    tidy::Options options;
    options.scale = false;
    EXPECT_EQ(subtracted(a, {b}, options).report.scale, 1.0);
    const Tidied scaledResult = subtracted(a, {b});
    EXPECT_GT(scaledResult.report.scale, 1.0);
    EXPECT_EQ(scaledResult.report.scale, std::ldexp(1.0, std::ilogb(scaledResult.report.scale)));
    EXPECT_TRUE(sameBits(scaledResult.solid, subtracted(a, {b}, options).solid));
}

TEST(TidySolid, ThatIsSmallerThanTheTolerancesOfTheOperationsIsStillCut) {
    const Mesh a = scaled(box({0, 0, 0}, {2, 2, 2}), 1e-7);
    const Mesh b = scaled(box({1, 1, 1}, {3, 3, 3}), 1e-7);
    const Tidied result = subtracted(a, {b});
    EXPECT_TRUE(isClosed(result.solid));
    EXPECT_NEAR(volume(result.solid), 7e-21, 1e-26);
    EXPECT_EQ(result.solid.faces.size(), 24U);
}

TEST(TidySolid, OfIndexedMeshesIsThatOfTheirSoups) {
    const Mesh a = griddedBox({0, 0, 0}, {2, 2, 2}, 2);
    const Mesh b = box({1, 1, 1}, {3, 3, 3});
    const std::vector<tidy::Solid> solids{indexed(a), indexed(b)};
    Tidied result;
    result.report = tidy::unionSolid(result.solid, solids);
    EXPECT_TRUE(sameBits(result.solid, united({a, b}).solid));
    result.report = tidy::intersectSolid(result.solid, solids);
    EXPECT_TRUE(sameBits(result.solid, intersected({a, b}).solid));
    result.report = tidy::subtractSolid(result.solid, solids[0], {solids[1]});
    EXPECT_TRUE(sameBits(result.solid, subtracted(a, {b}).solid));
}

TEST(TidySolid, OfAMeshWithAHoleInItIsReportedOpen) {
    Mesh open = unitCube();
    open.vertices.resize(30);
    const Tidied result = subtracted(open, {box({0.25, 0.25, 0.5}, {0.75, 0.75, 2})});
    EXPECT_FALSE(result.report.closed);
    EXPECT_GT(result.report.openEdges, 0U);
    EXPECT_EQ(count(result.solid).openEdges, result.report.openEdges);
}

TEST(TidySolid, OfCoordinatesThatAreNoneComesToAnEnd) {
    for (const double wild :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        Mesh mesh = unitCube();
        mesh.vertices[4].pos.y = wild;
        const Tidied result = united({mesh, moved(unitCube(), {0.5, 0.5, 0.5})});
        EXPECT_EQ(result.report.closed, static_cast<bool>(isClosed(result.solid)));
        EXPECT_TRUE(isWhole(result.solid));
    }
}

TEST(TidySolid, OfManyThatMeetInOnePointIsClosed) {
    std::vector<Mesh> all;
    for (int i = 0; i < 8; ++i) {
        if (i == 5) continue;
        const double x = i % 2 == 0 ? 0 : -1;
        const double y = i / 2 % 2 == 0 ? 0 : -1;
        const double z = i / 4 == 0 ? 0 : -1;
        all.push_back(box({x, y, z}, {x + 1, y + 1, z + 1}));
    }
    const Tidied result = united(all, withMerge(tidy::Merge::All));
    expectSolid(result, 7);
    EXPECT_EQ(result.report.pieces, 1U);
    // Corners of a chessboard: every second cube of eight touches three others in edges.
    const Tidied board = united({all[0], all[3], all[4], all[5]});
    EXPECT_TRUE(isClosed(board.solid));
    EXPECT_NEAR(volume(board.solid), 4, 1e-9);
}

} // namespace orva::test

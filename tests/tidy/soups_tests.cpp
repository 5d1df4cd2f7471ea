// What tidySoup makes of soups in which something is the matter, one thing at a time.
#include "bits.hpp"
#include "measures.hpp"
#include "tidied.hpp"

#include <limits>
#include <set>

namespace orva::test {

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();

// A box of 4 x 4 x 4 without its bottom and top; faces 4 to 11.
Pieces tube() {
    Pieces pieces;
    const Mesh all = box({0, 0, 0}, {4, 4, 4});
    for (std::uint32_t i = 4; i < 12; ++i) {
        pieces.add(i, all.vertices[3 * i].pos, all.vertices[3 * i + 1].pos, all.vertices[3 * i + 2].pos);
    }
    return pieces;
}

void addSquare(Pieces& pieces, std::uint32_t face, const Vec3& low, const Vec3& high) {
    const Vec3 right{high.x, low.y, low.z};
    const Vec3 back{low.x, high.y, low.z};
    pieces.add(face, low, right, high);
    pieces.add(face, low, high, back);
}

void addBottom(Pieces& pieces, std::uint32_t face) {
    pieces.add(face, {0, 0, 0}, {0, 4, 0}, {4, 4, 0});
    pieces.add(face, {0, 0, 0}, {4, 4, 0}, {4, 0, 0});
}

void expectClosedBox(const Tidied& result, double expectedVolume) {
    EXPECT_TRUE(result.report.closed) << result.report;
    EXPECT_TRUE(isClosed(result.solid));
    EXPECT_TRUE(isWhole(result.solid));
    EXPECT_NEAR(volume(result.solid), expectedVolume, 1e-4);
}

std::size_t positionsOf(const tidy::Solid& solid) {
    std::set<std::array<double, 3>> positions;
    for (const Vec3& p : solid.vertices) positions.insert({p.x, p.y, p.z});
    return positions.size();
}

// Both with origins and without.
const bool BOTH[]{true, false};

Tidied tidiedPieces(const Pieces& pieces, bool marked, const tidy::Options& options = {}) {
    return tidied(pieces.soup, marked ? pieces.origins : std::vector<tidy::Origin>{}, options);
}

} // namespace

TEST(TidySoup, OfNothingIsNothingAndClosed) {
    Tidied result;
    result.solid = indexed(unitCube());
    result.report = tidy::tidySoup(result.solid, {});
    EXPECT_TRUE(result.solid.vertices.empty());
    EXPECT_TRUE(result.solid.faces.empty());
    EXPECT_TRUE(result.report.closed);
    EXPECT_EQ(result.report.pieces, 0U);
}

TEST(TidySoup, OfStrayVerticesAloneIsNothing) {
    for (std::size_t count : {1U, 2U}) {
        Mesh soup;
        soup.vertices.assign(count, at(1, 2, 3));
        const Tidied result = tidied(soup);
        EXPECT_TRUE(result.solid.faces.empty());
        EXPECT_TRUE(result.solid.vertices.empty());
        EXPECT_EQ(result.report.soupTriangles, 0U);
    }
}

TEST(TidySoup, OfABoxAndStrayVerticesBehindItIsTheBox) {
    for (const bool marked : BOTH) {
        Mesh soup = unitCube();
        const std::vector<tidy::Origin> origins = marked ? numbered(soup) : std::vector<tidy::Origin>{};
        soup.vertices.push_back(at(9, 9, 9));
        expectClosedBox(tidied(soup, origins), 1);
        soup.vertices.push_back(at(9, 9, 9));
        const Tidied result = tidied(soup, origins);
        expectClosedBox(result, 1);
        EXPECT_EQ(result.solid.faces.size(), 12U);
        EXPECT_EQ(result.solid.vertices.size(), 8U);
    }
}

TEST(TidySoup, OfABoxKeepsFacesCornersAndOriginsBitForBit) {
    Random random(5);
    const Mesh soup = turned(box({0.1, 0.2, 0.3}, {1.7, 2.9, 3.1}), random);
    const Tidied result = tidied(soup, numbered(soup, 7));
    EXPECT_TRUE(sameBits(tidy::toSoup(result.solid), soup));
    for (std::uint32_t i = 0; i < 12; ++i) EXPECT_TRUE((result.solid.origins[i] == tidy::Origin{7, i}));
    EXPECT_TRUE(sameBits(tidy::toSoup(tidied(soup).solid), soup)); // without origins, too
    EXPECT_TRUE((tidied(soup).solid.origins[0] == tidy::UNKNOWN_ORIGIN));
}

TEST(TidySoup, WithATJunctionIsClosed) {
    for (const bool marked : BOTH) {
        Pieces pieces = tube();
        addBottom(pieces, 0);
        // The top in pieces with corners in the middle of its sides.
        addSquare(pieces, 2, {0, 0, 4}, {2, 3, 4});
        addSquare(pieces, 2, {2, 0, 4}, {4, 1, 4});
        addSquare(pieces, 2, {2, 1, 4}, {4, 3, 4});
        addSquare(pieces, 2, {0, 3, 4}, {4, 4, 4});
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 64);
        EXPECT_EQ(result.solid.faces.size(), 12U);
        EXPECT_EQ(result.solid.vertices.size(), 8U);
        EXPECT_EQ(result.report.movedByWeld, 0.0);
    }
}

TEST(TidySoup, WithCornersThatDifferInTheirLastBitsIsClosed) {
    for (const bool marked : BOTH) {
        Random random(1);
        Mesh soup = griddedBox({0, 0, 0}, {3, 3, 3}, 3);
        for (Vertex& vertex : soup.vertices) {
            vertex.normal = {};
            vertex.aux = {};
            vertex.pos.x += random.uniform(-1e-9, 1e-9);
            vertex.pos.y += random.uniform(-1e-9, 1e-9);
            vertex.pos.z += random.uniform(-1e-9, 1e-9);
        }
        const Tidied result = tidied(soup, marked ? numbered(soup) : std::vector<tidy::Origin>{});
        expectClosedBox(result, 27);
        EXPECT_GT(result.report.movedByWeld, 0.0);
        EXPECT_LE(result.report.movedByWeld, 8e-6);
    }
}

TEST(TidySoup, WithAHoleInAFaceKeepsTheHole) {
    // A frame: two squares with a square tube through both.
    for (const bool marked : BOTH) {
        Pieces pieces = tube();
        for (const double z : {0.0, 4.0}) {
            Pieces ring;
            addSquare(ring, 2, {0, 0, z}, {4, 1, z});
            addSquare(ring, 2, {0, 3, z}, {4, 4, z});
            addSquare(ring, 2, {0, 1, z}, {1, 3, z});
            addSquare(ring, 2, {3, 1, z}, {4, 3, z});
            for (std::size_t i = 0; i < ring.soup.vertices.size(); i += 3) {
                const auto& v = ring.soup.vertices;
                if (z == 0) {
                    pieces.add(0, v[i].pos, v[i + 2].pos, v[i + 1].pos);
                } else {
                    pieces.add(2, v[i].pos, v[i + 1].pos, v[i + 2].pos);
                }
            }
        }
        const Mesh inner = box({1, 1, 0}, {3, 3, 4});
        for (std::uint32_t i = 4; i < 12; ++i) {
            const auto& v = inner.vertices;
            pieces.add(20 + i, v[3 * i].pos, v[3 * i + 2].pos, v[3 * i + 1].pos);
        }
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 64 - 16);
        EXPECT_EQ(result.solid.faces.size(), 8U + 8U + 8U + 8U);
        EXPECT_EQ(result.report.loopsRemoved, 0U);
    }
}

TEST(TidySoup, WithATriangleThatIsThereTwiceStaysOpenAroundItOrDropsIt) {
    for (const bool marked : BOTH) {
        Mesh soup = unitCube();
        std::vector<tidy::Origin> origins = numbered(soup);
        soup.vertices.insert(soup.vertices.end(), soup.vertices.begin(), soup.vertices.begin() + 3);
        origins.push_back(origins.front());
        const Tidied result = tidied(soup, marked ? origins : std::vector<tidy::Origin>{});
        EXPECT_TRUE(isWhole(result.solid));
        EXPECT_EQ(result.report.closed, static_cast<bool>(isClosed(result.solid))) << result.report;
        if (!result.report.closed) {
            EXPECT_EQ(result.report.openEdges, 3U);
        } else {
            EXPECT_NEAR(volume(result.solid), 1, 1e-12);
        }
        EXPECT_GE(result.solid.faces.size(), 12U);
    }
}

TEST(TidySoup, WithTrianglesOnEachOthersBackIsWithoutThem) {
    for (const bool marked : BOTH) {
        Pieces pieces;
        pieces.add(0, unitCube());
        pieces.add(1, triangle({3, 3, 3}, {4, 3, 3}, {3, 4, 3}));
        pieces.add(2, triangle({3, 3, 3}, {3, 4, 3}, {4, 3, 3}));
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 1);
        EXPECT_EQ(result.solid.faces.size(), 12U);
    }
}

TEST(TidySoup, WithTwoBoxesThatShareAVertexHasItTwice) {
    for (const bool marked : BOTH) {
        Pieces pieces;
        pieces.add(0, unitCube());
        pieces.add(1, box({1, 1, 1}, {2, 2, 2}));
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 2);
        EXPECT_EQ(result.solid.vertices.size(), 16U);
        EXPECT_EQ(positionsOf(result.solid), 15U);
        EXPECT_EQ(result.report.pieces, 2U);
    }
}

TEST(TidySoup, WithTwoBoxesThatShareAnEdgeKeepsThemApart) {
    for (const bool marked : BOTH) {
        Pieces pieces;
        pieces.add(0, unitCube());
        pieces.add(1, box({1, 1, 0}, {2, 2, 1}));
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 2);
        EXPECT_EQ(result.solid.vertices.size(), 16U);
        EXPECT_EQ(result.report.pieces, 2U);
    }
}

// Two wedges with an edge in common and hollow boxes at its ends that hold them together: one umbrella at either end,
// and four faces at the edge. One pair of them gets a vertex in the middle.
TEST(TidySoup, WithAnEdgeOfFourFacesBetweenTwoVerticesHasAVertexInItsMiddle) {
    // Around the edge from (0,0,0) to (0,0,2) stand two tetrahedra; each closes the other's side.
    const Vec3 low{0, 0, 0};
    const Vec3 high{0, 0, 2};
    const Vec3 east{2, 0, 1};
    const Vec3 west{-2, 0, 1};
    const Vec3 north{0, 2, 1};
    const Vec3 south{0, -2, 1};
    Pieces pieces;
    std::uint32_t face = 0;
    const auto add = [&](const Vec3& a, const Vec3& b, const Vec3& c) { pieces.add(face++, a, b, c); };
    // Solid between east and north, and between west and south.
    add(low, high, east);
    add(high, low, north);
    add(low, high, west);
    add(high, low, south);
    // What holds both together: the rest of the surface goes around above and below, from one to the other.
    add(high, north, west);
    add(low, west, north);
    add(high, south, east);
    add(low, east, south);
    for (const bool marked : BOTH) {
        const Tidied result = tidiedPieces(pieces, marked);
        EXPECT_TRUE(result.report.closed) << result.report;
        EXPECT_TRUE(isClosed(result.solid));
        EXPECT_TRUE(isWhole(result.solid));
        EXPECT_NEAR(volume(result.solid), volume(pieces.soup), 1e-9);
    }
}

TEST(TidySoup, WithSliversNarrowerThanTheToleranceIsClosed) {
    for (const bool marked : BOTH) {
        // The top ends a little short of one side, all along: no piece of the soup fills it.
        Pieces pieces = tube();
        addBottom(pieces, 0);
        pieces.add(2, {0, 0, 4}, {4 - 3e-6, 0, 4}, {4 - 3e-6, 4, 4});
        pieces.add(2, {0, 0, 4}, {4 - 3e-6, 4, 4}, {0, 4, 4});
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 64);
        EXPECT_EQ(result.solid.faces.size(), 12U);
    }
}

TEST(TidySoup, ThatIsOpenStaysOpenAndIsCounted) {
    for (const bool marked : BOTH) {
        Mesh soup = unitCube();
        soup.vertices.resize(30); // without two faces, of one side
        const Tidied result = tidied(soup, marked ? numbered(soup) : std::vector<tidy::Origin>{});
        EXPECT_FALSE(result.report.closed);
        EXPECT_EQ(result.report.openEdges, 4U);
        EXPECT_EQ(count(result.solid).openEdges, 4U);
        EXPECT_EQ(result.solid.faces.size(), 10U);
        EXPECT_DOUBLE_EQ(result.report.largestGap, 0.5); // from the middle of a side to the corner
        EXPECT_EQ(result.report.loopsRemoved, 0U);
    }
}

TEST(TidySoup, OfOneTriangleIsTheTriangle) {
    for (const bool marked : BOTH) {
        const Mesh soup = triangle({0, 0, 0}, {3, 0, 0}, {0, 4, 0});
        const Tidied result = tidied(soup, marked ? numbered(soup) : std::vector<tidy::Origin>{});
        EXPECT_TRUE(sameBits(tidy::toSoup(result.solid), soup));
        EXPECT_EQ(result.report.openEdges, 3U);
        EXPECT_EQ(result.report.pieces, 1U);
        EXPECT_FALSE(result.report.closed);
    }
}

TEST(TidySoup, WithAGapWiderThanTheToleranceIsClosedWhereAWidthIsGiven) {
    for (const bool marked : BOTH) {
        Pieces pieces = tube();
        addBottom(pieces, 0);
        addSquare(pieces, 2, {0.002, 0.002, 4}, {3.998, 3.998, 4});
        const Tidied open = tidiedPieces(pieces, marked);
        EXPECT_FALSE(open.report.closed);
        EXPECT_EQ(open.report.openEdges, 8U);
        EXPECT_NEAR(open.report.largestGap, 0.002, 1e-12);

        tidy::Options options;
        options.gapWidth = 0.01;
        const Tidied closed = tidiedPieces(pieces, marked, options);
        expectClosedBox(closed, 64);
        EXPECT_NEAR(volume(closed.solid), 64, 0.04);
        EXPECT_GT(closed.report.movedByWeld + closed.report.movedByZip, 0.001);
        EXPECT_LE(closed.report.movedByWeld, 0.01);
        EXPECT_LE(closed.report.movedByZip, 0.01);

        options.gapWidth = 0.001; // too narrow
        EXPECT_FALSE(tidiedPieces(pieces, marked, options).report.closed);
    }
}

TEST(TidySoup, TakesForOneWhatLiesWithinTheToleranceThatIsGiven) {
    for (const bool marked : BOTH) {
        Mesh soup = unitCube();
        for (std::size_t i = 0; i < 6; ++i) soup.vertices[i].pos.z -= 1e-3; // the bottom hangs beneath the box
        const std::vector<tidy::Origin> origins = marked ? numbered(soup) : std::vector<tidy::Origin>{};
        EXPECT_FALSE(tidied(soup, origins).report.closed);
        tidy::Options options;
        options.tolerance = 2e-3;
        const Tidied result = tidied(soup, origins, options);
        EXPECT_TRUE(result.report.closed) << result.report;
        EXPECT_TRUE(isClosed(result.solid));
        EXPECT_NEAR(result.report.movedByWeld, 1e-3, 1e-9);
    }
}

TEST(TidySoup, OfALargeBoxHasATolerancesOfItsSize) {
    for (const bool marked : BOTH) {
        Mesh soup = scaled(unitCube(), 1e6);
        for (std::size_t i = 0; i < 6; ++i) soup.vertices[i].pos.z -= 5e-4;
        const std::vector<tidy::Origin> origins = marked ? numbered(soup) : std::vector<tidy::Origin>{};
        EXPECT_TRUE(tidied(soup, origins).report.closed);
    }
}

TEST(TidySoup, WithCoordinatesThatAreNoneLeavesTheirTrianglesAsTheyAre) {
    for (const bool marked : BOTH) {
        for (const double wild : {INF, -INF, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
            Pieces pieces;
            pieces.add(0, unitCube());
            pieces.add(1, triangle({3, 3, wild}, {4, 3, 3}, {3, 4, 3}));
            const Tidied result = tidiedPieces(pieces, marked);
            EXPECT_EQ(result.report.facesLeft, 1U);
            EXPECT_FALSE(result.report.closed);
            EXPECT_EQ(result.report.openEdges, 3U);
            EXPECT_EQ(result.report.pieces, 2U);
            ASSERT_EQ(result.solid.faces.size(), 13U);
            EXPECT_TRUE(isWhole(result.solid));
            EXPECT_TRUE(sameBits(tidy::toSoup(result.solid), pieces.soup));
        }
    }
}

TEST(TidySoup, OfCoordinatesThatAreAllWildIsAsItWas) {
    for (const bool marked : BOTH) {
        Mesh soup = unitCube();
        for (Vertex& vertex : soup.vertices) vertex.pos.x = INF;
        const Tidied result = tidied(soup, marked ? numbered(soup) : std::vector<tidy::Origin>{});
        EXPECT_TRUE(sameBits(tidy::toSoup(result.solid), soup));
        EXPECT_EQ(result.report.facesLeft, 12U);
        EXPECT_FALSE(result.report.closed);
    }
}

TEST(TidySoup, WithoutAreaThatClosesGeometricallyClosesByIndex) {
    for (const bool marked : BOTH) {
        // A fan without area fills the T-junctions of two sides.
        Pieces pieces;
        pieces.add(0, unitCube());
        pieces.add(1, triangle({0, 0, 0}, {0.5, 0, 0}, {1, 0, 0}));
        pieces.add(2, triangle({0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}));
        const Tidied result = tidiedPieces(pieces, marked);
        expectClosedBox(result, 1);
        EXPECT_EQ(result.solid.faces.size(), 12U);
    }
}

TEST(TidySoup, OfTrianglesWithEqualCornersIsNothing) {
    for (const bool marked : BOTH) {
        const Mesh soup = joined(triangle({1, 1, 1}, {1, 1, 1}, {1, 1, 1}), triangle({0, 0, 0}, {1, 1, 1}, {0, 0, 0}));
        const Tidied result = tidied(soup, marked ? numbered(soup) : std::vector<tidy::Origin>{});
        EXPECT_TRUE(result.solid.faces.empty());
        EXPECT_TRUE(result.report.closed) << result.report;
    }
}

TEST(TidySoup, CarriesWhatIsLinearOnTheFaceToCornersThatAreNew) {
    // A square in four pieces with a corner less than before: all that is left are its own corners.
    const Mesh plain = griddedBox({0, 0, 0}, {4, 4, 4}, 4); // aux runs over each face
    std::vector<tidy::Origin> origins;
    for (std::uint32_t i = 0; i < plain.vertices.size() / 3; ++i) origins.push_back({0, i / 32});
    const Tidied result = tidied(plain, origins);
    expectClosedBox(result, 64);
    ASSERT_EQ(result.solid.faces.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        const tidy::Origin origin = result.solid.origins[i];
        for (std::size_t k = 0; k < 3; ++k) {
            const Vec3& at = result.solid.vertices[result.solid.faces[i][k]];
            const tidy::Corner& corner = result.solid.corners[i][k];
            // The corner of the soup with the same position in the same face.
            bool found = false;
            for (std::size_t v = 0; v < plain.vertices.size(); ++v) {
                const Vertex& vertex = plain.vertices[v];
                if (v / 96 != origin.face || vertex.pos.x != at.x || vertex.pos.y != at.y || vertex.pos.z != at.z) {
                    continue;
                }
                found = found || (vertex.aux == corner.aux && vertex.normal.x == corner.normal.x &&
                                  vertex.normal.y == corner.normal.y && vertex.normal.z == corner.normal.z);
            }
            EXPECT_TRUE(found) << "face " << i << ", corner " << k;
        }
    }
}

TEST(TidySoup, DoesNotMergeWhatCarriesSomethingElse) {
    // The top of the box in two halves, of which one carries another colour.
    for (const bool same : {true, false}) {
        Pieces pieces = tube();
        addBottom(pieces, 0);
        addSquare(pieces, 2, {0, 0, 4}, {2, 4, 4});
        addSquare(pieces, same ? 2 : 3, {2, 0, 4}, {4, 4, 4});
        if (!same) {
            for (std::size_t i = pieces.soup.vertices.size() - 6; i < pieces.soup.vertices.size(); ++i) {
                pieces.soup.vertices[i].aux = {1, 1};
            }
        }
        for (const bool marked : BOTH) {
            const Tidied result = tidiedPieces(pieces, marked, withMerge(tidy::Merge::All));
            expectClosedBox(result, 64);
            EXPECT_EQ(result.solid.vertices.size(), same ? 8U : 10U);
        }
    }
}

TEST(TidySoup, MergesFacesThatWereNotCutWhereAllMayBeMerged) {
    Mesh soup = griddedBox({0, 0, 0}, {4, 4, 4}, 4);
    const std::vector<tidy::Origin> origins = numbered(soup);
    EXPECT_EQ(tidied(soup, origins, withMerge(tidy::Merge::None)).solid.faces.size(), 192U);
    EXPECT_EQ(tidied(soup, origins, withMerge(tidy::Merge::Cut)).solid.faces.size(), 192U);
    const Tidied all = tidied(soup, origins, withMerge(tidy::Merge::All));
    expectClosedBox(all, 64);
    EXPECT_EQ(all.solid.faces.size(), 12U);
}

TEST(TidySoup, NeverMergesFacesOfTwoMeshes) {
    Mesh soup = griddedBox({0, 0, 0}, {4, 4, 4}, 2);
    std::vector<tidy::Origin> origins;
    for (std::uint32_t i = 0; i < soup.vertices.size() / 3; ++i) {
        const Vertex* corners = &soup.vertices[std::size_t{3} * i];
        const double middle = (corners[0].pos.x + corners[1].pos.x + corners[2].pos.x) / 3;
        origins.push_back({middle < 2 ? 0U : 1U, i});
    }
    const Tidied all = tidied(soup, origins, withMerge(tidy::Merge::All));
    expectClosedBox(all, 64);
    EXPECT_EQ(all.solid.faces.size(), 20U); // two boxes side by side, without the wall between
    for (std::size_t i = 0; i < all.solid.faces.size(); ++i) {
        double middle = 0;
        for (const std::uint32_t v : all.solid.faces[i]) middle += all.solid.vertices[v].x / 3;
        EXPECT_EQ(all.solid.origins[i].mesh, middle < 2 ? 0U : 1U);
    }
}

TEST(TidySoup, LeavesTheOutputAloneUntilItIsDone) {
    // The soup may be what the output was made of.
    Tidied result;
    result.solid = indexed(griddedBox({0, 0, 0}, {1, 1, 1}, 2));
    const std::vector<tidy::Origin>& origins = result.solid.origins;
    const Mesh soup = tidy::toSoup(result.solid);
    result.report = tidy::tidySoup(result.solid, soup, origins, withMerge(tidy::Merge::All));
    expectClosedBox(result, 1);
    EXPECT_EQ(result.solid.faces.size(), 12U);
}

TEST(TidySoup, OfAnIndexedMeshWithoutCornersAndOriginsCarriesZeros) {
    tidy::Solid plain = indexed(unitCube());
    plain.corners.clear();
    plain.origins.clear();
    const Mesh soup = tidy::toSoup(plain);
    ASSERT_EQ(soup.vertices.size(), 36U);
    for (const Vertex& vertex : soup.vertices) {
        EXPECT_EQ(vertex.normal.x, 0.0);
        EXPECT_EQ(vertex.aux[0], 0.0);
    }
    expectClosedBox(tidied(soup), 1);
}

} // namespace orva::test

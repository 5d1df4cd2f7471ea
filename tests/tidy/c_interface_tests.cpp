// The C interface of Orva_tidy over operations of this file's own, which note what they are given and do as they are
// told: what reaches them, what comes back, and what becomes of what they throw.
#include "orva/tidy.h"
#include "orva/tidy.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>

namespace orva::tidy {

namespace {

struct Given {
    std::string name;
    std::vector<types::Mesh<double>> meshes;
    std::vector<Solid> solids;
    std::vector<Origin> origins;
    Cutting cutting = Cutting::InTurn;
    Options options;
};
Given given;

// Two triangles over three vertices, and a report in which no two figures are equal.
Solid canned() {
    Solid solid;
    solid.vertices = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    solid.faces = {{0, 1, 2}, {0, 2, 1}};
    solid.corners = {{Corner{{1, 0, 0}, {1, 2}}, Corner{{0, 1, 0}, {3, 4}}, Corner{{0, 0, 1}, {5, 6}}},
                     {Corner{{2, 0, 0}, {7, 8}}, Corner{{0, 2, 0}, {9, 10}}, Corner{{0, 0, 2}, {11, 12}}}};
    solid.origins = {{0, 7}, {1, 8}};
    return solid;
}
Report cannedReport(bool closed) {
    return {closed, 1, 2.5, 3, 4.5, 5.5, 6.5, 7.5, 8, 9, 10, 11, 12.5};
}

std::function<Report(Solid&)> whatToDo;

Report note(Solid& output, Given what) {
    given = std::move(what);
    return whatToDo(output);
}

} // namespace

Report tidySoup(Solid& output, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                const Options& options) {
    return note(output, {"soup", {soup}, {}, origins, {}, options});
}
Report unionSolid(Solid& output, const std::vector<types::Mesh<double>>& meshes, const Options& options) {
    return note(output, {"union", meshes, {}, {}, {}, options});
}
Report intersectSolid(Solid& output, const std::vector<types::Mesh<double>>& meshes, const Options& options) {
    return note(output, {"intersect", meshes, {}, {}, {}, options});
}
Report subtractSolid(Solid& output, const types::Mesh<double>& base, const std::vector<types::Mesh<double>>& cutters,
                     Cutting cutting, const Options& options) {
    Given what{"subtract", {base}, {}, {}, cutting, options};
    what.meshes.insert(what.meshes.end(), cutters.begin(), cutters.end());
    return note(output, what);
}
Report unionSolid(Solid& output, const std::vector<Solid>& meshes, const Options& options) {
    return note(output, {"union of solids", {}, meshes, {}, {}, options});
}
Report intersectSolid(Solid& output, const std::vector<Solid>& meshes, const Options& options) {
    return note(output, {"intersect solids", {}, meshes, {}, {}, options});
}
Report subtractSolid(Solid& output, const Solid& base, const std::vector<Solid>& cutters, Cutting cutting,
                     const Options& options) {
    Given what{"subtract solids", {}, {base}, {}, cutting, options};
    what.solids.insert(what.solids.end(), cutters.begin(), cutters.end());
    return note(output, what);
}

namespace {

// ---- calls ----

class CInterface : public testing::Test {
protected:
    CInterface() {
        given = {};
        whatToDo = [](Solid& solid) {
            solid = canned();
            return cannedReport(true);
        };
    }
    ~CInterface() override { orva_tidy_free(&output); }

    MeshD mesh() { return {3, vertices.data()}; }
    OrvaSolid solid() { return {3, 1, positions.data(), faces.data(), nullptr, nullptr}; }

    // All seven operations with these operands and options.
    using Call = std::function<OrvaTidyStatus(OrvaSolid*, OrvaTidyReport*)>;
    std::vector<Call> calls(const MeshD* meshes, const OrvaSolid* solids, std::int32_t count,
                            const OrvaTidyOptions* options = nullptr, std::int32_t cutting = ORVA_TIDY_IN_TURN) {
        return {
            [=](auto* out, auto* figures) { return orva_tidy_union(out, figures, meshes, count, options); },
            [=](auto* out, auto* figures) { return orva_tidy_intersect(out, figures, meshes, count, options); },
            [=](auto* out, auto* figures) {
                return orva_tidy_subtract(out, figures, meshes, meshes, count, cutting, options);
            },
            [=](auto* out, auto* figures) { return orva_tidy_union_solids(out, figures, solids, count, options); },
            [=](auto* out, auto* figures) { return orva_tidy_intersect_solids(out, figures, solids, count, options); },
            [=](auto* out, auto* figures) {
                return orva_tidy_subtract_solids(out, figures, solids, solids, count, cutting, options);
            },
            [=](auto* out, auto* figures) { return orva_tidy_soup(out, figures, meshes, nullptr, options); },
        };
    }

    // A record and a report that hold something, to see that it is gone.
    std::array<double, 3> old{};
    OrvaTidyReport report{1, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    OrvaSolid output{};

    void expectNothing() {
        EXPECT_EQ(output.vertex_count, 0);
        EXPECT_EQ(output.face_count, 0);
        EXPECT_EQ(output.vertices, nullptr);
        EXPECT_EQ(output.faces, nullptr);
        EXPECT_EQ(output.corners, nullptr);
        EXPECT_EQ(output.origins, nullptr);
        EXPECT_EQ(report.closed, 0);
        EXPECT_EQ(report.open_edges, 0U);
        EXPECT_EQ(report.scale, 0);
    }
    void expectRefused(const Call& call) {
        output = {1, 0, old.data(), nullptr, nullptr, nullptr};
        report = {1, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
        EXPECT_EQ(call(&output, &report), ORVA_TIDY_BAD_ARGUMENT);
        EXPECT_EQ(given.name, "") << "it was computed";
        expectNothing();
    }

    std::vector<VertexD> vertices{{{0, 1, 2}, {3, 4, 5}, {6, 7}}, {{8, 9, 10}, {11, 12, 13}, {14, 15}}, {}};
    std::vector<double> positions{0, 1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<std::uint32_t> faces{2, 1, 0};
};

} // namespace

TEST_F(CInterface, GivesTheResultAndTheReport) {
    const MeshD in = mesh();
    ASSERT_EQ(orva_tidy_union(&output, &report, &in, 1, nullptr), ORVA_TIDY_DONE);
    ASSERT_EQ(output.vertex_count, 3);
    ASSERT_EQ(output.face_count, 2);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(output.vertices[i], i + 1);
    EXPECT_EQ(std::vector<std::uint32_t>(output.faces, output.faces + 6),
              (std::vector<std::uint32_t>{0, 1, 2, 0, 2, 1}));
    EXPECT_EQ(output.corners[4].normal[1], 2);
    EXPECT_EQ(output.corners[5].aux[1], 12);
    EXPECT_EQ(output.origins[1].mesh, 1U);
    EXPECT_EQ(output.origins[1].face, 8U);

    EXPECT_EQ(report.closed, 1);
    EXPECT_EQ(report.padding, 0);
    EXPECT_EQ(report.open_edges, 1U);
    EXPECT_EQ(report.largest_gap, 2.5);
    EXPECT_EQ(report.loops_removed, 3U);
    EXPECT_EQ(report.loop_area, 4.5);
    EXPECT_EQ(report.moved_by_weld, 5.5);
    EXPECT_EQ(report.moved_by_zip, 6.5);
    EXPECT_EQ(report.moved_by_drop, 7.5);
    EXPECT_EQ(report.forced_ears, 8U);
    EXPECT_EQ(report.faces_left, 9U);
    EXPECT_EQ(report.soup_triangles, 10U);
    EXPECT_EQ(report.pieces, 11U);
    EXPECT_EQ(report.scale, 12.5);
}

TEST_F(CInterface, SaysWhereTheResultIsNotClosed) {
    whatToDo = [](Solid& solid) {
        solid = canned();
        return cannedReport(false);
    };
    const MeshD in = mesh();
    EXPECT_EQ(orva_tidy_soup(&output, &report, &in, nullptr, nullptr), ORVA_TIDY_NOT_CLOSED);
    EXPECT_EQ(output.face_count, 2);
    EXPECT_EQ(report.closed, 0);
    EXPECT_EQ(report.open_edges, 1U);
}

TEST_F(CInterface, EachFunctionCallsItsOwn) {
    const MeshD in = mesh();
    const OrvaSolid indexed = solid();
    const std::vector<std::string> names{
        "union", "intersect", "subtract", "union of solids", "intersect solids", "subtract solids", "soup"};
    std::size_t at = 0;
    for (const Call& call : calls(&in, &indexed, 1)) {
        EXPECT_EQ(call(&output, nullptr), ORVA_TIDY_DONE);
        EXPECT_EQ(given.name, names[at++]);
        orva_tidy_free(&output);
    }
}

TEST_F(CInterface, HandsOverMeshesAsTheyAre) {
    const std::vector<MeshD> in{mesh(), {0, nullptr}, {2, vertices.data() + 1}};
    ASSERT_EQ(orva_tidy_subtract(&output, nullptr, &in[0], in.data(), 3, ORVA_TIDY_AS_ONE_UNION, nullptr),
              ORVA_TIDY_DONE);
    EXPECT_EQ(given.cutting, Cutting::AsOneUnion);
    ASSERT_EQ(given.meshes.size(), 4U);
    ASSERT_EQ(given.meshes[0].vertices.size(), 3U);
    const types::Vertex& second = given.meshes[0].vertices[1];
    EXPECT_EQ(second.pos.z, 10);
    EXPECT_EQ(second.normal.x, 11);
    EXPECT_EQ(second.aux[1], 15);
    EXPECT_EQ(given.meshes[2].vertices.size(), 0U);
    EXPECT_EQ(given.meshes[3].vertices.size(), 2U);
}

TEST_F(CInterface, HandsOverSolidsAsTheyAre) {
    OrvaSolid plain = solid();
    std::vector<OrvaCorner> corners(3, OrvaCorner{{1, 2, 3}, {4, 5}});
    OrvaOrigin origin{6, 7};
    OrvaSolid full = plain;
    full.corners = corners.data();
    full.origins = &origin;
    const std::vector<OrvaSolid> in{plain, full, {}};
    ASSERT_EQ(orva_tidy_union_solids(&output, nullptr, in.data(), 3, nullptr), ORVA_TIDY_DONE);
    ASSERT_EQ(given.solids.size(), 3U);
    EXPECT_EQ(given.solids[0].vertices.at(2).x, 6);
    EXPECT_EQ(given.solids[0].faces.at(0), (std::array<std::uint32_t, 3>{2, 1, 0}));
    EXPECT_TRUE(given.solids[0].corners.empty());
    EXPECT_TRUE(given.solids[0].origins.empty());
    EXPECT_EQ(given.solids[1].corners.at(0)[2].normal.z, 3);
    EXPECT_EQ(given.solids[1].corners.at(0)[2].aux[1], 5);
    EXPECT_TRUE(given.solids[1].origins.at(0) == (Origin{6, 7}));
    EXPECT_TRUE(given.solids[2].vertices.empty());
}

TEST_F(CInterface, HandsOverOneOriginForEachWholeTriangle) {
    vertices.resize(8);
    const MeshD in{8, vertices.data()};
    const std::vector<OrvaOrigin> origins{{0, 1}, {2, 3}};
    ASSERT_EQ(orva_tidy_soup(&output, nullptr, &in, origins.data(), nullptr), ORVA_TIDY_DONE);
    EXPECT_TRUE(given.origins == (std::vector<Origin>{{0, 1}, {2, 3}}));
    orva_tidy_free(&output);
    ASSERT_EQ(orva_tidy_soup(&output, nullptr, &in, nullptr, nullptr), ORVA_TIDY_DONE);
    EXPECT_TRUE(given.origins.empty());
}

TEST_F(CInterface, WithoutOptionsTakesTheDefaults) {
    const MeshD in = mesh();
    OrvaTidyOptions options{1, 1, 1, 1};
    orva_tidy_default_options(&options);
    orva_tidy_default_options(nullptr);
    for (const OrvaTidyOptions* pointer : std::initializer_list<const OrvaTidyOptions*>{nullptr, &options}) {
        ASSERT_EQ(orva_tidy_union(&output, nullptr, &in, 1, pointer), ORVA_TIDY_DONE);
        EXPECT_EQ(given.options.tolerance, Options().tolerance);
        EXPECT_EQ(given.options.gapWidth, Options().gapWidth);
        EXPECT_EQ(given.options.merge, Options().merge);
        EXPECT_EQ(given.options.scale, Options().scale);
        orva_tidy_free(&output);
    }
    options = {0.25, 0.5, ORVA_TIDY_MERGE_ALL, 0};
    ASSERT_EQ(orva_tidy_union(&output, nullptr, &in, 1, &options), ORVA_TIDY_DONE);
    EXPECT_EQ(given.options.tolerance, 0.25);
    EXPECT_EQ(given.options.gapWidth, 0.5);
    EXPECT_EQ(given.options.merge, Merge::All);
    EXPECT_FALSE(given.options.scale);
}

TEST_F(CInterface, TakesNoMeshesAtAll) {
    const MeshD in = mesh();
    ASSERT_EQ(orva_tidy_union(&output, nullptr, nullptr, 0, nullptr), ORVA_TIDY_DONE);
    EXPECT_TRUE(given.meshes.empty());
    orva_tidy_free(&output);
    ASSERT_EQ(orva_tidy_subtract(&output, nullptr, &in, nullptr, 0, ORVA_TIDY_IN_TURN, nullptr), ORVA_TIDY_DONE);
    EXPECT_EQ(given.meshes.size(), 1U);
}

TEST_F(CInterface, AnEmptyResultHasNoArrays) {
    whatToDo = [](Solid& solid) {
        solid = {};
        return cannedReport(true);
    };
    const MeshD in = mesh();
    ASSERT_EQ(orva_tidy_intersect(&output, nullptr, &in, 1, nullptr), ORVA_TIDY_DONE);
    report = {};
    expectNothing();
}

TEST_F(CInterface, TheOutputMayBeAnInput) {
    std::vector<OrvaSolid> solids(2, solid());
    ASSERT_EQ(orva_tidy_subtract_solids(&solids[1], nullptr, solids.data(), &solids[1], 1, ORVA_TIDY_IN_TURN, nullptr),
              ORVA_TIDY_DONE);
    EXPECT_EQ(given.solids.at(1).vertices.at(2).x, 6) << "it was read before it was written";
    EXPECT_EQ(solids[1].face_count, 2);
    EXPECT_NE(solids[1].vertices, positions.data());
    EXPECT_EQ(positions[0], 0) << "the host's array is as it was";
    // What a call made goes into the next one, and back into the same record.
    OrvaSolid first = solids[1];
    ASSERT_EQ(orva_tidy_union_solids(&solids[1], nullptr, &solids[1], 1, nullptr), ORVA_TIDY_DONE);
    EXPECT_EQ(given.solids.at(0).corners.at(1)[2].aux[1], 12);
    orva_tidy_free(&first);
    orva_tidy_free(&solids[1]);
}

TEST_F(CInterface, FreesOnceAndNothingTwice) {
    const MeshD in = mesh();
    ASSERT_EQ(orva_tidy_union(&output, nullptr, &in, 1, nullptr), ORVA_TIDY_DONE);
    orva_tidy_free(&output);
    report = {};
    expectNothing();
    orva_tidy_free(&output);
    orva_tidy_free(nullptr);
}

// ---- what is wrong ----

TEST_F(CInterface, TurnsExceptionsIntoStatuses) {
    const MeshD in = mesh();
    const OrvaSolid indexed = solid();
    const std::vector<std::pair<std::function<Report(Solid&)>, OrvaTidyStatus>> failures{
        {[](Solid&) -> Report { throw std::bad_alloc(); }, ORVA_TIDY_OUT_OF_MEMORY},
        {[](Solid&) -> Report { throw std::length_error("vector too long"); }, ORVA_TIDY_TOO_LARGE},
        {[](Solid&) -> Report { throw std::runtime_error("no scheduler"); }, ORVA_TIDY_FAILED},
        {[](Solid&) -> Report { throw 7; }, ORVA_TIDY_FAILED},
    };
    for (const auto& [failure, status] : failures) {
        whatToDo = failure;
        for (const Call& call : calls(&in, &indexed, 1)) {
            output = {1, 0, old.data(), nullptr, nullptr, nullptr};
            EXPECT_EQ(call(&output, &report), status);
            expectNothing();
            EXPECT_EQ(call(&output, nullptr), status);
        }
    }
}

TEST_F(CInterface, RefusesMoreCornersThanCanBeCounted) {
    OrvaSolid large = solid();
    large.face_count = 0x7FFFFFFF / 3 + 1;
    EXPECT_EQ(orva_tidy_union_solids(&output, &report, &large, 1, nullptr), ORVA_TIDY_TOO_LARGE);
    EXPECT_EQ(given.name, "") << "it was computed";
    expectNothing();
}

TEST_F(CInterface, RefusesNullPointers) {
    const MeshD in = mesh();
    const OrvaSolid indexed = solid();
    for (const Call& call : calls(&in, &indexed, 1)) {
        EXPECT_EQ(call(nullptr, &report), ORVA_TIDY_BAD_ARGUMENT);
        EXPECT_EQ(call(nullptr, nullptr), ORVA_TIDY_BAD_ARGUMENT);
        EXPECT_EQ(given.name, "");
    }
    for (const Call& call : calls(nullptr, nullptr, 1)) expectRefused(call);
    expectRefused([&](auto* out, auto* figures) {
        return orva_tidy_subtract(out, figures, nullptr, &in, 1, ORVA_TIDY_IN_TURN, nullptr);
    });
    expectRefused([&](auto* out, auto* figures) {
        return orva_tidy_subtract_solids(out, figures, &indexed, nullptr, 1, ORVA_TIDY_IN_TURN, nullptr);
    });
}

TEST_F(CInterface, RefusesNegativeCountsAndMissingArrays) {
    const MeshD in = mesh();
    const OrvaSolid indexed = solid();
    std::vector<Call> some = calls(&in, &indexed, -1);
    some.pop_back(); // a soup has no count
    for (const Call& call : some) expectRefused(call);

    for (const MeshD& bad : {MeshD{-1, vertices.data()}, MeshD{3, nullptr}}) {
        for (const OrvaSolid& badSolid : {OrvaSolid{-1, 0, positions.data(), nullptr, nullptr, nullptr},
                                          OrvaSolid{3, -1, positions.data(), faces.data(), nullptr, nullptr},
                                          OrvaSolid{3, 1, nullptr, faces.data(), nullptr, nullptr},
                                          OrvaSolid{3, 1, positions.data(), nullptr, nullptr, nullptr}}) {
            for (const Call& call : calls(&bad, &badSolid, 1)) expectRefused(call);
        }
    }
}

TEST_F(CInterface, RefusesIndicesOutOfRange) {
    for (const std::uint32_t index : {3U, 0x80000000U, 0xFFFFFFFFU}) {
        faces = {0, 1, index};
        const OrvaSolid bad = solid();
        expectRefused([&](auto* out, auto* figures) { return orva_tidy_union_solids(out, figures, &bad, 1, nullptr); });
        const OrvaSolid nothing{};
        expectRefused([&](auto* out, auto* figures) {
            return orva_tidy_subtract_solids(out, figures, &nothing, &bad, 1, ORVA_TIDY_IN_TURN, nullptr);
        });
    }
}

TEST_F(CInterface, RefusesOptionsThatAreNone) {
    const MeshD in = mesh();
    const OrvaSolid indexed = solid();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const OrvaTidyOptions& options :
         {OrvaTidyOptions{-1e-300, 0, 1, 1}, OrvaTidyOptions{std::nan(""), 0, 1, 1}, OrvaTidyOptions{infinity, 0, 1, 1},
          OrvaTidyOptions{0, -1, 1, 1}, OrvaTidyOptions{0, std::nan(""), 1, 1}, OrvaTidyOptions{0, infinity, 1, 1},
          OrvaTidyOptions{0, 0, -1, 1}, OrvaTidyOptions{0, 0, 3, 1}, OrvaTidyOptions{0, 0, 1, -1},
          OrvaTidyOptions{0, 0, 1, 2}}) {
        for (const Call& call : calls(&in, &indexed, 1, &options)) expectRefused(call);
    }
    for (const std::int32_t cutting : {-1, 3}) {
        const std::vector<Call> all = calls(&in, &indexed, 1, nullptr, cutting);
        expectRefused(all[2]);
        expectRefused(all[5]);
    }
}

} // namespace orva::tidy

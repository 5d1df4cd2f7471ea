// orva/orva.hpp against the built library. Who releases what is in ownership_tests.cpp.
#include "operations.hpp"
#include "orva/orva.hpp"

#include <span>

namespace orva::test {

namespace {

c::View shown(const Mesh& mesh) {
    return c::View::of(mesh.vertices.data(), mesh.vertices.size());
}

const Mesh a = box({0, 0, 0}, {2, 2, 2});
const Mesh b = box({1, 1, 1}, {3, 3, 3});
const std::vector<Mesh> cutters{box({-1, 0.5, 0.5}, {3, 0.7, 0.7}), box({0.2, -1, 0.2}, {0.4, 3, 0.4}),
                                box({1.1, 0.1, -1}, {1.3, 1.9, 3})};

} // namespace

TEST(HostFace, GivesTheBitsOfTheNamespacedFunctions) {
    c::Mesh result;
    c::unionMesh(result, shown(a), shown(b));
    EXPECT_TRUE(sameBits(meshOf(result.record()), unite(a, b)));
    c::subtractMesh(result, shown(a), shown(b));
    EXPECT_TRUE(sameBits(meshOf(result.record()), subtract(a, b)));
    c::intersectMesh(result, shown(a), shown(b));
    EXPECT_TRUE(sameBits(meshOf(result.record()), intersect(a, b)));
}

TEST(HostFace, GivesTheBitsOfTheNamespacedFunctionsForManyCutters) {
    std::vector<c::View> views;
    for (const Mesh& cutter : cutters) views.push_back(shown(cutter));
    c::Mesh result;
    c::subtractMultiMesh(result, shown(a), views);
    EXPECT_TRUE(sameBits(meshOf(result.record()), subtractInTurn(a, cutters)));
    c::subtractMultiUnionMesh(result, shown(a), views);
    EXPECT_TRUE(sameBits(meshOf(result.record()), subtractUnion(a, cutters)));

    views.pop_back(); // up to two cutters the parallel union has one order
    withAWorker([&] { c::subtractMultiUnionMeshParallel(result, shown(a), views); });
    EXPECT_TRUE(sameBits(meshOf(result.record()), subtractUnionParallel(a, {cutters[0], cutters[1]})));
}

TEST(HostFace, TakesCuttersFromAnyRangeOfWhatItCanShow) {
    const Mesh expected = subtractInTurn(a, {cutters[0], cutters[1]});
    std::vector<c::Mesh> owned;
    std::vector<std::vector<VertexD>> vectors;
    for (const Mesh& cutter : {cutters[0], cutters[1]}) {
        owned.emplace_back(shown(cutter));
        vectors.emplace_back(owned.back().begin(), owned.back().end());
    }
    c::Mesh result;
    c::subtractMultiMesh(result, shown(a), owned);
    EXPECT_TRUE(sameBits(meshOf(result.record()), expected));
    c::subtractMultiMesh(result, shown(a), vectors);
    EXPECT_TRUE(sameBits(meshOf(result.record()), expected));
    c::subtractMultiMesh(result, shown(a), {owned[0], vectors[1]});
    EXPECT_TRUE(sameBits(meshOf(result.record()), expected));
}

TEST(HostFace, WithoutCuttersLeavesTheOutputAsItIs) {
    c::Mesh output(shown(b));
    const VertexD* vertices = output.data();
    c::subtractMultiMesh(output, shown(a), {});
    c::subtractMultiUnionMesh(output, shown(a), {});
    c::subtractMultiUnionMeshParallel(output, shown(a), std::vector<c::View>());
    EXPECT_EQ(output.data(), vertices);
    EXPECT_EQ(output.size(), 36U);
}

TEST(HostFace, OfAnEmptyOperandIsEmpty) {
    c::Mesh output(shown(a));
    c::unionMesh(output, c::View(), shown(b));
    EXPECT_TRUE(output.empty());
    EXPECT_EQ(output.data(), nullptr);
    EXPECT_EQ(output.begin(), output.end());
}

TEST(HostFace, MayWriteIntoItsOwnInput) {
    c::Mesh running(shown(a));
    c::subtractMesh(running, running, shown(b));
    EXPECT_TRUE(sameBits(meshOf(running.record()), subtract(a, b)));
}

TEST(HostFace, SeesTheHostsVerticesWhereTheyAre) {
    const c::Mesh mesh(shown(triangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0})));
    const std::vector<VertexD> vector(mesh.begin(), mesh.end());
    const std::array<VertexD, 3> array{mesh[0], mesh[1], mesh[2]};
    const VertexD plain[3] = {mesh[0], mesh[1], mesh[2]};
    const std::span<const VertexD> span(plain, 2);
    const auto sees = [](c::View view, const VertexD* vertices, std::size_t count) {
        return view.data() == vertices && view.size() == count && view.record().count == static_cast<int>(count) &&
               &view[1] == vertices + 1;
    };
    EXPECT_TRUE(sees(mesh, mesh.data(), 3));
    EXPECT_TRUE(sees(vector, vector.data(), 3));
    EXPECT_TRUE(sees(array, array.data(), 3));
    EXPECT_TRUE(sees(plain, plain, 3));
    EXPECT_TRUE(sees(span, plain, 2));
    EXPECT_TRUE(sees({plain, 2}, plain, 2));

    const std::span<const VertexD> back = c::View(vector);
    EXPECT_EQ(back.data(), vector.data());
    const std::span<const VertexD> ofMesh = mesh;
    EXPECT_EQ(ofMesh.size(), 3U);

    struct Wider : VertexD {
        int more;
    };
    static_assert(!std::is_convertible_v<std::vector<Wider>, c::View>, "its vertices are not one behind the other");
    static_assert(!std::is_convertible_v<std::vector<double>, c::View>);
}

TEST(HostFace, RefusesMoreThanTheRecordsCanCount) {
    const std::size_t tooMany = std::size_t{1} << 31;
    const VertexD one{};
    EXPECT_EQ(c::View(&one, tooMany - 1).record().count, 0x7FFFFFFF);
    for (const std::size_t count : {tooMany, tooMany << 1, ~std::size_t{0}}) {
        EXPECT_THROW(c::View(&one, count), std::length_error) << count;
        EXPECT_THROW(c::Mesh{count}, std::length_error) << count;
    }
}

} // namespace orva::test

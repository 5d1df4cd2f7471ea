#include "bits.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace orva::test {

namespace {

using Values = std::array<double, 8>;

std::uint64_t canonical(double value) {
    return std::isnan(value) ? 0x7FF8000000000000U : std::bit_cast<std::uint64_t>(value);
}

std::array<std::uint64_t, 8> canonical(const Vertex& vertex) {
    std::array<std::uint64_t, 8> bits{};
    const auto values = std::bit_cast<Values>(vertex);
    std::transform(values.begin(), values.end(), bits.begin(), [](double v) { return canonical(v); });
    return bits;
}

using Triangle = std::array<std::array<std::uint64_t, 8>, 3>;

std::vector<Triangle> sortedTriangles(const Mesh& mesh) {
    std::vector<Triangle> triangles;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        Triangle t{canonical(mesh.vertices[i]), canonical(mesh.vertices[i + 1]), canonical(mesh.vertices[i + 2])};
        std::rotate(t.begin(), std::min_element(t.begin(), t.end()), t.end());
        triangles.push_back(t);
    }
    std::sort(triangles.begin(), triangles.end());
    return triangles;
}

} // namespace

bool sameBits(double a, double b) {
    return canonical(a) == canonical(b);
}
bool sameBits(const Vertex& a, const Vertex& b) {
    return canonical(a) == canonical(b);
}

testing::AssertionResult sameBits(const Mesh& a, const Mesh& b) {
    if (a.vertices.size() != b.vertices.size()) {
        return testing::AssertionFailure() << a.vertices.size() << " vertices against " << b.vertices.size();
    }
    for (std::size_t i = 0; i < a.vertices.size(); ++i) {
        if (!sameBits(a.vertices[i], b.vertices[i])) {
            const auto va = std::bit_cast<Values>(a.vertices[i]);
            const auto vb = std::bit_cast<Values>(b.vertices[i]);
            auto failure = testing::AssertionFailure() << "vertex " << i << std::hexfloat;
            for (std::size_t k = 0; k < 8; ++k) failure << "\n  " << va[k] << " against " << vb[k];
            return failure;
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult sameTriangles(const Mesh& a, const Mesh& b) {
    if (sortedTriangles(a) == sortedTriangles(b)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "not the same triangles (" << a.vertices.size() / 3 << " and "
                                       << b.vertices.size() / 3 << ")";
}

void BitHash::add(std::uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) {
        hash_ ^= (value >> shift) & 0xFFU;
        hash_ *= 0x100000001B3U;
    }
}

void BitHash::add(const Mesh& mesh) {
    add(mesh.vertices.size());
    for (const Vertex& vertex : mesh.vertices) {
        for (const std::uint64_t bits : canonical(vertex)) add(bits);
    }
}

MeshD viewOf(const Mesh& mesh) {
    // The library only reads its inputs.
    auto* vertices = const_cast<Vertex*>(mesh.vertices.data());
    return {static_cast<std::int32_t>(mesh.vertices.size()), reinterpret_cast<VertexD*>(vertices)};
}

Mesh meshOf(const MeshD& record) {
    Mesh mesh;
    for (std::int32_t i = 0; i < record.count; ++i) mesh.vertices.push_back(std::bit_cast<Vertex>(record.vertices[i]));
    return mesh;
}

} // namespace orva::test

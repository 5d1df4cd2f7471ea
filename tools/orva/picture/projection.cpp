#include "picture/projection.hpp"

#include "mesh/vectors.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orva::program {

namespace {

using types::Vec3;

constexpr double filled = 0.88; // of the picture, the rest is margin

// In pixels. A needle seen from its point is not made any larger than that: depths are single precision.
constexpr double deepest = 1e6;

// In pixels. What is narrower faces anywhere, by rounding; its neighbours overlap by as much.
constexpr double narrowest = 0.01;

Vec3 lowest(const Vec3& a, const Vec3& b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)};
}
Vec3 highest(const Vec3& a, const Vec3& b) {
    return {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)};
}

double largestOf(const Vec3& v) {
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

double widthOf(const ScreenTriangle& triangle) {
    const auto& [a, b, c] = triangle.corners;
    const Vec3 ab{static_cast<double>(b.x - a.x), static_cast<double>(b.y - a.y), static_cast<double>(b.z - a.z)};
    const Vec3 ac{static_cast<double>(c.x - a.x), static_cast<double>(c.y - a.y), static_cast<double>(c.z - a.z)};
    const Vec3 bc = ac - ab;
    const Vec3 normal = cross(ab, ac);
    const double longest = std::max({dot(ab, ab), dot(ac, ac), dot(bc, bc)});
    return longest > 0.0 ? std::sqrt(dot(normal, normal) / longest) : 0.0;
}

} // namespace

Projection::Projection(const std::vector<types::Mesh<double>>& meshes, const View& view, std::size_t width,
                       std::size_t height)
    : axes(axesOf(view)), middleX(0.5 * static_cast<double>(width)), middleY(0.5 * static_cast<double>(height)) {
    for (const auto& mesh : meshes) {
        for (const types::Vertex& vertex : mesh.vertices) unit = std::max(unit, largestOf(vertex.pos));
    }
    if (unit == 0.0) unit = 1.0;

    constexpr double infinity = std::numeric_limits<double>::infinity();
    Vec3 low{infinity, infinity, infinity};
    Vec3 high{-infinity, -infinity, -infinity};
    for (const auto& mesh : meshes) {
        for (const types::Vertex& vertex : mesh.vertices) {
            const Vec3 p = turned(vertex.pos);
            low = lowest(low, p);
            high = highest(high, p);
        }
    }
    if (!(low.x <= high.x)) return; // nothing
    middle = 0.5 * (low + high);
    const double perX = static_cast<double>(width) / (high.x - low.x);
    const double perY = static_cast<double>(height) / (high.y - low.y);
    const double perZ = deepest / (high.z - low.z);
    scale = filled * std::min({perX, perY, perZ});
    if (!std::isfinite(scale)) scale = 1.0; // a point, which no scale makes visible
}

ScreenVector Projection::operator()(const Vec3& position) const {
    const Vec3 p = scale * (turned(position) - middle);
    return {static_cast<float>(middleX + p.x), static_cast<float>(middleY - p.y), static_cast<float>(p.z)};
}

std::vector<ScreenTriangle> Projection::project(const std::vector<types::Mesh<double>>& meshes) const {
    std::vector<ScreenTriangle> triangles;
    for (std::size_t mesh = 0; mesh < meshes.size(); ++mesh) {
        const auto& vertices = meshes[mesh].vertices;
        for (std::size_t i = 0; i + 2 < vertices.size(); i += 3) {
            ScreenTriangle triangle;
            for (std::size_t k = 0; k < 3; ++k) triangle.corners[k] = (*this)(vertices[i + k].pos);
            if (widthOf(triangle) < narrowest) continue;
            triangle.normal = normalOf(vertices[i].pos, vertices[i + 1].pos, vertices[i + 2].pos);
            triangle.mesh = static_cast<std::uint32_t>(mesh);
            triangles.push_back(triangle);
        }
    }
    return triangles;
}

Vec3 Projection::turned(const Vec3& position) const {
    const Vec3 p{position.x / unit, position.y / unit, position.z / unit};
    return {dot(p, axes.right), dot(p, axes.up), dot(p, axes.near)};
}

ScreenVector Projection::normalOf(const Vec3& a, const Vec3& b, const Vec3& c) const {
    const Vec3 origin = turned(a);
    const Vec3 ab = turned(b) - origin;
    const Vec3 ac = turned(c) - origin;
    const double size = std::max(largestOf(ab), largestOf(ac));
    const Vec3 normal = cross((1.0 / size) * ab, (1.0 / size) * ac);
    const double length = std::sqrt(dot(normal, normal));
    if (!(length > 0.0)) return {};
    return {static_cast<float>(normal.x / length), static_cast<float>(-normal.y / length),
            static_cast<float>(normal.z / length)};
}

} // namespace orva::program

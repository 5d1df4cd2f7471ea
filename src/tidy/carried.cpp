#include "tidy/carried.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace orva::tidy {

namespace {

// Of the largest value among those that are compared: a thousand times what cutting a triangle many times does to them.
constexpr double ROUNDING = 1e-9;

bool isAt(const types::Vertex& vertex, const Vec3& point) {
    return vertex.pos.x == point.x && vertex.pos.y == point.y && vertex.pos.z == point.z;
}

Corner cornerOf(const types::Vertex& vertex) {
    return {vertex.normal, vertex.aux};
}

const types::Vertex& nearest(const types::Vertex* triangle, const Vec3& point) {
    return *std::min_element(triangle, triangle + 3, [&point](const types::Vertex& a, const types::Vertex& b) {
        return squaredLength(a.pos - point) < squaredLength(b.pos - point);
    });
}

// NaN where one is among them; std::max would take it for small.
double largest(std::initializer_list<double> values) {
    double most = 0.0;
    for (const double value : values) {
        if (!(value <= most) && most == most) most = value;
    }
    return most;
}

double difference(const Corner& a, const Corner& b) {
    return largest({std::fabs(a.normal.x - b.normal.x), std::fabs(a.normal.y - b.normal.y),
                    std::fabs(a.normal.z - b.normal.z), std::fabs(a.aux[0] - b.aux[0]),
                    std::fabs(a.aux[1] - b.aux[1])});
}

} // namespace

Corner carriedAt(const types::Vertex* triangle, const Vec3& point) {
    const types::Vertex& a = triangle[0];
    const types::Vertex& b = triangle[1];
    const types::Vertex& c = triangle[2];
    for (const types::Vertex* vertex : {&a, &b, &c}) {
        if (isAt(*vertex, point)) return cornerOf(*vertex);
    }
    const Vec3 normal = cross(b.pos - a.pos, c.pos - a.pos);
    const double area = squaredLength(normal);
    const double toB = dot(normal, cross(point - a.pos, c.pos - a.pos)) / area;
    const double toC = dot(normal, cross(b.pos - a.pos, point - a.pos)) / area;
    if (!(area > 0.0) || !std::isfinite(toB) || !std::isfinite(toC)) return cornerOf(nearest(triangle, point));

    const auto mix = [=](double atA, double atB, double atC) { return atA + (atB - atA) * toB + (atC - atA) * toC; };
    return {{mix(a.normal.x, b.normal.x, c.normal.x), mix(a.normal.y, b.normal.y, c.normal.y),
             mix(a.normal.z, b.normal.z, c.normal.z)},
            {mix(a.aux[0], b.aux[0], c.aux[0]), mix(a.aux[1], b.aux[1], c.aux[1])}};
}

bool carryTheSame(const types::Vertex* triangle, const types::Vertex* other) {
    const Corner zero{};
    double size = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
        size = largest({size, difference(cornerOf(triangle[k]), zero), difference(cornerOf(other[k]), zero)});
    }
    if (!std::isfinite(size)) return false;
    return std::all_of(other, other + 3, [&](const types::Vertex& vertex) {
        return difference(carriedAt(triangle, vertex.pos), cornerOf(vertex)) <= ROUNDING * size;
    });
}

} // namespace orva::tidy

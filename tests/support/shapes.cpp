#include "shapes.hpp"

#include <emmintrin.h>

#include <array>
#include <utility>

namespace orva::test {

namespace {

Vec3 sum(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vec3 times(const Vec3& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
// The instruction itself: unoptimised, MinGW's std::sqrt is another one and rounds twice.
double squareRoot(double value) {
    return _mm_cvtsd_f64(_mm_sqrt_sd(_mm_set_sd(value), _mm_set_sd(value)));
}
Vec3 onSphere(const Vec3& a) {
    const double length = squareRoot(a.x * a.x + a.y * a.y + a.z * a.z);
    return {a.x / length, a.y / length, a.z / length};
}

// One face: origin, two edges whose cross product points outward.
void addFace(Mesh& mesh, const Vec3& origin, const Vec3& u, const Vec3& v, const Vec3& normal, int steps) {
    const auto corner = [&](int i, int j) {
        const double s = static_cast<double>(i) / steps;
        const double t = static_cast<double>(j) / steps;
        return Vertex{sum(origin, sum(times(u, s), times(v, t))), normal, {s, t}};
    };
    for (int i = 0; i < steps; ++i) {
        for (int j = 0; j < steps; ++j) {
            for (const auto& [di, dj] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}}) {
                mesh.vertices.push_back(corner(i + di, j + dj));
            }
        }
    }
}

} // namespace

std::uint64_t Random::bits() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
}

double Random::uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(bits() >> 11) * 0x1p-53);
}

int Random::integer(int low, int high) {
    return low + static_cast<int>(bits() % static_cast<std::uint64_t>(high - low + 1));
}

Vertex at(double x, double y, double z) {
    return {{x, y, z}, {}, {}};
}

Mesh triangle(const Vec3& a, const Vec3& b, const Vec3& c) {
    return {{{a, {}, {}}, {b, {}, {}}, {c, {}, {}}}};
}

Mesh griddedBox(const Vec3& low, const Vec3& high, int steps) {
    const Vec3 dx{high.x - low.x, 0, 0};
    const Vec3 dy{0, high.y - low.y, 0};
    const Vec3 dz{0, 0, high.z - low.z};
    Mesh mesh;
    addFace(mesh, low, dy, dx, {0, 0, -1}, steps);
    addFace(mesh, sum(low, dz), dx, dy, {0, 0, 1}, steps);
    addFace(mesh, low, dx, dz, {0, -1, 0}, steps);
    addFace(mesh, sum(low, dy), dz, dx, {0, 1, 0}, steps);
    addFace(mesh, low, dz, dy, {-1, 0, 0}, steps);
    addFace(mesh, sum(low, dx), dy, dz, {1, 0, 0}, steps);
    return mesh;
}

Mesh box(const Vec3& low, const Vec3& high) {
    return griddedBox(low, high, 1);
}
Mesh unitCube() {
    return box({0, 0, 0}, {1, 1, 1});
}

Mesh tetrahedron(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
    Mesh mesh = triangle(a, c, b);
    for (const auto& [from, to] : {std::pair{a, b}, {b, c}, {c, a}}) mesh = joined(mesh, triangle(from, to, d));
    return mesh;
}

Mesh prism(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& by) {
    Mesh mesh = joined(triangle(a, c, b), triangle(sum(a, by), sum(b, by), sum(c, by)));
    for (const auto& [from, to] : {std::pair{a, b}, {b, c}, {c, a}}) {
        mesh = joined(mesh, triangle(from, to, sum(to, by)));
        mesh = joined(mesh, triangle(from, sum(to, by), sum(from, by)));
    }
    return mesh;
}

Mesh icosphere(int level, const Vec3& centre, double radius) {
    const double g = (1 + squareRoot(5.0)) / 2;
    const std::array<Vec3, 12> corners{{{-1, g, 0},
                                        {1, g, 0},
                                        {-1, -g, 0},
                                        {1, -g, 0},
                                        {0, -1, g},
                                        {0, 1, g},
                                        {0, -1, -g},
                                        {0, 1, -g},
                                        {g, 0, -1},
                                        {g, 0, 1},
                                        {-g, 0, -1},
                                        {-g, 0, 1}}};
    static constexpr int faces[20][3] = {{0, 11, 5}, {0, 5, 1},  {0, 1, 7},   {0, 7, 10}, {0, 10, 11},
                                         {1, 5, 9},  {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8},
                                         {3, 9, 4},  {3, 4, 2},  {3, 2, 6},   {3, 6, 8},  {3, 8, 9},
                                         {4, 9, 5},  {2, 4, 11}, {6, 2, 10},  {8, 6, 7},  {9, 8, 1}};
    std::vector<std::array<Vec3, 3>> triangles;
    for (const auto& face : faces) {
        triangles.push_back({onSphere(corners[static_cast<std::size_t>(face[0])]),
                             onSphere(corners[static_cast<std::size_t>(face[1])]),
                             onSphere(corners[static_cast<std::size_t>(face[2])])});
    }
    for (int i = 0; i < level; ++i) {
        std::vector<std::array<Vec3, 3>> finer;
        for (const auto& [a, b, c] : triangles) {
            const Vec3 ab = onSphere(sum(a, b));
            const Vec3 bc = onSphere(sum(b, c));
            const Vec3 ca = onSphere(sum(c, a));
            finer.insert(finer.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
        }
        triangles = std::move(finer);
    }
    Mesh mesh;
    for (const auto& corners3 : triangles) {
        for (const Vec3& p : corners3) mesh.vertices.push_back({sum(centre, times(p, radius)), p, {p.x, p.y}});
    }
    return mesh;
}

Mesh soup(Random& random, int count) {
    Mesh mesh;
    const auto value = [&random] { return random.uniform(0, 1); };
    for (int i = 0; i < 3 * count; ++i) {
        const Vec3 pos{value(), value(), value()};
        const Vec3 normal{value(), value(), value()};
        mesh.vertices.push_back({pos, normal, {value(), value()}});
    }
    return mesh;
}

Mesh moved(Mesh mesh, const Vec3& by) {
    for (Vertex& vertex : mesh.vertices) vertex.pos = sum(vertex.pos, by);
    return mesh;
}

Mesh scaled(Mesh mesh, double by) {
    for (Vertex& vertex : mesh.vertices) vertex.pos = times(vertex.pos, by);
    return mesh;
}

Mesh turned(Mesh mesh, Random& random) {
    // The rotation of the quaternion (w, x, y, z), not of unit length: divided by its square.
    const double w = random.uniform(-1, 1);
    const double x = random.uniform(-1, 1);
    const double y = random.uniform(-1, 1);
    const double z = random.uniform(-1, 1);
    const double n = w * w + x * x + y * y + z * z;
    const auto turn = [&](const Vec3& p) {
        return Vec3{((w * w + x * x - y * y - z * z) * p.x + 2 * (x * y - w * z) * p.y + 2 * (x * z + w * y) * p.z) / n,
                    (2 * (x * y + w * z) * p.x + (w * w - x * x + y * y - z * z) * p.y + 2 * (y * z - w * x) * p.z) / n,
                    (2 * (x * z - w * y) * p.x + 2 * (y * z + w * x) * p.y + (w * w - x * x - y * y + z * z) * p.z) /
                        n};
    };
    for (Vertex& vertex : mesh.vertices) {
        vertex.pos = turn(vertex.pos);
        vertex.normal = turn(vertex.normal);
    }
    return mesh;
}

Mesh joined(Mesh a, const Mesh& b) {
    a.vertices.insert(a.vertices.end(), b.vertices.begin(), b.vertices.end());
    return a;
}

} // namespace orva::test

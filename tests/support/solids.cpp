#include "solids.hpp"

#include "measures.hpp"

#include <array>
#include <cstddef>
#include <utility>

namespace orva::test {

namespace {

Vec3 gridPoint(Random& random) {
    const double x = random.integer(0, 4);
    const double y = random.integer(0, 4);
    const double z = random.integer(0, 4);
    return {x, y, z};
}

Mesh gridBox(Random& random, int steps) {
    Vec3 low{};
    Vec3 high{};
    for (double Vec3::*const axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        low.*axis = random.integer(0, 3);
        high.*axis = random.integer(static_cast<int>(low.*axis) + 1, 4);
    }
    return griddedBox(low, high, steps);
}

// A right angle of two walls and a floor's thickness: not convex.
Mesh corner(Random& random) {
    const double width = random.integer(2, 4);
    const double depth = random.integer(2, 4);
    const double height = random.integer(1, 4);
    const double x = random.integer(1, static_cast<int>(width) - 1);
    const double y = random.integer(1, static_cast<int>(depth) - 1);
    const Vec3 up{0, 0, height};
    const std::array<Vec3, 6> outline{
        {{0, 0, 0}, {width, 0, 0}, {width, y, 0}, {x, y, 0}, {x, depth, 0}, {0, depth, 0}}};
    Mesh mesh;
    const auto add = [&mesh](const Vec3& a, const Vec3& b, const Vec3& c) { mesh = joined(mesh, triangle(a, b, c)); };
    const auto above = [&up](const Vec3& p) { return Vec3{p.x, p.y, p.z + up.z}; };
    const Vec3 onWall{0, y, 0};
    const std::array<std::array<Vec3, 3>, 5> floor{{{outline[0], outline[1], outline[2]},
                                                    {outline[0], outline[2], outline[3]},
                                                    {outline[0], outline[3], onWall},
                                                    {onWall, outline[3], outline[4]},
                                                    {onWall, outline[4], outline[5]}}};
    for (const auto& [a, b, c] : floor) {
        add(a, c, b);
        add(above(a), above(b), above(c));
    }
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Vec3& a = outline[i];
        const Vec3& b = outline[(i + 1) % outline.size()];
        add(a, b, above(b));
        add(a, above(b), above(a));
    }
    return mesh;
}

} // namespace

Mesh insideOut(Mesh mesh) {
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) std::swap(mesh.vertices[i], mesh.vertices[i + 2]);
    return mesh;
}

Mesh solidOnGrid(Random& random) {
    Mesh mesh;
    while (volume(mesh) < 0.1) { // until it is not flat
        switch (random.integer(0, 6)) {
        case 0:
        case 1:
            mesh = gridBox(random, 1);
            break;
        case 2:
            mesh = gridBox(random, 2);
            break;
        case 3: {
            const Vec3 a = gridPoint(random);
            const Vec3 b = gridPoint(random);
            const Vec3 c = gridPoint(random);
            const Vec3 d = gridPoint(random);
            mesh = tetrahedron(a, b, c, d);
            break;
        }
        case 4: {
            const Vec3 a = gridPoint(random);
            Vec3 b = gridPoint(random);
            Vec3 c = gridPoint(random);
            b.z = a.z;
            c.z = a.z;
            const double height = random.integer(1, 4) - a.z;
            mesh = prism(a, b, c, {0, 0, height});
            break;
        }
        case 5:
            mesh = corner(random);
            break;
        default: // with a cavity
            mesh = joined(box({0, 0, 0}, {4, 3, 4}), insideOut(box({1, 1, 1}, {3, 2, 2})));
            break;
        }
        if (volume(mesh) < 0) mesh = insideOut(std::move(mesh));
    }
    return mesh;
}

Vec3 randomPoint(Random& random, double low, double high) {
    const double x = random.uniform(low, high);
    const double y = random.uniform(low, high);
    const double z = random.uniform(low, high);
    return {x, y, z};
}

Mesh solidAnywhere(Random& random) {
    Mesh mesh = random.integer(0, 3) == 0 ? icosphere(random.integer(0, 1), {2, 2, 2}, random.uniform(0.5, 2.5))
                                          : solidOnGrid(random);
    mesh = turned(moved(std::move(mesh), {-2, -2, -2}), random);
    return moved(std::move(mesh), randomPoint(random, -1, 1));
}

} // namespace orva::test

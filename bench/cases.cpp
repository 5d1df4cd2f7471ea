#include "cases.hpp"

#include "off.hpp"
#include "shapes.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace orva::bench {

namespace {

using types::Vec3;
using types::Vertex;

// In the plane z = 0 around the origin; corners shared bit for bit.
Mesh torus(int steps, double R, double r) {
    const auto at = [=](int i, int j) {
        const double u = 2 * std::numbers::pi * (i % steps) / steps;
        const double v = 2 * std::numbers::pi * (j % steps) / steps;
        const double distance = R + r * std::cos(v);
        const Vec3 normal{std::cos(u) * std::cos(v), std::sin(u) * std::cos(v), std::sin(v)};
        return Vertex{{distance * std::cos(u), distance * std::sin(u), r * std::sin(v)}, normal, {u, v}};
    };
    Mesh mesh;
    for (int i = 0; i < steps; ++i) {
        for (int j = 0; j < steps; ++j) {
            const std::array<Vertex, 4> quad{at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)};
            for (const std::size_t k : {0U, 1U, 2U, 0U, 2U, 3U}) mesh.vertices.push_back(quad[k]);
        }
    }
    return mesh;
}

Mesh turnedAboutX(Mesh mesh) { // by a right angle
    for (Vertex& vertex : mesh.vertices) {
        vertex.pos = {vertex.pos.x, -vertex.pos.z, vertex.pos.y};
        vertex.normal = {vertex.normal.x, -vertex.normal.z, vertex.normal.y};
    }
    return mesh;
}

Mesh turnedAboutZ(Mesh mesh, double angle, const Vec3& centre) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    for (Vertex& vertex : mesh.vertices) {
        const double x = vertex.pos.x - centre.x;
        const double y = vertex.pos.y - centre.y;
        vertex.pos = {centre.x + c * x - s * y, centre.y + s * x + c * y, vertex.pos.z};
    }
    return mesh;
}

// Between 0 and 1, the longest side from end to end.
Mesh inUnitBox(Mesh mesh) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    Vec3 low{inf, inf, inf};
    Vec3 high{-inf, -inf, -inf};
    for (const Vertex& vertex : mesh.vertices) {
        low = {std::min(low.x, vertex.pos.x), std::min(low.y, vertex.pos.y), std::min(low.z, vertex.pos.z)};
        high = {std::max(high.x, vertex.pos.x), std::max(high.y, vertex.pos.y), std::max(high.z, vertex.pos.z)};
    }
    const double size = std::max({high.x - low.x, high.y - low.y, high.z - low.z});
    for (Vertex& vertex : mesh.vertices) {
        vertex.pos = {(vertex.pos.x - low.x) / size, (vertex.pos.y - low.y) / size, (vertex.pos.z - low.z) / size};
    }
    return mesh;
}

std::vector<Mesh> wallAndWindows(int count) {
    const int rows = count >= 100 ? 5 : 1;
    const int columns = count / rows;
    std::vector<Mesh> meshes{test::box({0, 0, 0}, {10, 0.3, 3})};
    for (int j = 0; j < rows; ++j) {
        for (int i = 0; i < columns; ++i) {
            const double x = 10.0 / columns;
            const double z = 3.0 / rows;
            meshes.push_back(test::box({(i + 0.2) * x, -1, (j + 0.2) * z}, {(i + 0.8) * x, 1, (j + 0.8) * z}));
        }
    }
    return meshes;
}

} // namespace

const char* nameOf(Operation operation) {
    switch (operation) {
    case Operation::Union:
        return "union";
    case Operation::Difference:
        return "difference";
    case Operation::Intersection:
        return "intersection";
    case Operation::InTurn:
        return "in turn";
    case Operation::AsUnion:
        return "as one union";
    default:
        return "in parallel";
    }
}

std::vector<Job> allJobs(const std::string& meshes) {
    std::vector<Job> jobs;
    for (const Operation operation : {Operation::Union, Operation::Difference, Operation::Intersection}) {
        for (int level = 3; level <= 7; ++level) {
            jobs.push_back({"icospheres", "level " + std::to_string(level), operation, [level] {
                                return std::vector<Mesh>{test::icosphere(level, {0, 0, 0}, 1),
                                                         test::icosphere(level, {0.7, 0.3, 0.2}, 1)};
                            }});
        }
    }
    for (const Operation operation : {Operation::Union, Operation::Difference}) {
        for (const int steps : {32, 64, 128, 256}) {
            const std::string size = std::to_string(steps) + " x " + std::to_string(steps);
            jobs.push_back({"tori", size, operation, [steps] {
                                const Mesh first = torus(steps, 1, 0.4);
                                return std::vector<Mesh>{first, test::moved(turnedAboutX(first), {0.5, 0.1, 0})};
                            }});
        }
    }
    for (const Operation operation : {Operation::Union, Operation::Difference, Operation::Intersection}) {
        for (const char* name : {"anchor", "elephant", "fandisk", "bear", "armadillo", "bunny00"}) {
            jobs.push_back({"scans", name, operation, [meshes, name] {
                                const Mesh first = inUnitBox(readOff(meshes + "/" + name + ".off"));
                                const Mesh second = turnedAboutZ(first, 0.5, {0.5, 0.5, 0.5});
                                return std::vector<Mesh>{first, test::moved(second, {0.1, 0.05, 0.07})};
                            }});
        }
    }
    for (const Operation operation : {Operation::InTurn, Operation::AsUnion, Operation::ParallelUnion}) {
        for (const int count : {1, 10, 50, 100, 400}) {
            jobs.push_back(
                {"wall and windows", std::to_string(count), operation, [count] { return wallAndWindows(count); }});
        }
    }
    for (const Operation operation : {Operation::Union, Operation::Difference, Operation::Intersection}) {
        jobs.push_back({"boxes", "12", operation, [] {
                            return std::vector<Mesh>{test::unitCube(), test::box({0.5, 0.4, 0.3}, {1.5, 1.4, 1.3})};
                        }});
    }
    return jobs;
}

Job jobNamed(const std::string& name, const std::string& meshes) {
    for (const Job& job : allJobs(meshes)) {
        if (job.name() == name) return job;
    }
    throw std::runtime_error("no job '" + name + "'");
}

} // namespace orva::bench

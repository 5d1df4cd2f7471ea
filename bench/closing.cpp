#include "closing.hpp"

#include "cgal.hpp"
#include "measures.hpp"
#include "off.hpp"
#include "orva/tidy.hpp"
#include "process.hpp"
#include "score.hpp"
#include "shapes.hpp"
#include "tidying.hpp"

#include <tbb/global_control.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace orva::bench {

namespace {

using types::Vec3;

// Larger meshes say nothing here that these do not, and take minutes.
constexpr std::size_t MOST_TRIANGLES = 15000;

// The most seconds for all results of a mesh.
constexpr double LIMIT = 120;

constexpr int RANDOM_SOLIDS = 300;

// ---- Tallies that come out of another process ----

struct Packed {
    std::uint64_t results = 0;
    std::uint64_t closed = 0;
    std::uint64_t misreported = 0;
    double inTolerances = 0.0;
    char open[4000]{}; ///< its lines, as many as there is room for
};

class Counter {
public:
    explicit Counter(std::string name) : name_(std::move(name)) {}

    void count(const std::string& what, const tidy::Solid& solid, const tidy::Report& report, double size) {
        const bool closed = isClosedByIndex(solid);
        ++packed_.results;
        packed_.closed += closed ? 1 : 0;
        packed_.misreported += closed != report.closed ? 1 : 0;
        const double tolerance = std::max(8e-6, 1e-9 * size * report.scale) / report.scale;
        packed_.inTolerances = std::max(packed_.inTolerances, movedAtMost(report) / tolerance);
        if (closed && report.closed) return;
        char line[200];
        std::snprintf(line, sizeof line, "%s, %s: %llu open edges, gap %.1e of the size%s\n", name_.c_str(),
                      what.c_str(), static_cast<unsigned long long>(report.openEdges), report.largestGap / size,
                      closed == report.closed ? "" : ", REPORTED WRONGLY");
        const std::size_t used = std::strlen(packed_.open);
        if (used + std::strlen(line) < sizeof packed_.open) std::strcpy(packed_.open + used, line);
    }

    const Packed& packed() const { return packed_; }

private:
    std::string name_;
    Packed packed_;
};

// Counts in a process of its own: where it crashes, or goes on for too long, that is `expected` results that are not
// closed.
Tally counted(const std::string& name, std::uint64_t expected, const std::function<void(Counter&)>& work) {
    Tally tally;
    try {
        const Packed packed = apart<Packed>(LIMIT, [&] {
            const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
            Counter counter(name);
            work(counter);
            return counter.packed();
        });
        tally.results = packed.results;
        tally.closed = packed.closed;
        tally.misreported = packed.misreported;
        tally.inTolerances = packed.inTolerances;
        for (const char* line = packed.open; *line != '\0';) {
            const char* end = std::strchr(line, '\n');
            tally.open.emplace_back(line, end);
            line = end + 1;
        }
    } catch (const std::runtime_error& error) {
        tally.results = expected;
        tally.open.push_back(name + ": " + error.what());
    }
    return tally;
}

// ---- Copies ----

Mesh turnedAboutZ(Mesh mesh, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    for (types::Vertex& vertex : mesh.vertices) {
        const Vec3 p = vertex.pos;
        vertex.pos = {c * p.x - s * p.y, s * p.x + c * p.y, p.z};
    }
    return mesh;
}

struct Copy {
    const char* name;
    Mesh mesh;
};

// The last two touch: what is straight along x lies in itself, and the ends of the other lie in one plane.
std::vector<Copy> copiesOf(const Mesh& mesh, double size) {
    double low = mesh.vertices.front().pos.x;
    double high = low;
    for (const types::Vertex& vertex : mesh.vertices) {
        low = std::min(low, vertex.pos.x);
        high = std::max(high, vertex.pos.x);
    }
    return {{"moved", test::moved(mesh, {0.2 * size, 0.11 * size, 0.07 * size})},
            {"turned", test::moved(turnedAboutZ(mesh, 0.5), {0.1 * size, 0.05 * size, 0.07 * size})},
            {"moved along x", test::moved(mesh, {0.2 * size, 0, 0})},
            {"end to end", test::moved(mesh, {high - low, 0, 0})}};
}

constexpr std::uint64_t RESULTS_OF_COPIES = 12;

void countOperations(Counter& counter, const std::string& copy, const Mesh& a, const Mesh& b, double size) {
    tidy::Solid solid;
    counter.count(copy + ", union", solid, tidy::unionSolid(solid, std::vector<Mesh>{a, b}), size);
    counter.count(copy + ", difference", solid, tidy::subtractSolid(solid, a, std::vector<Mesh>{b}), size);
    counter.count(copy + ", intersection", solid, tidy::intersectSolid(solid, std::vector<Mesh>{a, b}), size);
}

Tally withCopies(const std::string& name, const Mesh& mesh) {
    return counted(name, RESULTS_OF_COPIES, [&](Counter& counter) {
        const double size = sizeOf(mesh);
        for (const Copy& copy : copiesOf(mesh, size)) countOperations(counter, copy.name, mesh, copy.mesh, size);
    });
}

// ---- Real meshes ----

Mesh outward(Mesh mesh) {
    if (test::volume(mesh) < 0) {
        for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) std::swap(mesh.vertices[i], mesh.vertices[i + 2]);
    }
    return mesh;
}

bool crossesItself(const Mesh& mesh) {
    try {
        return apart<bool>(LIMIT, [&mesh] { return cgal::crossesItself(mesh); });
    } catch (const std::runtime_error&) {
        return true; // it cannot be told: corners that are no disc, triangles without area
    }
}

Tally ofRealMeshes(const std::string& meshes) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(meshes)) {
        if (entry.path().extension() == ".off") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    Tally tally;
    int measured = 0;
    int large = 0;
    std::string crossing;
    for (const std::filesystem::path& file : files) {
        Mesh mesh;
        try {
            mesh = readOff(file.string());
        } catch (const std::runtime_error&) {
            continue; // another format, or a curve
        }
        const std::string name = file.stem().string();
        if (mesh.vertices.empty() || !isClosed(mesh)) continue;
        if (mesh.vertices.size() / 3 > MOST_TRIANGLES) {
            ++large;
        } else if (crossesItself(mesh)) {
            crossing += (crossing.empty() ? "" : ", ") + name;
        } else {
            ++measured;
            tally.add(withCopies(name, outward(std::move(mesh))));
        }
    }
    Score::note(std::to_string(measured) + " real meshes measured; " + std::to_string(large) + " of more than " +
                std::to_string(MOST_TRIANGLES) + " triangles left out, and these, which cross themselves: " + crossing);
    return tally;
}

// ---- Made ones ----

Tally ofRoundSolids(const std::string& meshes) {
    Tally tally;
    for (const char* name : {"icospheres/level 3/union", "icospheres/level 4/union", "icospheres/level 5/union",
                             "tori/32 x 32/union", "tori/64 x 64/union"}) {
        const Job job = jobNamed(name, meshes);
        const std::vector<Mesh> inputs = job.inputs();
        const std::string shape = job.series + ", " + job.size;
        tally.add(withCopies(shape, inputs[0]));
        tally.add(counted(shape, 3, [&](Counter& counter) {
            countOperations(counter, "as in the table", inputs[0], inputs[1], sizeOf(inputs[0]));
        }));
    }
    return tally;
}

Tally ofWalls(const std::string& meshes) {
    Tally tally;
    for (const Job& job : allJobs(meshes)) {
        if (job.operation != Operation::InTurn && job.operation != Operation::AsUnion) continue;
        tally.add(counted(job.name(), 1, [&](Counter& counter) {
            const std::vector<Mesh> inputs = job.inputs();
            const bool inTurn = job.operation == Operation::InTurn;
            tidy::Solid solid;
            const tidy::Report report = tidy::subtractSolid(solid, inputs[0], {inputs.begin() + 1, inputs.end()},
                                                            inTurn ? tidy::Cutting::InTurn : tidy::Cutting::AsOneUnion);
            counter.count("difference", solid, report, sizeOf(inputs[0]));
        }));
    }
    return tally;
}

// With corners on a grid, so that faces and edges of two of them often lie in one another.
Mesh onGrid(test::Random& random) {
    const auto point = [&random] {
        const int x = random.integer(0, 4);
        const int y = random.integer(0, 4);
        const int z = random.integer(0, 4);
        return Vec3{1.0 * x, 1.0 * y, 1.0 * z};
    };
    Mesh mesh;
    while (std::abs(test::volume(mesh)) < 0.1) { // until it is not flat
        const Vec3 a = point();
        Vec3 b = point();
        Vec3 c = point();
        const Vec3 d = point();
        switch (random.integer(0, 2)) {
        case 0: {
            const Vec3 low{std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)};
            const Vec3 high{std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)};
            mesh = test::griddedBox(low, high, random.integer(1, 3));
            break;
        }
        case 1:
            mesh = test::tetrahedron(a, b, c, d);
            break;
        default:
            b.z = a.z;
            c.z = a.z;
            mesh = test::prism(a, b, c, {0, 0, d.z - a.z});
            break;
        }
    }
    return outward(std::move(mesh));
}

Mesh anywhere(test::Random& random) {
    Mesh mesh = random.integer(0, 3) == 0 ? test::icosphere(random.integer(0, 2), {2, 2, 2}, random.uniform(0.5, 2.5))
                                          : onGrid(random);
    mesh = test::turned(test::moved(std::move(mesh), {-2, -2, -2}), random);
    const double x = random.uniform(-1, 1);
    const double y = random.uniform(-1, 1);
    const double z = random.uniform(-1, 1);
    return test::moved(std::move(mesh), {x, y, z});
}

Tally ofRandomSolids() {
    Tally tally;
    constexpr std::pair<const char*, Mesh (*)(test::Random&)> kinds[]{{"on a grid", onGrid}, {"anywhere", anywhere}};
    for (const auto& [kind, draw] : kinds) {
        for (int seed = 0; seed < RANDOM_SOLIDS; ++seed) {
            const std::string name = "random solids " + std::string(kind) + ", seed " + std::to_string(seed);
            tally.add(counted(name, 3, [&, draw = draw](Counter& counter) {
                test::Random random(static_cast<std::uint64_t>(seed));
                const Mesh a = draw(random);
                const Mesh b = draw(random);
                countOperations(counter, "two", a, b, std::max(sizeOf(a), sizeOf(b)));
            }));
        }
    }
    return tally;
}

} // namespace

void Tally::add(const Tally& other) {
    results += other.results;
    closed += other.closed;
    misreported += other.misreported;
    inTolerances = std::max(inTolerances, other.inTolerances);
    open.insert(open.end(), other.open.begin(), other.open.end());
}

std::vector<Closing> allClosings(const std::string& meshes) {
    return {{"real meshes", [meshes] { return ofRealMeshes(meshes); }},
            {"spheres and tori", [meshes] { return ofRoundSolids(meshes); }},
            {"walls and windows", [meshes] { return ofWalls(meshes); }},
            {"random solids", ofRandomSolids}};
}

Tally closedInAllUnits(const std::string& meshes) {
    Tally tally;
    for (const char* name : {"anchor", "elephant", "fandisk", "joint", "rotor", "spool"}) {
        const Mesh mesh = readOff(meshes + "/" + name + ".off");
        const double size = sizeOf(mesh);
        // Powers of two are the same unit to the library; the others are not.
        for (const double across : {0.25, 1.0, 2.54, 10.0, 100.0, 300.0, 1000.0, 4096.0}) {
            char unit[64];
            std::snprintf(unit, sizeof unit, "%s, %g across", name, across);
            tally.add(counted(unit, 1, [&](Counter& counter) {
                const Mesh scaled = test::scaled(mesh, across / size);
                const Mesh other = test::moved(scaled, {0.2 * across, 0.2 * across, 0.2 * across});
                tidy::Solid solid;
                counter.count("union", solid, tidy::unionSolid(solid, std::vector<Mesh>{scaled, other}), across);
            }));
        }
    }
    return tally;
}

} // namespace orva::bench

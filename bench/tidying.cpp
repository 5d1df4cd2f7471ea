// Each step is a process of its own. The soup goes from one to the next through a file: in a process that had made it,
// the memory of the operation would hide that of tidying.
#include "tidying.hpp"

#include "library.hpp"
#include "measure.hpp"
#include "process.hpp"
#include "table.hpp"

#include <tbb/global_control.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

namespace orva::bench {

namespace {

using types::Vec3;
using types::Vertex;

// The most seconds for one step.
constexpr double LIMIT = 120;

// Steps are repeated for about so many seconds, and for their median at least so many times and at most.
constexpr double BUDGET = 1.5;
constexpr int FEWEST = 3;
constexpr int MOST = 7;

// Shorter ones are repeated for so many seconds in one process.
constexpr double AT_LEAST = 0.05;
// Longer ones are not called once more with warm memory.
constexpr double LONG = 0.5;

// What the library takes for a tolerance where none is given.
double toleranceFor(double size) {
    return std::max(8e-6, 1e-9 * size);
}

struct Box {
    Vec3 low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
             std::numeric_limits<double>::infinity()};
    Vec3 high{-low.x, -low.y, -low.z};

    void add(const Mesh& mesh) {
        for (const Vertex& vertex : mesh.vertices) {
            low = {std::min(low.x, vertex.pos.x), std::min(low.y, vertex.pos.y), std::min(low.z, vertex.pos.z)};
            high = {std::max(high.x, vertex.pos.x), std::max(high.y, vertex.pos.y), std::max(high.z, vertex.pos.z)};
        }
    }
    double size() const { return std::max({high.x - low.x, high.y - low.y, high.z - low.z, 0.0}); }
};

// With the number of its mesh and of its face in each corner, which comes through every cut as it is.
Mesh marked(const Mesh& mesh, std::size_t place, double scale) {
    Mesh result;
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const Vec3& p = mesh.vertices[i].pos;
        result.vertices.push_back(
            {{scale * p.x, scale * p.y, scale * p.z}, {}, {static_cast<double>(place), static_cast<double>(i / 3)}});
    }
    return result;
}

// What `call` takes: its processor time, short ones called again and again for their mean, with warm memory.
template <typename Call> double processorTime(const Call& call) {
    const auto mean = [&call](int calls) {
        const Clocks start;
        for (int i = 0; i < calls; ++i) call();
        return (Clocks().processor - start.processor) / calls;
    };
    const double first = mean(1);
    return first < LONG ? mean(std::max(1, static_cast<int>(AT_LEAST / std::max(first, 1e-6)))) : first;
}

// A soup in a file without a name, readable by every process that is made of this one.
class StoredSoup {
public:
    StoredSoup() : file_(std::tmpfile()) {
        if (file_ == nullptr) throw std::runtime_error("no temporary file");
    }
    ~StoredSoup() { std::fclose(file_); }
    StoredSoup(const StoredSoup&) = delete;
    StoredSoup& operator=(const StoredSoup&) = delete;

    void write(const Mesh& soup) const {
        std::rewind(file_);
        if (std::fwrite(soup.vertices.data(), sizeof(Vertex), soup.vertices.size(), file_) != soup.vertices.size() ||
            std::fflush(file_) != 0) {
            throw std::runtime_error("the soup could not be written");
        }
    }

    // The marks, out of the corners; where they are not asked for they are gone.
    void read(std::size_t triangles, Mesh& soup, std::vector<tidy::Origin>* origins) const {
        soup.vertices.resize(3 * triangles);
        std::rewind(file_);
        if (std::fread(soup.vertices.data(), sizeof(Vertex), soup.vertices.size(), file_) != soup.vertices.size()) {
            throw std::runtime_error("the soup could not be read");
        }
        if (origins != nullptr) origins->reserve(triangles);
        for (std::size_t i = 0; i < soup.vertices.size(); ++i) {
            std::array<double, 2>& mark = soup.vertices[i].aux;
            if (origins != nullptr && i % 3 == 0) {
                origins->push_back({static_cast<std::uint32_t>(mark[0]), static_cast<std::uint32_t>(mark[1])});
            }
            mark = {};
        }
    }

private:
    std::FILE* file_;
};

struct Made {
    std::uint64_t triangles;
    double processor;
};

Made makeSoup(const StoredSoup& stored, const Job& job, const std::vector<Mesh>& inputs) {
    const double scale = scaleOf(inputs);
    const Mesh first = marked(inputs[0], 0, scale);
    std::vector<Mesh> others;
    for (std::size_t i = 1; i < inputs.size(); ++i) others.push_back(marked(inputs[i], i, scale));
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
    Mesh soup;
    const double processor = processorTime([&] { soup = byLibrary(job.operation, first, others); });
    stored.write(soup);
    return {soup.vertices.size() / 3, processor};
}

struct Tidied {
    std::uint64_t triangles;
    double processor;
    double memory;
    double moved;
    bool closed;
};

Tidied tidySoup(const StoredSoup& stored, std::size_t triangles, bool withMarks, tidy::Merge merge) {
    Mesh soup;
    std::vector<tidy::Origin> origins;
    stored.read(triangles, soup, withMarks ? &origins : nullptr);
    tidy::Options options;
    options.merge = merge;
    tidy::Solid solid;
    tidy::Report report;
    Tidied result{};
    const double before = residentBytes();
    report = tidy::tidySoup(solid, soup, origins, options);
    result.memory = mostResidentBytes() - before;
    result.processor = processorTime([&] { report = tidy::tidySoup(solid, soup, origins, options); });
    result.triangles = solid.faces.size();
    result.moved = movedAtMost(report);
    result.closed = report.closed && isClosedByIndex(solid);
    if (report.closed != isClosedByIndex(solid)) throw std::runtime_error("a wrong report");
    return result;
}

// The same several times, its times in order.
template <typename Result> std::vector<Result> repeated(const std::function<Result()>& step) {
    std::vector<Result> results;
    double spent = 0.0;
    do {
        const Clocks start;
        results.push_back(apart<Result>(LIMIT, step));
        spent += Clocks().seconds - start.seconds;
    } while (results.size() < FEWEST || (spent < BUDGET && results.size() < MOST));
    return results;
}

template <typename Result> double medianOfAll(const std::vector<Result>& results, double Result::*what) {
    std::vector<double> values;
    for (const Result& result : results) values.push_back(result.*what);
    return medianOf(values);
}

} // namespace

double scaleOf(const std::vector<Mesh>& meshes) {
    Box box;
    for (const Mesh& mesh : meshes) box.add(mesh);
    int exponent = 0;
    std::frexp(box.size(), &exponent);
    return std::ldexp(1.0, 10 - exponent);
}

double sizeOf(const Mesh& mesh) {
    Box box;
    box.add(mesh);
    return box.size();
}

bool isClosedByIndex(const tidy::Solid& solid) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> edges;
    edges.reserve(3 * solid.faces.size());
    for (const auto& face : solid.faces) {
        for (std::size_t k = 0; k < 3; ++k) {
            if (face[k] >= solid.vertices.size() || face[k] == face[(k + 1) % 3]) return false;
            edges.emplace_back(face[k], face[(k + 1) % 3]);
        }
    }
    std::sort(edges.begin(), edges.end());
    if (std::adjacent_find(edges.begin(), edges.end()) != edges.end()) return false;
    return std::all_of(edges.begin(), edges.end(), [&](const auto& edge) {
        return std::binary_search(edges.begin(), edges.end(), std::pair(edge.second, edge.first));
    });
}

double movedAtMost(const tidy::Report& report) {
    return report.movedByWeld + report.movedByZip + report.movedByDrop;
}

Tidying measureTidying(const Job& job) {
    const std::vector<Mesh> inputs = job.inputs();
    const StoredSoup stored;
    const std::vector<Made> made = repeated<Made>([&] { return makeSoup(stored, job, inputs); });
    const std::uint64_t soup = made.front().triangles;
    const auto tidied = [&](bool withMarks, tidy::Merge merge) {
        return [&stored, soup, withMarks, merge] { return tidySoup(stored, soup, withMarks, merge); };
    };
    const std::vector<Tidied> withMarks = repeated<Tidied>(tidied(true, tidy::Merge::Cut));
    const std::vector<Tidied> withoutMarks = repeated<Tidied>(tidied(false, tidy::Merge::Cut));
    const Tidied merged = apart<Tidied>(LIMIT, tidied(true, tidy::Merge::All));

    Tidying result;
    result.job = job.name();
    result.series = job.series;
    result.trianglesIn = trianglesIn(inputs);
    result.soup = soup;
    result.tidied = withMarks.front().triangles;
    result.merged = merged.triangles;
    try {
        result.cgal = solve(Solver::Cgal, job.operation, inputs, LIMIT).triangles;
    } catch (const std::runtime_error&) {
        result.cgal = std::nullopt;
    }
    result.closed = withMarks.front().closed && withoutMarks.front().closed && merged.closed;
    result.operation = medianOfAll(made, &Made::processor);
    result.withMarks = medianOfAll(withMarks, &Tidied::processor);
    result.withoutMarks = medianOfAll(withoutMarks, &Tidied::processor);
    const double bytes = static_cast<double>(soup) * (3 * sizeof(Vertex) + sizeof(tidy::Origin));
    result.memory = medianOfAll(withMarks, &Tidied::memory) / bytes;
    double size = 0.0;
    for (const Mesh& mesh : inputs) size = std::max(size, scaleOf(inputs) * sizeOf(mesh));
    result.movedOfSize = withMarks.front().moved / size;
    result.inTolerances = withMarks.front().moved / toleranceFor(size);
    return result;
}

std::vector<Job> tidyingJobs(const std::string& meshes) {
    std::vector<Job> jobs;
    for (const Job& job : allJobs(meshes)) {
        const bool ofTwo = job.operation == Operation::Union || job.operation == Operation::Difference ||
                           job.operation == Operation::Intersection;
        const bool isLarge =
            job.size == "level 6" || job.size == "level 7" || job.size == "128 x 128" || job.size == "256 x 256";
        if (ofTwo && !isLarge && job.series != "boxes") jobs.push_back(job);
    }
    return jobs;
}

void writeTidyingTable(std::ostream& out, const std::string& meshes) {
    const auto line = [&out](const std::string& text) {
        out << text << "\n";
        std::cout << text << std::endl;
    };
    line("| | triangles in | soup | tidied | coplanar faces merged | CGAL | operation, ms | tidied in, ms | of that | "
         "ns per triangle of the soup | without marks | memory | moved, of the size | closed |");
    line("|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|:--|");
    for (const Job& job : tidyingJobs(meshes)) {
        const Tidying row = measureTidying(job);
        const auto triangles = static_cast<double>(row.soup);
        char moved[32];
        std::snprintf(moved, sizeof moved, "%.0e", row.movedOfSize);
        line("| " + job.series + ", " + job.size + ", " + nameOf(job.operation) + " | " +
             std::to_string(row.trianglesIn) + " | " + std::to_string(row.soup) + " | " + std::to_string(row.tidied) +
             " | " + std::to_string(row.merged) + " | " + (row.cgal ? std::to_string(*row.cgal) : "") + " | " +
             rounded(1e3 * row.operation) + " | " + rounded(1e3 * row.withMarks) + " | " +
             rounded(100 * row.withMarks / row.operation) + " % | " + rounded(1e9 * row.withMarks / triangles) + " | " +
             rounded(1e9 * row.withoutMarks / triangles) + " | " + rounded(row.memory) + " | " + moved + " | " +
             (row.closed ? "yes" : "no") + " |");
    }
}

} // namespace orva::bench

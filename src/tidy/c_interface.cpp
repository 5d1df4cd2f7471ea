// The C face of this library: a host's records become the types of orva/tidy.hpp, results become records again, and
// exceptions statuses.
//
// note: everything is read, into memory of this library, before anything is written, so that `output` may be one of the
// inputs; and all that a result needs is allocated before the record changes, so that there is never half a result.
#include "orva/tidy.h"
#include "orva/tidy.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <type_traits>

namespace orva::tidy {

namespace {

static_assert(sizeof(VertexD) == sizeof(types::Vertex) && sizeof(OrvaCorner) == sizeof(Corner) &&
                  sizeof(OrvaOrigin) == sizeof(Origin) && sizeof(types::Vec3) == 3 * sizeof(double),
              "records are copied as they lie in memory");
static_assert(sizeof(OrvaTidyReport) == 104, "no hidden padding: hosts in other languages declare it once more");

// ---- what a host may hand in ----

bool isLength(double value) {
    return std::isfinite(value) && value >= 0.0;
}

bool valid(const OrvaTidyOptions* options) {
    return options == nullptr ||
           (isLength(options->tolerance) && isLength(options->gap_width) && options->merge >= ORVA_TIDY_MERGE_NONE &&
            options->merge <= ORVA_TIDY_MERGE_ALL && (options->scale == 0 || options->scale == 1));
}

bool valid(const MeshD& mesh) {
    return mesh.count == 0 || (mesh.count > 0 && mesh.vertices != nullptr);
}

// Faces whose corners cannot be counted; nothing of them is read.
bool tooLarge(const OrvaSolid& solid) {
    return solid.face_count > std::numeric_limits<std::int32_t>::max() / 3;
}

bool valid(const OrvaSolid& solid) {
    if (solid.vertex_count < 0 || solid.face_count < 0) return false;
    if (solid.vertex_count > 0 && solid.vertices == nullptr) return false;
    if (solid.face_count == 0) return true;
    if (solid.faces == nullptr) return false;
    if (tooLarge(solid)) return true;
    const auto count = static_cast<std::uint32_t>(solid.vertex_count);
    const std::span<const std::uint32_t> indices(solid.faces, 3 * static_cast<std::size_t>(solid.face_count));
    return std::all_of(indices.begin(), indices.end(), [count](std::uint32_t index) { return index < count; });
}

template <typename Record> bool valid(const Record* records, std::int32_t count) {
    if (count == 0) return true;
    return count > 0 && records != nullptr &&
           std::all_of(records, records + count, [](const Record& record) { return valid(record); });
}

// ---- records to meshes ----

// `count` values of type To, which lie at `from` in smaller parts.
template <typename To, typename From> std::vector<To> copied(const From* from, std::size_t count) {
    static_assert(std::is_trivially_copyable_v<To> && sizeof(To) % sizeof(From) == 0);
    std::vector<To> to;
    if (from == nullptr || count == 0) return to;
    to.resize(count);
    std::memcpy(static_cast<void*>(to.data()), from, count * sizeof(To));
    return to;
}

Options read(const OrvaTidyOptions* options) {
    Options result;
    if (options == nullptr) return result;
    result.tolerance = options->tolerance;
    result.gapWidth = options->gap_width;
    result.merge = static_cast<Merge>(options->merge);
    result.scale = options->scale != 0;
    return result;
}

types::Mesh<double> read(const MeshD& mesh) {
    return {copied<types::Vertex>(mesh.vertices, static_cast<std::size_t>(mesh.count))};
}

Solid read(const OrvaSolid& solid) {
    if (tooLarge(solid)) throw std::length_error("vector too long");
    const auto vertexCount = static_cast<std::size_t>(solid.vertex_count);
    const auto faceCount = static_cast<std::size_t>(solid.face_count);
    Solid result;
    result.vertices = copied<types::Vec3>(solid.vertices, vertexCount);
    result.faces = copied<std::array<std::uint32_t, 3>>(solid.faces, faceCount);
    result.corners = copied<std::array<Corner, 3>>(solid.corners, faceCount);
    result.origins = copied<Origin>(solid.origins, faceCount);
    return result;
}

template <typename Record> auto read(const Record* records, std::int32_t count) {
    std::vector<decltype(read(*records))> result;
    result.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) result.push_back(read(records[i]));
    return result;
}

// ---- solids to records ----

struct Free {
    void operator()(void* memory) const noexcept { std::free(memory); }
};
template <typename T> using Array = std::unique_ptr<T[], Free>;

// A copy for the host to keep, in parts of type To; null where there is nothing to copy.
template <typename To, typename From> Array<To> handedOut(const std::vector<From>& from) {
    static_assert(std::is_trivially_copyable_v<From> && sizeof(From) % sizeof(To) == 0);
    if (from.empty()) return nullptr;
    const std::size_t bytes = from.size() * sizeof(From); // a vector's size in bytes always fits
    Array<To> to(static_cast<To*>(std::malloc(bytes)));
    if (to == nullptr) throw std::bad_alloc();
    std::memcpy(static_cast<void*>(to.get()), from.data(), bytes);
    return to;
}

std::int32_t counted(std::size_t count) {
    if (count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw std::length_error("vector too long");
    }
    return static_cast<std::int32_t>(count);
}

OrvaSolid write(const Solid& solid) {
    OrvaSolid result{};
    result.vertex_count = counted(solid.vertices.size());
    result.face_count = counted(solid.faces.size());
    Array<double> vertices = handedOut<double>(solid.vertices);
    Array<std::uint32_t> faces = handedOut<std::uint32_t>(solid.faces);
    Array<OrvaCorner> corners = handedOut<OrvaCorner>(solid.corners);
    Array<OrvaOrigin> origins = handedOut<OrvaOrigin>(solid.origins);
    result.vertices = vertices.release();
    result.faces = faces.release();
    result.corners = corners.release();
    result.origins = origins.release();
    return result;
}

OrvaTidyReport write(const Report& report) {
    OrvaTidyReport result{};
    result.closed = report.closed ? 1 : 0;
    result.open_edges = report.openEdges;
    result.largest_gap = report.largestGap;
    result.loops_removed = report.loopsRemoved;
    result.loop_area = report.loopArea;
    result.moved_by_weld = report.movedByWeld;
    result.moved_by_zip = report.movedByZip;
    result.moved_by_drop = report.movedByDrop;
    result.forced_ears = report.forcedEars;
    result.faces_left = report.facesLeft;
    result.soup_triangles = report.soupTriangles;
    result.pieces = report.pieces;
    result.scale = report.scale;
    return result;
}

// ---- a call ----

// What became of compute(Solid&), which gives a report. Its result is in `output` and `figures` where there is one.
template <typename Compute> OrvaTidyStatus attempt(OrvaSolid& output, OrvaTidyReport& figures, const Compute& compute) {
    try {
        Solid solid;
        const Report report = compute(solid);
        output = write(solid);
        figures = write(report);
        return report.closed ? ORVA_TIDY_DONE : ORVA_TIDY_NOT_CLOSED;
    } catch (const std::bad_alloc&) {
        return ORVA_TIDY_OUT_OF_MEMORY;
    } catch (const std::length_error&) {
        return ORVA_TIDY_TOO_LARGE;
    } catch (...) {
        return ORVA_TIDY_FAILED;
    }
}

// note: `output` and `report` are written at the very end: what `compute` reads may lie in them.
template <typename Compute>
OrvaTidyStatus answer(OrvaSolid* output, OrvaTidyReport* report, bool argumentsAreValid, const Compute& compute) {
    OrvaSolid solid{};
    OrvaTidyReport figures{};
    const OrvaTidyStatus status =
        output != nullptr && argumentsAreValid ? attempt(solid, figures, compute) : ORVA_TIDY_BAD_ARGUMENT;
    if (output != nullptr) *output = solid;
    if (report != nullptr) *report = figures;
    return status;
}

template <typename Record>
OrvaTidyStatus unite(OrvaSolid* output, OrvaTidyReport* report, const Record* meshes, std::int32_t count,
                     const OrvaTidyOptions* options) {
    return answer(output, report, valid(meshes, count) && valid(options),
                  [=](Solid& solid) { return unionSolid(solid, read(meshes, count), read(options)); });
}

template <typename Record>
OrvaTidyStatus intersect(OrvaSolid* output, OrvaTidyReport* report, const Record* meshes, std::int32_t count,
                         const OrvaTidyOptions* options) {
    return answer(output, report, valid(meshes, count) && valid(options),
                  [=](Solid& solid) { return intersectSolid(solid, read(meshes, count), read(options)); });
}

template <typename Record>
OrvaTidyStatus subtract(OrvaSolid* output, OrvaTidyReport* report, const Record* base, const Record* cutters,
                        std::int32_t count, std::int32_t cutting, const OrvaTidyOptions* options) {
    const bool isCutting = cutting >= ORVA_TIDY_IN_TURN && cutting <= ORVA_TIDY_AS_ONE_UNION_PARALLEL;
    return answer(output, report, isCutting && valid(base, 1) && valid(cutters, count) && valid(options),
                  [=](Solid& solid) {
                      return subtractSolid(solid, read(*base), read(cutters, count), static_cast<Cutting>(cutting),
                                           read(options));
                  });
}

} // namespace

} // namespace orva::tidy

using namespace orva::tidy;

void orva_tidy_default_options(OrvaTidyOptions* options) {
    if (options == nullptr) return;
    const Options defaults;
    *options = {defaults.tolerance, defaults.gapWidth, static_cast<std::int32_t>(defaults.merge),
                defaults.scale ? 1 : 0};
}

void orva_tidy_free(OrvaSolid* solid) {
    if (solid == nullptr) return;
    std::free(solid->vertices);
    std::free(solid->faces);
    std::free(solid->corners);
    std::free(solid->origins);
    *solid = {};
}

OrvaTidyStatus orva_tidy_soup(OrvaSolid* output, OrvaTidyReport* report, const MeshD* soup, const OrvaOrigin* origins,
                              const OrvaTidyOptions* options) {
    return answer(output, report, valid(soup, 1) && valid(options), [=](Solid& solid) {
        return tidySoup(solid, read(*soup), copied<Origin>(origins, static_cast<std::size_t>(soup->count / 3)),
                        read(options));
    });
}

OrvaTidyStatus orva_tidy_union(OrvaSolid* output, OrvaTidyReport* report, const MeshD* meshes, int32_t count,
                               const OrvaTidyOptions* options) {
    return unite(output, report, meshes, count, options);
}

OrvaTidyStatus orva_tidy_intersect(OrvaSolid* output, OrvaTidyReport* report, const MeshD* meshes, int32_t count,
                                   const OrvaTidyOptions* options) {
    return intersect(output, report, meshes, count, options);
}

OrvaTidyStatus orva_tidy_subtract(OrvaSolid* output, OrvaTidyReport* report, const MeshD* base, const MeshD* cutters,
                                  int32_t count, int32_t cutting, const OrvaTidyOptions* options) {
    return subtract(output, report, base, cutters, count, cutting, options);
}

OrvaTidyStatus orva_tidy_union_solids(OrvaSolid* output, OrvaTidyReport* report, const OrvaSolid* meshes, int32_t count,
                                      const OrvaTidyOptions* options) {
    return unite(output, report, meshes, count, options);
}

OrvaTidyStatus orva_tidy_intersect_solids(OrvaSolid* output, OrvaTidyReport* report, const OrvaSolid* meshes,
                                          int32_t count, const OrvaTidyOptions* options) {
    return intersect(output, report, meshes, count, options);
}

OrvaTidyStatus orva_tidy_subtract_solids(OrvaSolid* output, OrvaTidyReport* report, const OrvaSolid* base,
                                         const OrvaSolid* cutters, int32_t count, int32_t cutting,
                                         const OrvaTidyOptions* options) {
    return subtract(output, report, base, cutters, count, cutting, options);
}

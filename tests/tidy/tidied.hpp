// The fewest words to tidy something in a test.
#pragma once

#include "indexed.hpp"
#include "orva/tidy.hpp"
#include "shapes.hpp"

#include <vector>

namespace orva::test {

struct Tidied {
    tidy::Solid solid;
    tidy::Report report;
};

inline Tidied tidied(const Mesh& soup, const std::vector<tidy::Origin>& origins = {},
                     const tidy::Options& options = {}) {
    Tidied result;
    result.report = tidy::tidySoup(result.solid, soup, origins, options);
    return result;
}

inline Tidied united(const std::vector<Mesh>& meshes, const tidy::Options& options = {}) {
    Tidied result;
    result.report = tidy::unionSolid(result.solid, meshes, options);
    return result;
}

inline Tidied intersected(const std::vector<Mesh>& meshes, const tidy::Options& options = {}) {
    Tidied result;
    result.report = tidy::intersectSolid(result.solid, meshes, options);
    return result;
}

inline Tidied subtracted(const Mesh& base, const std::vector<Mesh>& cutters, const tidy::Options& options = {},
                         tidy::Cutting cutting = tidy::Cutting::InTurn) {
    Tidied result;
    result.report = tidy::subtractSolid(result.solid, base, cutters, cutting, options);
    return result;
}

/// {mesh, 0}, {mesh, 1}, ... for a soup whose triangles were not cut.
inline std::vector<tidy::Origin> numbered(const Mesh& soup, std::uint32_t mesh = 0) {
    std::vector<tidy::Origin> origins;
    for (std::uint32_t i = 0; i < soup.vertices.size() / 3; ++i) origins.push_back({mesh, i});
    return origins;
}

/// The soup of pieces that a face is given in by several triangles: corners and origins one behind the other.
struct Pieces {
    Mesh soup;
    std::vector<tidy::Origin> origins;

    void add(std::uint32_t face, const Vec3& a, const Vec3& b, const Vec3& c) {
        for (const Vec3& p : {a, b, c}) soup.vertices.push_back({p, {}, {}});
        origins.push_back({0, face});
    }
    void add(std::uint32_t mesh, const Mesh& whole) {
        for (std::uint32_t i = 0; i < whole.vertices.size() / 3; ++i) origins.push_back({mesh, i});
        soup.vertices.insert(soup.vertices.end(), whole.vertices.begin(), whole.vertices.end());
    }
};

inline tidy::Options withMerge(tidy::Merge merge) {
    tidy::Options options;
    options.merge = merge;
    return options;
}

} // namespace orva::test

#include "mesh/shared_vertices.hpp"

#include <functional>
#include <unordered_map>

namespace orva::program {

namespace {

struct Hash {
    std::size_t operator()(const types::Vec3& v) const {
        const std::hash<double> hash;                      // 0 and -0 have the same
        constexpr std::size_t factor = 0x9e3779b97f4a7c15; // 2^64 over the golden ratio: spreads neighbours far apart
        return ((hash(v.x) * factor) ^ hash(v.y)) * factor ^ hash(v.z);
    }
};

struct Equal {
    bool operator()(const types::Vec3& a, const types::Vec3& b) const { return a.x == b.x && a.y == b.y && a.z == b.z; }
};

} // namespace

SharedVertices shareVertices(const types::Mesh<double>& mesh) {
    SharedVertices shared;
    std::unordered_map<types::Vec3, std::size_t, Hash, Equal> indices;
    const std::size_t count = mesh.vertices.size() / 3 * 3;
    shared.corners.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const types::Vec3& position = mesh.vertices[i].pos;
        const auto [entry, isNew] = indices.try_emplace(position, shared.positions.size());
        if (isNew) shared.positions.push_back(position);
        shared.corners.push_back(entry->second);
    }
    return shared;
}

} // namespace orva::program

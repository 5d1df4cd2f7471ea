/// @file
/// A model from the faces of a file.
#ifndef ORVA_PROGRAM_MESH_MODEL_BUILDER_HPP
#define ORVA_PROGRAM_MESH_MODEL_BUILDER_HPP

#include "mesh/model.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace orva::program {

struct Corner {
    types::Vec3 position;
    std::optional<types::Vec3> normal;            ///< without, that of its triangle
    std::optional<std::array<double, 2>> texture; ///< without, zero
    std::optional<std::size_t> vertex = {};       ///< its number in the file; without, the model has no indices
};

/// Takes faces corner by corner. A face of more than three corners becomes a fan around its first one; of one with
/// fewer than three nothing remains but its number.
class ModelBuilder {
public:
    /// The corners that come now belong to the next face. Throws MeshError if there were too many to number.
    void beginFace();

    void addCorner(const Corner& corner);

    /// A face of its own.
    void addTriangle(const Corner& a, const Corner& b, const Corner& c);

    std::size_t triangles() const { return countTriangles(model.mesh); }

    /// The model; the builder is then spent.
    Model take() { return std::move(model); }

private:
    void addTriangleOfFace();
    void addIndices();

    Model model;
    std::uint64_t faces = 0; ///< begun so far
    std::size_t corners = 0; ///< of this face so far
    bool indexed = true;     ///< whether every corner so far had a vertex
    std::array<Corner, 3> fan;
};

} // namespace orva::program

#endif

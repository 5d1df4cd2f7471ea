// Which pieces belong to one face.
#pragma once

#include "orva/tidy.hpp"
#include "tidy/surface.hpp"

namespace orva::tidy {

/// What of a soup can be computed with.
struct Usable {
    std::vector<std::uint32_t> left; ///< triangles that cannot: with a coordinate that is not finite, or enormous
    double size = 0.0;               ///< the longest side of the box around the others
};

Usable findUsable(const types::Mesh<double>& soup);

/// Fills `faces` and `order` of the surface: a face for each origin, in the order of first use; pieces of unknown
/// origin are faces of their own. Triangles that are left belong to none.
void gatherByOrigin(Surface& surface, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                    const std::vector<std::uint32_t>& left);

/// The same without origins: pieces that share edges and lie within `distance` of the plane of the largest among them,
/// which carry the same linear values.
void gatherByPlane(Surface& surface, const types::Mesh<double>& soup, double distance,
                   const std::vector<std::uint32_t>& left);

} // namespace orva::tidy

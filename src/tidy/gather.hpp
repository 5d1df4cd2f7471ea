// Which pieces belong to one face.
#pragma once

#include "orva/tidy.hpp"
#include "tidy/surface.hpp"

namespace orva::tidy {

/// Fills `faces` and `order` of the surface: a face for each origin, in the order of first use; pieces of unknown
/// origin are faces of their own.
void gatherByOrigin(Surface& surface, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                    std::vector<std::uint32_t>& left);

/// The same without origins: pieces that share edges and lie within `distance` of the plane of the largest among them,
/// which carry the same linear values.
void gatherByPlane(Surface& surface, const types::Mesh<double>& soup, double distance,
                   std::vector<std::uint32_t>& left);

} // namespace orva::tidy

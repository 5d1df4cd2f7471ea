// Chains of edges between the same two regions, and regions without width.
#pragma once

#include "tidy/surface.hpp"

namespace orva::tidy {

/// Takes out of each chain the points that it does not need, once for both sides; then regions, or parts of them, that
/// are no wider than `radius`; and begins anew, since that makes longer chains. Faces that are not `cut` are neither
/// collapsed nor given points on their edges. Gives the most that a point that went was off the line.
double simplifyChains(Surface& surface, const std::vector<std::uint32_t>& region, const std::vector<bool>& cut,
                      double radius);

} // namespace orva::tidy

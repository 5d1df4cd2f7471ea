/// @file
/// Where a node puts its mesh.
#ifndef ORVA_PROGRAM_MESH_PLACEMENT_HPP
#define ORVA_PROGRAM_MESH_PLACEMENT_HPP

#include "mesh/vectors.hpp"

#include <array>

namespace orva::program {

/// An affine map: a point p goes to x * p.x + y * p.y + z * p.z + origin.
struct Placement {
    types::Vec3 x{1, 0, 0};
    types::Vec3 y{0, 1, 0};
    types::Vec3 z{0, 0, 1};
    types::Vec3 origin{};
    bool moves = false; ///< whether it may be another map than the identity
};

inline types::Vec3 turn(const Placement& placement, const types::Vec3& v) {
    return v.x * placement.x + v.y * placement.y + v.z * placement.z;
}

inline types::Vec3 place(const Placement& placement, const types::Vec3& p) {
    return turn(placement, p) + placement.origin;
}

/// `inner` first, then `outer`.
inline Placement operator*(const Placement& outer, const Placement& inner) {
    return {turn(outer, inner.x), turn(outer, inner.y), turn(outer, inner.z), place(outer, inner.origin),
            outer.moves || inner.moves};
}

/// Whether it turns left hands into right ones.
inline bool isMirrored(const Placement& placement) {
    return dot(cross(placement.x, placement.y), placement.z) < 0.0;
}

/// The direction of a normal behind the placement, of any length: by the cofactors, which are the inverse transpose but
/// for a factor, and are there for flat placements, too.
inline types::Vec3 placeNormal(const Placement& placement, const types::Vec3& normal) {
    const types::Vec3 placed = normal.x * cross(placement.y, placement.z) + normal.y * cross(placement.z, placement.x) +
                               normal.z * cross(placement.x, placement.y);
    return isMirrored(placement) ? -1.0 * placed : placed;
}

} // namespace orva::program

#endif

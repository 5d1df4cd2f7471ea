/// @file
/// On which side points lie, without rounding: two surfaces that only touch are told from two that cross.
///
/// Nearly always the sign of a sum in doubles is certain, because it is farther from zero than rounding can carry it.
/// Where it is not, the sum is done again as a list of doubles that together are the exact value (J. R. Shewchuk,
/// "Adaptive Precision Floating-Point Arithmetic and Fast Robust Geometric Predicates", 1997).
///
/// Exact while no product overflows or underflows: coordinates between 1e-92 and 1e+92, or zero.
#ifndef ORVA_PROGRAM_MEASURES_ORIENTATION_HPP
#define ORVA_PROGRAM_MEASURES_ORIENTATION_HPP

#include "orva/types.hpp"

namespace orva::program {

/// 1 where d lies on the side of the plane through a, b and c from which these run counter-clockwise, -1 on the other
/// side, 0 in the plane.
int orientation(const types::Vec3& a, const types::Vec3& b, const types::Vec3& c, const types::Vec3& d);

/// Two of the three coordinates, as x and y.
struct Projection {
    double types::Vec3::*x = &types::Vec3::x;
    double types::Vec3::*y = &types::Vec3::y;
};

/// 1 where a, b and c, projected, run counter-clockwise, -1 where clockwise, 0 on a line.
int orientation(const types::Vec3& a, const types::Vec3& b, const types::Vec3& c, const Projection& projection);

} // namespace orva::program

#endif

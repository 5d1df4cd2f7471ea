// On which side of a line a point lies, decided exactly.
#pragma once

namespace orva::tidy {

struct Vec2 {
    double x = 0.0;
    double y = 0.0;
};

/// 1 where a, b, c run counter-clockwise, -1 where they run clockwise, 0 where they lie on a line. Exact for
/// coordinates whose products neither overflow nor vanish: a filter decides nearly always, sums without rounding the
/// rest. (J. R. Shewchuk: Adaptive Precision Floating-Point Arithmetic and Fast Robust Geometric Predicates, 1997.)
int orientation(const Vec2& a, const Vec2& b, const Vec2& c);

} // namespace orva::tidy

// The arithmetic of positions and directions.
//
// note: sums and products stand in the order in which they are evaluated, and that order is the contract: the same bits
// on every platform. What decides compares squares; the square root is for the report.
#pragma once

#include "orva/types.hpp"

#include <emmintrin.h>

namespace orva::tidy {

using types::Vec3;

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(double s, const Vec3& a) {
    return {s * a.x, s * a.y, s * a.z};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double squaredLength(const Vec3& a) {
    return dot(a, a);
}

/// The instruction itself, rounded once: std::sqrt is the C library's in unoptimised builds, and MinGW's rounds twice.
inline double squareRoot(double value) {
    const __m128d squared = _mm_set_sd(value);
    return _mm_cvtsd_f64(_mm_sqrt_sd(squared, squared));
}

/// Squared, of a point from the segment between two others.
inline double squaredDistance(const Vec3& p, const Vec3& a, const Vec3& b) {
    const Vec3 along = b - a;
    const Vec3 from = p - a;
    const double t = dot(from, along);
    const double length = squaredLength(along);
    if (!(t > 0.0)) return squaredLength(from);
    if (t >= length) return squaredLength(p - b);
    return squaredLength(cross(from, along)) / length;
}

/// Asks for a triangle of a soup before it is needed: neighbours lie anywhere in it, and waiting takes longer than the
/// work.
inline void prefetch(const types::Vertex* triangle) {
    for (int k = 0; k < 3; ++k) _mm_prefetch(reinterpret_cast<const char*>(triangle + k), _MM_HINT_T0);
}

} // namespace orva::tidy

/// @file
/// The arithmetic of positions and directions.
#ifndef ORVA_PROGRAM_MESH_VECTORS_HPP
#define ORVA_PROGRAM_MESH_VECTORS_HPP

#include "orva/types.hpp"

namespace orva::program {

constexpr types::Vec3 operator+(const types::Vec3& a, const types::Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr types::Vec3 operator-(const types::Vec3& a, const types::Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr types::Vec3 operator*(double s, const types::Vec3& v) {
    return {s * v.x, s * v.y, s * v.z};
}

constexpr double dot(const types::Vec3& a, const types::Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr types::Vec3 cross(const types::Vec3& a, const types::Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

} // namespace orva::program

#endif

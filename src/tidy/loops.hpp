// Open loops that are left when all seams are closed.
#pragma once

#include "tidy/surface.hpp"

#include <cstdint>
#include <functional>

namespace orva::tidy {

struct Loops {
    std::uint64_t count = 0;
    double area = 0.0;
};

/// Loops of open edges in the plane of one face beside them: the cuts lost a piece of that face there, or gave one
/// twice. Puts the loop into the face, or takes it out, which is the same: each edge of it gets a match that belongs to
/// the face. Only where `mayBePiece(face, points, width)` says that what these points surround, so wide on average, can
/// be a piece of that face: a hole that is meant to be one stays.
///
/// `distance` is how far from the plane a point of the loop may be.
using MayBePiece = std::function<bool(std::uint32_t face, const std::vector<Vec3>& points, double width)>;
Loops closeLoopsOfFaces(Surface& surface, double distance, const MayBePiece& mayBePiece);

} // namespace orva::tidy

#include "formats/rounding.hpp"

#include "failure.hpp"
#include "mesh/facet_normal.hpp"

#include <cmath>
#include <limits>

namespace orva::program {

namespace {

// note: a triangle too large or too small for its normal to be computed counts as one without, before and behind.
bool hasArea(const Corners& corners) {
    const types::Vec3 normal = facetNormal(corners[0], corners[1], corners[2]);
    return normal.x != 0.0 || normal.y != 0.0 || normal.z != 0.0;
}

} // namespace

double inSinglePrecision(double value) {
    if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        throw MeshError("a coordinate of the result is too large for single precision; write .off");
    }
    return static_cast<double>(static_cast<float>(value));
}

void Rounding::compare(const Corners& before, const Corners& after) {
    ++triangles;
    collapsed += hasArea(before) && !hasArea(after);
}

void Rounding::note(Notes& notes, const std::string& precision) const {
    if (collapsed == 0) return;
    notes.push_back(std::to_string(collapsed) + " of " + std::to_string(triangles) + " triangles collapse in " +
                    precision + ": nothing is left of their area; .ply, .obj and .off keep them");
}

} // namespace orva::program

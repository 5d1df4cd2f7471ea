/// @file
/// What formats that round do to triangles, and the note that says so.
#ifndef ORVA_PROGRAM_FORMATS_ROUNDING_HPP
#define ORVA_PROGRAM_FORMATS_ROUNDING_HPP

#include "formats/format.hpp"

#include <array>
#include <cstddef>
#include <string>

namespace orva::program {

using Corners = std::array<types::Vec3, 3>;

/// `value` in single precision; throws MeshError if it is too large for that.
double inSinglePrecision(double value);

/// Rounds triangles, and counts those that had area before and have none behind.
class Rounding {
public:
    /// The corners of a triangle of the mesh, each coordinate by `round`.
    template <typename Round> Corners operator()(const types::Mesh<double>& mesh, std::size_t triangle, Round round) {
        Corners before;
        Corners after;
        for (std::size_t k = 0; k < 3; ++k) {
            before[k] = mesh.vertices[3 * triangle + k].pos;
            after[k] = {round(before[k].x), round(before[k].y), round(before[k].z)};
        }
        compare(before, after);
        return after;
    }

    /// Adds a note if there is something to say: "3 of 12 triangles collapse in PRECISION ...".
    void note(Notes& notes, const std::string& precision) const;

private:
    void compare(const Corners& before, const Corners& after);

    std::size_t triangles = 0;
    std::size_t collapsed = 0;
};

} // namespace orva::program

#endif

/// @file
/// From space to the picture.
#ifndef ORVA_PROGRAM_PICTURE_PROJECTION_HPP
#define ORVA_PROGRAM_PICTURE_PROJECTION_HPP

#include "orva/types.hpp"
#include "picture/raster.hpp"
#include "picture/view.hpp"

#include <cstddef>
#include <vector>

namespace orva::program {

/// Parallel, so that equal lengths stay equal; as large as the picture allows with a margin.
class Projection {
public:
    /// For all of these meshes. Coordinates are finite.
    Projection(const std::vector<types::Mesh<double>>& meshes, const View& view, std::size_t width, std::size_t height);

    ScreenVector operator()(const types::Vec3& position) const;

    /// All triangles that are wide enough to be seen.
    std::vector<ScreenTriangle> project(const std::vector<types::Mesh<double>>& meshes) const;

private:
    types::Vec3 turned(const types::Vec3& position) const;
    ScreenVector normalOf(const types::Vec3& a, const types::Vec3& b, const types::Vec3& c) const;

    Axes axes;
    double unit = 0.0; ///< the largest coordinate: divided by it, squares neither overflow nor vanish
    double scale = 1.0;
    types::Vec3 middle;
    double middleX;
    double middleY;
};

} // namespace orva::program

#endif

/// @file
/// A picture of meshes: shaded, with the lines that a draughtsman would draw.
///
/// Booleans divide flat faces into many slivers, whose corners lie in the middle of other slivers' edges. Which edges
/// of triangles are edges of the shape cannot be told from the triangles. So lines are found in the picture: where what
/// is seen at neighbouring samples faces different ways, lies at different depths, or belongs to different meshes.
#ifndef ORVA_PROGRAM_PICTURE_RENDER_HPP
#define ORVA_PROGRAM_PICTURE_RENDER_HPP

#include "orva/types.hpp"
#include "picture/color.hpp"
#include "picture/lines.hpp"
#include "picture/png.hpp"
#include "picture/view.hpp"

#include <cstddef>
#include <optional>
#include <vector>

namespace orva::program {

struct Background {
    bool transparent = false;
    std::optional<Color> color; ///< without, a light grey that fades upward
};

struct RenderOptions {
    View view;
    std::size_t width = 1200;
    std::size_t height = 900;
    Lines lines = Lines::Feature;
    std::vector<Color> colors; ///< for the meshes in turn; those beyond take the palette's
    Background background;
};

/// A solid: one mesh, or several that close together.
using Solid = std::vector<types::Mesh<double>>;

/// The solids, which fill the picture but for a margin. Every mesh has a colour, in turn; one sees it in that from
/// outside, from inside in that of a warning. Rims of solids that are open are marked in another one. Coordinates are
/// finite.
Image render(const std::vector<Solid>& solids, const RenderOptions& options);

} // namespace orva::program

#endif

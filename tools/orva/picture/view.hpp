/// @file
/// From where a picture is taken.
#ifndef ORVA_PROGRAM_PICTURE_VIEW_HPP
#define ORVA_PROGRAM_PICTURE_VIEW_HPP

#include "orva/types.hpp"

#include <optional>
#include <string>

namespace orva::program {

/// Which axis points up. In front is what lies towards -y or, with y up, towards z.
enum class Up { Y, Z };

/// In degrees. From azimuth 0 one sees the front, with x to the right; the azimuth grows to the right,
/// counter-clockwise seen from above. Elevation 90 looks down from above, -90 up from below.
struct View {
    double azimuth = 45.0;
    double elevation = 35.26438968; // isometric: all three axes equally short
    Up up = Up::Z;
};

/// "iso", "front", "back", "left", "right", "top", "bottom", or "AZIMUTH,ELEVATION".
std::optional<View> parseView(const std::string& text);

/// The directions of a picture in space, of unit length.
struct Axes {
    types::Vec3 right;
    types::Vec3 up;
    types::Vec3 near; ///< towards the viewer
};

/// The same bits on every platform.
Axes axesOf(const View& view);

} // namespace orva::program

#endif

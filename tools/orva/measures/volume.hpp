/// @file
/// The volume that a mesh encloses.
#ifndef ORVA_PROGRAM_MEASURES_VOLUME_HPP
#define ORVA_PROGRAM_MEASURES_VOLUME_HPP

#include "orva/types.hpp"

namespace orva::program {

/// In cubic units of the coordinates; negative for a mesh that is inside out. Small gaps change it little, wherever the
/// mesh lies: only where they are wide does it depend on the middle of the mesh.
double signedVolume(const types::Mesh<double>& mesh);

} // namespace orva::program

#endif

// Faces that need no change after all.
#pragma once

#include "orva/types.hpp"
#include "tidy/surface.hpp"

namespace orva::tidy {

/// Makes faces whole again whose edges have become what they were in the pieces: points that the outline could do
/// without, but that neighbours need. A surface that was tidied once is kept so as it is.
void restoreWholeFaces(Surface& surface, const types::Mesh<double>& soup);

} // namespace orva::tidy

// The road from a soup to a solid.
#pragma once

#include "orva/tidy.hpp"

#include <cstddef>

namespace orva::tidy {

/// The meshes that went into an operation, for what their faces carry.
struct Inputs {
    std::vector<const types::Mesh<double>*> meshes;
    std::size_t firstFlipped; ///< of the meshes from this one on, faces appear inside out
    double scale;             ///< what coordinates were multiplied by to make the soup: a power of two
};

/// tidySoup with or without knowledge of the inputs. With it, faces that were not cut are told exactly, coordinates and
/// lengths come back in the inputs' unit, and what corners carry comes from the inputs.
Report tidyPieces(Solid& output, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                  const Inputs* inputs, const Options& options);

} // namespace orva::tidy

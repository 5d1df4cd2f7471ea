/// @file
/// Which triangle of a result came from which face. Booleans carry equal `aux` values at a triangle's corners through
/// every cut unchanged, so the values can be a mark; tidied results say it themselves.
#ifndef ORVA_PROGRAM_MESH_ORIGINS_HPP
#define ORVA_PROGRAM_MESH_ORIGINS_HPP

#include "mesh/model.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orva::program {

/// How many faces the file had.
std::size_t countFaces(const Model& model);

/// Marks all triangles as those of the mesh in that place. Its texture coordinates are gone then.
void markFaces(Model& model, std::size_t place);

/// What of an input is in the result.
struct Share {
    std::size_t triangles = 0; ///< of the result
    std::size_t faces = 0;     ///< of the input, of which something is left
};

struct Shares {
    std::vector<Share> inputs;
    std::size_t unknown = 0; ///< triangles of UNKNOWN_ORIGIN
};

/// Of inputs that had so many faces.
Shares countShares(const std::vector<Origin>& origins, const std::vector<std::size_t>& faces);

/// Fills `result.origins` by the marks and takes the marks away. The inputs had so many faces; what names none of them
/// is UNKNOWN_ORIGIN.
void readOrigins(Model& result, const std::vector<std::size_t>& faces);

} // namespace orva::program

#endif

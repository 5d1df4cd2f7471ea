// Coplanar faces become one.
#pragma once

#include "orva/tidy.hpp"
#include "tidy/surface.hpp"

namespace orva::tidy {

/// What regions need to know of a face beyond its edges.
struct FaceFacts {
    std::uint32_t mesh;           ///< which mesh it comes from
    const types::Vertex* carrier; ///< a triangle that carries what it carries
    bool isCut;                   ///< whether it is less than a face of the input
};

/// For each face the face that stands for its region, itself where it stays alone. Regions grow from the largest face
/// over matched edges, to faces of the same mesh that carry the same and lie within `distance` of the plane of that
/// first face, so that nothing drifts. Only faces with `mayMerge` take part.
std::vector<std::uint32_t> mergeCoplanar(const Surface& surface, const std::vector<FaceFacts>& facts,
                                         const std::vector<bool>& mayMerge, double distance);

/// Takes regions apart again from which nothing is gained: all pieces of their faces could stay as they are, and no
/// point goes, neither from inside nor, `radius` from a straight line, from the border. So what is tidied once stays as
/// it is.
void keepFittingFaces(const Surface& surface, const types::Mesh<double>& soup, std::vector<std::uint32_t>& region,
                      double radius);

/// Edges belong to their regions from here on: those inside of one are gone.
void dissolve(Surface& surface, const std::vector<std::uint32_t>& region);

} // namespace orva::tidy

// The same operations by CGAL's corefinement, from triangle list to triangle list.
#pragma once

#include "orva/types.hpp"

#include <vector>

namespace orva::bench::cgal {

using Mesh = types::Mesh<double>;

// All throw std::runtime_error where CGAL cannot give a result.
Mesh unite(const Mesh& a, const Mesh& b);
Mesh subtract(const Mesh& a, const Mesh& b);
Mesh intersect(const Mesh& a, const Mesh& b);
Mesh subtractInTurn(const Mesh& base, const std::vector<Mesh>& cutters);
/// The union as a tournament, as in our own sequential one.
Mesh subtractUnion(const Mesh& base, const std::vector<Mesh>& cutters);

/// Whether some of its triangles meet in more than a common corner or edge.
bool crossesItself(const Mesh& mesh);

} // namespace orva::bench::cgal

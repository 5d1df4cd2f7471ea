// The driver of the two-mesh operations: meshes to trees, a recipe, the tree back to a mesh.
#pragma once

#include "boolean/recipes.hpp"
#include "orva/types.hpp"

namespace orva::bspcsg {

/// Replaces `out` by the polygons of fn(a, b); a and b are spent. An empty fn throws std::bad_function_call.
void combinePolygonLists(CombineFunction fn, PolygonList& out, PolygonList& a, PolygonList& b);

/// Appends to `output` the triangles of fn(a, b).
void combineMeshes(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b,
                   CombineFunction fn);

} // namespace orva::bspcsg

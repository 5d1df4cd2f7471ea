// One base minus many cutters: in turn, or as one union.
#pragma once

#include "boolean/union_reducers.hpp"
#include "orva/types.hpp"

#include <vector>

namespace orva::bspcsg {

/// A heap tree of the polygons; an empty node for an empty list.
NodePtr buildTree(PolygonList polygons);

/// ((base - c0) - c1) - ... as a new tree; base and cutters are copied, not changed. Every cutter goes through the
/// whole recipe in list order, empty and distant ones included.
NodePtr subtractTreeList(const Node& base, const TreeList& cutters);

/// base - cutters as a new tree; both are spent.
NodePtr subtractTree(Node&& base, Node&& cutters);

/// Appends to `output` the base minus the union of the cutters; without cutters it leaves the output alone.
void subtractUnionOfMeshes(types::Mesh<double>& output, const types::Mesh<double>& base,
                           const std::vector<types::Mesh<double>>& cutters, UnionStrategy strategy);

} // namespace orva::bspcsg

// The library's internals in the reference's types and back: the one place here that knows how the library keeps its
// polygons and nodes.
#pragma once

#include "bsp/node.hpp"
#include "reference.hpp"

namespace orva::equivalence {

bspcsg::PolygonList toLibrary(const reference::PolygonList& polygons);
/// A tree of the same nodes, whether or not build could have made it.
bspcsg::NodePtr toLibrary(const reference::Node& tree);

reference::PolygonList toReference(const bspcsg::PolygonList& polygons);
reference::Tree toReference(const bspcsg::Node& tree);

} // namespace orva::equivalence

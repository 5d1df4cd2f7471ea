// The three operations as fixed sequences of tree steps.
//
// After a.clipTree(b) the polygons of a lie outside b; turning a tree inside out (invert) before clipping keeps what
// lies inside instead. So each operation is an order of clippings and inversions that leaves in a and b just the two
// parts of the result's surface:
//
//     union          a outside b,  b outside a
//     difference     a outside b,  b inside a, turned around
//     intersection   a inside b,   b inside a
//
// Where the surfaces coincide exactly one of the two copies may stay: b is clipped by a a second time, turned inside
// out, which removes its faces that lie in faces of a. What is left of b then goes into a, and all of it into a fresh
// tree. The sequences are the definition of the operations: their asymmetries decide how a result is cut.
#pragma once

#include "bsp/node.hpp"

#include <functional>

namespace orva::bspcsg {

/// Fills the first, empty tree with the result of the other two, which are spent.
using CombineFunction = std::function<void(Node&, Node&&, Node&&)>;

void unionTrees(Node& result, Node&& a, Node&& b);
void subtractTrees(Node& result, Node&& a, Node&& b); ///< a minus b
void intersectTrees(Node& result, Node&& a, Node&& b);

} // namespace orva::bspcsg

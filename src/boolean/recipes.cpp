#include "boolean/recipes.hpp"

namespace orva::bspcsg {

void unionTrees(Node& result, Node&& a, Node&& b) {
    a.clipTree(b);
    b.clipTree(a);
    b.invert();
    b.clipTree(a);
    b.invert();
    a.build(b.takePolygons());
    result.build(a.takePolygons());
}

void subtractTrees(Node& result, Node&& a, Node&& b) {
    a.invert();
    a.clipTree(b);
    b.clipTree(a);
    b.invert();
    b.clipTree(a);
    b.invert();
    a.build(b.takePolygons());
    a.invert();
    result.build(a.takePolygons());
}

void intersectTrees(Node& result, Node&& a, Node&& b) {
    a.invert();
    b.clipTree(a);
    b.invert();
    a.clipTree(b);
    b.clipTree(a);
    a.build(b.takePolygons());
    a.invert();
    result.build(a.takePolygons());
}

} // namespace orva::bspcsg

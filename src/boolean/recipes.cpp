#include "boolean/recipes.hpp"

namespace orva::bspcsg {

void unionTrees(Node& result, Node&& a, Node&& b) {
    a.clipTree(b);
    b.clipTree(a);
    b.invert();
    b.clipTree(a);
    b.invert();
    a.build(b.collectPolygons(0));
    result.build(a.collectPolygons(0));
}

void subtractTrees(Node& result, Node&& a, Node&& b) {
    a.invert();
    a.clipTree(b);
    b.clipTree(a);
    b.invert();
    b.clipTree(a);
    b.invert();
    a.build(b.collectPolygons(0));
    a.invert();
    result.build(a.collectPolygons(0));
}

void intersectTrees(Node& result, Node&& a, Node&& b) {
    a.invert();
    b.clipTree(a);
    b.invert();
    a.clipTree(b);
    b.clipTree(a);
    a.build(b.collectPolygons(0));
    a.invert();
    result.build(a.collectPolygons(0));
}

} // namespace orva::bspcsg

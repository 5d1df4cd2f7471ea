// The recipes. After the trees have been clipped against each other, b is turned around, clipped once more and, but for
// the intersection, turned back: that takes away what the two have in common of their surfaces, so that it is in the
// result once. What is left of b goes into a.
#include "boolean/recipes.hpp"

namespace orva::bspcsg {

void unionTrees(Node& result, Node&& a, Node&& b) {
    a.clipTree(b);
    a.buildIn(takeClippedTwice(b, a, Turn::AndBack));
    result.build(a.takePolygons());
}

void subtractTrees(Node& result, Node&& a, Node&& b) {
    a.invert();
    a.clipTree(b);
    a.buildIn(takeClippedTwice(b, a, Turn::AndBack));
    a.invert();
    result.build(a.takePolygons());
}

void intersectTrees(Node& result, Node&& a, Node&& b) {
    a.invert();
    Newcomers<double> newcomers = takeClippedTwice(b, a, Turn::Around);
    b.invert(); // only its planes: the polygons have been taken
    a.clipTree(b);
    a.buildIn(std::move(newcomers));
    a.invert();
    result.build(a.takePolygons());
}

} // namespace orva::bspcsg

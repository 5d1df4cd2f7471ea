#include "boolean/combine.hpp"

#include "mesh/convert.hpp"

namespace orva::bspcsg {

void combinePolygonLists(CombineFunction fn, PolygonList& out, PolygonList& a, PolygonList& b) {
    Node treeA;
    treeA.build(std::move(a));
    Node treeB;
    treeB.build(std::move(b));
    Node result;
    fn(result, std::move(treeA), std::move(treeB));
    out = result.takePolygons();
}

void combineMeshes(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b,
                   CombineFunction fn) {
    PolygonList polygonsA;
    PolygonList polygonsB;
    PolygonList result;
    meshToPolygons(a, polygonsA);
    meshToPolygons(b, polygonsB);
    combinePolygonLists(std::move(fn), result, polygonsA, polygonsB);
    polygonsToMesh(result, output);
}

} // namespace orva::bspcsg

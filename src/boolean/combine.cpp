#include "boolean/combine.hpp"

#include "mesh/convert.hpp"
#include "orva/bspcsg.hpp"

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

// ---- what the library exports: each operation is its recipe and the driver ----

void unionMesh(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b) {
    combineMeshes(output, a, b, unionTrees);
}

void subtractMesh(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b) {
    combineMeshes(output, a, b, subtractTrees);
}

void intersectMesh(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b) {
    combineMeshes(output, a, b, intersectTrees);
}

} // namespace orva::bspcsg

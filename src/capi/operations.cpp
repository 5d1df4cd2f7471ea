#include "boolean/combine.hpp"
#include "capi/convert.hpp"
#include "orva/orva.h"

namespace orva::bspcsg {

namespace {

void combineRecords(MeshD* output, const MeshD* a, const MeshD* b, CombineFunction recipe) {
    if (output == nullptr || a == nullptr || b == nullptr) return;
    PolygonList polygonsA;
    PolygonList polygonsB;
    PolygonList result;
    meshDToPolygons(a, polygonsA);
    meshDToPolygons(b, polygonsB);
    combinePolygonLists(std::move(recipe), result, polygonsA, polygonsB);
    polygonsToMeshD(result, output);
}

} // namespace

} // namespace orva::bspcsg

using namespace orva::bspcsg;

void orva_bspcsg_union_mesh(MeshD* output, const MeshD* a, const MeshD* b) {
    combineRecords(output, a, b, unionTrees);
}

void orva_bspcsg_subtract_mesh(MeshD* output, const MeshD* a, const MeshD* b) {
    combineRecords(output, a, b, subtractTrees);
}

void orva_bspcsg_intersect_mesh(MeshD* output, const MeshD* a, const MeshD* b) {
    combineRecords(output, a, b, intersectTrees);
}

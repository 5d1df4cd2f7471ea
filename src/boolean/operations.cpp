#include "boolean/combine.hpp"
#include "orva/bspcsg.hpp"

namespace orva::bspcsg {

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

#include "library.hpp"

#include "orva/bspcsg.hpp"

namespace orva::bench {

Mesh byLibrary(Operation operation, const Mesh& first, const std::vector<Mesh>& others) {
    Mesh result;
    switch (operation) {
    case Operation::Union:
        bspcsg::unionMesh(result, first, others[0]);
        break;
    case Operation::Difference:
        bspcsg::subtractMesh(result, first, others[0]);
        break;
    case Operation::Intersection:
        bspcsg::intersectMesh(result, first, others[0]);
        break;
    case Operation::InTurn:
        bspcsg::subtractMultiMesh(result, first, others);
        break;
    case Operation::AsUnion:
        bspcsg::subtractMultiUnionMesh(result, first, others);
        break;
    case Operation::ParallelUnion:
        bspcsg::subtractMultiUnionMeshParallel(result, first, others);
        break;
    }
    return result;
}

} // namespace orva::bench

// The operations of both interfaces under one signature, so that a test can run over all of them.
#pragma once

#include "bits.hpp"
#include "orva/bspcsg.hpp"
#include "orva/orva.h"

#include <array>

namespace orva::test {

struct TwoMeshOperation {
    const char* name;
    void (*cpp)(Mesh& output, const Mesh& a, const Mesh& b);
    void (*c)(MeshD* output, const MeshD* a, const MeshD* b);

    Mesh operator()(const Mesh& a, const Mesh& b) const {
        Mesh result;
        cpp(result, a, b);
        return result;
    }
    Mesh throughC(const Mesh& a, const Mesh& b) const {
        const MeshD recordA = viewOf(a);
        const MeshD recordB = viewOf(b);
        MeshD* output = orva_meshd_create(0);
        c(output, &recordA, &recordB);
        Mesh result = meshOf(*output);
        orva_meshd_destroy(output);
        return result;
    }
};

inline constexpr TwoMeshOperation unite{"union", bspcsg::unionMesh, orva_bspcsg_union_mesh};
inline constexpr TwoMeshOperation subtract{"subtract", bspcsg::subtractMesh, orva_bspcsg_subtract_mesh};
inline constexpr TwoMeshOperation intersect{"intersect", bspcsg::intersectMesh, orva_bspcsg_intersect_mesh};
inline constexpr std::array<TwoMeshOperation, 3> twoMeshOperations{unite, subtract, intersect};

} // namespace orva::test

// The operations of both interfaces under one signature, so that a test can run over all of them.
#pragma once

#include "bits.hpp"
#include "orva/bspcsg.hpp"
#include "orva/orva.h"
#include "worker.hpp"

#include <array>
#include <memory>

namespace orva::test {

/// An empty record of the C interface, released also where the operation that should fill it throws.
using OutputRecord = std::unique_ptr<MeshD, decltype(&orva_meshd_destroy)>;
inline OutputRecord outputRecord() {
    return {orva_meshd_create(0), orva_meshd_destroy};
}

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
        const OutputRecord output = outputRecord();
        c(output.get(), &recordA, &recordB);
        return meshOf(*output);
    }
};

inline constexpr TwoMeshOperation unite{"union", bspcsg::unionMesh, orva_bspcsg_union_mesh};
inline constexpr TwoMeshOperation subtract{"subtract", bspcsg::subtractMesh, orva_bspcsg_subtract_mesh};
inline constexpr TwoMeshOperation intersect{"intersect", bspcsg::intersectMesh, orva_bspcsg_intersect_mesh};
inline constexpr std::array<TwoMeshOperation, 3> twoMeshOperations{unite, subtract, intersect};

struct BatchOperation {
    const char* name;
    void (*cpp)(Mesh& output, const Mesh& base, const std::vector<Mesh>& cutters);
    void (*c)(MeshD* output, const MeshD* base, const MeshD* cutters, std::int32_t count);

    Mesh operator()(const Mesh& base, const std::vector<Mesh>& cutters) const {
        Mesh result;
        withAWorker([&] { cpp(result, base, cutters); });
        return result;
    }
    Mesh throughC(const Mesh& base, const std::vector<Mesh>& cutters) const {
        const MeshD record = viewOf(base);
        std::vector<MeshD> cutterRecords;
        for (const Mesh& cutter : cutters) cutterRecords.push_back(viewOf(cutter));
        const OutputRecord output = outputRecord();
        const auto count = static_cast<std::int32_t>(cutterRecords.size());
        withAWorker([&] { c(output.get(), &record, cutterRecords.data(), count); });
        return meshOf(*output);
    }
};

inline constexpr BatchOperation subtractInTurn{"in turn", bspcsg::subtractMultiMesh, orva_bspcsg_subtract_multi_mesh};
inline constexpr BatchOperation subtractUnion{"union", bspcsg::subtractMultiUnionMesh,
                                              orva_bspcsg_subtract_multi_union_mesh};
inline constexpr BatchOperation subtractUnionParallel{"parallel union", bspcsg::subtractMultiUnionMeshParallel,
                                                      orva_bspcsg_subtract_multi_union_mesh_parallel};
inline constexpr std::array<BatchOperation, 3> batchOperations{subtractInTurn, subtractUnion, subtractUnionParallel};

} // namespace orva::test

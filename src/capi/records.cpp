#include "capi/heap.hpp"
#include "orva/orva.h"

#include <memory>

static_assert(sizeof(VertexD) == 64 && sizeof(VertexF) == 32, "vertices are eight scalars and nothing else");

namespace orva::bspcsg {

namespace {

template <typename VertexT> VertexT* allocateVertices(std::int32_t n) {
    if (n < 1) return nullptr;
    return static_cast<VertexT*>(allocateArray(static_cast<std::size_t>(n) * sizeof(VertexT)));
}

template <typename MeshT, typename VertexT> MeshT* createMesh(std::int32_t n) {
    if (n < 0) return nullptr;
    using RecordOwner = std::unique_ptr<void, void (*)(void*) noexcept>;
    RecordOwner memory(allocateRecord(sizeof(MeshT)), freeRecord);
    if (memory == nullptr) return nullptr;
    VertexT* vertices = allocateVertices<VertexT>(n);
    if (n >= 1 && vertices == nullptr) return nullptr;
    return ::new (memory.release()) MeshT{n, vertices};
}

template <typename MeshT> void destroyMesh(MeshT* mesh) {
    if (mesh == nullptr) return;
    freeArray(mesh->vertices);
    mesh->vertices = nullptr;
    freeRecord(mesh);
}

} // namespace

} // namespace orva::bspcsg

using namespace orva::bspcsg;

MeshD* orva_meshd_create(int32_t n) {
    return createMesh<MeshD, VertexD>(n);
}
void orva_meshd_destroy(MeshD* mesh) {
    destroyMesh(mesh);
}
VertexD* orva_meshd_alloc_vertices(int32_t n) {
    return allocateVertices<VertexD>(n);
}
void orva_meshd_free_vertices(VertexD* vertices) {
    freeArray(vertices);
}

MeshF* orva_meshf_create(int32_t n) {
    return createMesh<MeshF, VertexF>(n);
}
void orva_meshf_destroy(MeshF* mesh) {
    destroyMesh(mesh);
}
VertexF* orva_meshf_alloc_vertices(int32_t n) {
    return allocateVertices<VertexF>(n);
}
void orva_meshf_free_vertices(VertexF* vertices) {
    freeArray(vertices);
}

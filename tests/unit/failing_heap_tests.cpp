// What the C records do when the process heap fails: by an exception, as the standard says, or by null, as a host's own
// operator new may.
#include "capi/convert.hpp"
#include "mesh/convert.hpp"
#include "polygons.hpp"

#include <cstdlib>
#include <new>
#include <string>

namespace {

enum class Failure { None, Throw, Null };

Failure failure = Failure::None;
std::size_t failFrom = 0; // sizes below this one succeed
int live = 0;             // blocks taken and not yet released while a failure is armed

void* take(std::size_t bytes) {
    if (failure != Failure::None && bytes >= failFrom) {
        if (failure == Failure::Throw) throw std::bad_alloc();
        return nullptr;
    }
    void* memory = std::malloc(bytes);
    if (memory == nullptr) throw std::bad_alloc();
    if (failure != Failure::None) ++live;
    return memory;
}

void release(void* memory) noexcept {
    if (failure != Failure::None && memory != nullptr) --live;
    std::free(memory);
}

struct Armed {
    Armed(Failure how, std::size_t from) {
        failFrom = from;
        live = 0;
        failure = how;
    }
    ~Armed() { failure = Failure::None; }
};

} // namespace

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wreturn-local-addr"
#pragma GCC diagnostic ignored "-Wnonnull"
#endif

void* operator new(std::size_t bytes) {
    return take(bytes);
}
void* operator new[](std::size_t bytes) {
    return take(bytes);
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}

namespace orva::bspcsg {

namespace {

template <typename Call> std::string badAllocTextOf(Call call) {
    try {
        call();
    } catch (const std::bad_alloc& exception) {
        return exception.what();
    }
    return "nothing was thrown";
}

} // namespace

TEST(FailingHeap, ThatThrowsMakesCreateThrowBadAllocationAndLeakNothing) {
    for (const std::size_t from : {std::size_t{1}, std::size_t{64}}) { // the record fails, or only its array
        const Armed armed(Failure::Throw, from);
        const std::string text = badAllocTextOf([] { (void)orva_meshd_create(4); });
        failure = Failure::None;
        EXPECT_EQ(text, "bad allocation");
        EXPECT_EQ(live, 0);
    }
}

TEST(FailingHeap, ThatAnswersNullMakesCreateReturnNullAndLeakNothing) {
    for (const std::size_t from : {std::size_t{1}, std::size_t{64}}) {
        const Armed armed(Failure::Null, from);
        const MeshD* record = orva_meshd_create(4);
        const MeshF* single = orva_meshf_create(4);
        const VertexD* vertices = orva_meshd_alloc_vertices(4);
        const MeshD* empty = from == 1 ? orva_meshd_create(0) : nullptr; // nothing but the record is asked for
        failure = Failure::None;
        EXPECT_EQ(empty, nullptr);
        EXPECT_EQ(record, nullptr);
        EXPECT_EQ(single, nullptr);
        EXPECT_EQ(vertices, nullptr);
        EXPECT_EQ(live, 0);
    }
}

TEST(FailingHeap, GetsBackAllOfARecordThatIsDestroyed) {
    const Armed armed(Failure::Null, static_cast<std::size_t>(-1)); // counts, and never fails
    orva_meshd_destroy(orva_meshd_create(4));
    EXPECT_EQ(live, 0);
    orva_meshf_destroy(orva_meshf_create(4));
    EXPECT_EQ(live, 0);
}

TEST(FailingHeap, LeavesTheOutputRecordWithTheNewCountBesideItsOldArray) {
    const PolygonList list = listOf({level(1), level(2)});
    VertexD old{};
    MeshD record{1, &old};
    std::string text;
    {
        const Armed armed(Failure::Throw, 64);
        text = badAllocTextOf([&] { polygonsToMeshD(list, &record); });
    }
    EXPECT_EQ(text, "bad allocation");
    EXPECT_EQ(record.count, 6);
    EXPECT_EQ(record.vertices, &old);
}

TEST(FailingHeap, LeavesTheOutputMeshAsItWas) {
    const PolygonList list = listOf({level(1), level(2)});
    types::Mesh<double> mesh{{test::at(1, 2, 3)}};
    std::string text;
    {
        const Armed armed(Failure::Throw, 64);
        text = badAllocTextOf([&] { polygonsToMesh(list, mesh); });
    }
    EXPECT_EQ(text, "bad allocation");
    EXPECT_EQ(mesh.vertices.size(), 1U);
}

} // namespace orva::bspcsg

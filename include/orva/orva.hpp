/// @file
/// The C interface for C++ programs, of whatever compiler: owners instead of functions to release with, views instead
/// of pointers and counts. Everything in here is compiled into the host; the library is called through orva/orva.h
/// alone.
///
///     std::vector<VertexD> block = ..., drill = ...;
///     orva::c::Mesh part;
///     orva::c::subtractMesh(part, block, drill); // part = block minus drill
///     for (const VertexD& corner : part) ...     // three to a triangle
///
/// Which header for which host: orva/bspcsg.hpp hands standard vectors across, so it is for programs built by a
/// compiler that shares its names and vectors with the library's. On Windows a library built by MinGW's GCC and a host
/// built by MSVC do not; they meet here. The two headers may be included together.
///
/// The functions are those of orva/bspcsg.hpp, bit for bit, under the same names and in the same order of parameters:
/// what they compute, assume and promise stands there. One thing differs, as it does in C: `output` is replaced, not
/// appended to. What it held is released when the result is there.
///
/// Laws:
///  - `output` may be one of the inputs. When a function throws, it is as it was.
///  - Without cutters `output` stays as it is.
///  - A View copies nothing and owns nothing: what it shows stays where it is, unchanged, until the call is over.
///  - An array is released by the library that made it, exactly once: by the Mesh that owns it in the end.
///
/// Thrown: std::bad_alloc and std::length_error of the library, where host and library share a runtime (Linux; MinGW's
/// GCC on Windows); std::length_error, "vector too long", from here for more than 2^31 - 1 vertices or cutters. In
/// a host built by MSVC an exception of a library that MinGW's GCC built has neither type nor text; under /EHa alone
/// can catch (...) end it. From a library that MSVC built it arrives whole under /EHs and /EHa. Never /EHsc, which
/// takes for granted that functions of the C interface throw nothing; where a build system sets it, /EHc- behind it
/// takes that back. (MSVC is untested so far.)
///
/// Needs C++17.
#ifndef ORVA_ORVA_HPP
#define ORVA_ORVA_HPP

#include "orva/orva.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace orva::c {

namespace detail {

/// The count as the records have it.
inline std::int32_t countOf(std::size_t n) {
    if (n > 0x7FFFFFFF) throw std::length_error("vector too long");
    return static_cast<std::int32_t>(n);
}

/// Arrays of which may be read as arrays of VertexD: that alone, not what is derived from it.
template <typename Vertices>
using Element = std::remove_pointer_t<decltype(std::data(std::declval<const Vertices&>()))>;
template <typename Vertices>
using IfOfVertices = std::enable_if_t<std::is_convertible_v<Element<Vertices> (*)[], const VertexD (*)[]>>;

} // namespace detail

/// Vertices that somebody else owns, three to a triangle: a Mesh, a std::vector, std::array or std::span of VertexD, or
/// a pointer and a count. Copying it is cheap; pass it by value. It is a std::span<const VertexD> wherever one is asked
/// for.
class View {
public:
    /// An empty mesh.
    View() noexcept = default;

    View(const VertexD* vertices, std::size_t count)
        : record_{detail::countOf(count), const_cast<VertexD*>(vertices)} {} // inputs are read only

    /// Whatever has data() and size(), with vertices one behind the other.
    template <typename Vertices, typename = detail::IfOfVertices<Vertices>>
    View(const Vertices& vertices) : View(std::data(vertices), std::size(vertices)) {}

    /// The host's own records, as long as each is eight doubles in the order of VertexD: orva::types::Vertex, say.
    template <typename Record> static View of(const Record* records, std::size_t count) {
        static_assert(sizeof(Record) == sizeof(VertexD), "a record has to be eight doubles: position, normal, aux");
        static_assert(alignof(Record) == alignof(VertexD), "a record has to be eight doubles: position, normal, aux");
        static_assert(std::is_trivially_copyable_v<Record>, "a record has to be nothing but its eight doubles");
        static_assert(std::is_standard_layout_v<Record>, "a record has to be nothing but its eight doubles");
        return {reinterpret_cast<const VertexD*>(records), count};
    }

    const VertexD* data() const noexcept { return record_.vertices; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(record_.count); }
    bool empty() const noexcept { return record_.count == 0; }
    const VertexD* begin() const noexcept { return data(); }
    const VertexD* end() const noexcept { return data() + size(); }
    const VertexD& operator[](std::size_t i) const noexcept { return data()[i]; }

    /// For the functions of orva/orva.h, as an input.
    const MeshD& record() const noexcept { return record_; }

private:
    MeshD record_{0, nullptr};
};

/// A mesh on the library's heap; it moves and is not copied by accident. After a move the other one is empty.
class Mesh {
public:
    /// No vertices; takes no memory.
    Mesh() noexcept = default;

    /// Room for `count` vertices, their values not set.
    explicit Mesh(std::size_t count)
        : Mesh(MeshD{detail::countOf(count), orva_meshd_alloc_vertices(detail::countOf(count))}) {
        if (count != 0 && data() == nullptr) throw std::bad_alloc();
    }

    /// A copy of what the view shows.
    explicit Mesh(View vertices) : Mesh(vertices.size()) { std::copy(vertices.begin(), vertices.end(), begin()); }

    /// Takes over the array of a record that the library filled: release neither of them any more.
    explicit Mesh(MeshD record) noexcept : record_(record) {}

    Mesh(Mesh&& other) noexcept : record_(other.release()) {}
    Mesh& operator=(Mesh&& other) noexcept {
        Mesh(std::move(other)).swap(*this); // also right when the other one is this one
        return *this;
    }
    Mesh(const Mesh&) = delete;
    Mesh& operator=(const Mesh&) = delete;
    ~Mesh() { orva_meshd_free_vertices(record_.vertices); }

    void swap(Mesh& other) noexcept { std::swap(record_, other.record_); }

    /// Gives the array away: the caller releases it, with orva_meshd_free_vertices. Leaves this mesh empty.
    [[nodiscard]] MeshD release() noexcept { return std::exchange(record_, MeshD{0, nullptr}); }

    VertexD* data() noexcept { return record_.vertices; }
    const VertexD* data() const noexcept { return record_.vertices; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(record_.count); }
    bool empty() const noexcept { return record_.count == 0; }
    VertexD* begin() noexcept { return data(); }
    VertexD* end() noexcept { return data() + size(); }
    const VertexD* begin() const noexcept { return data(); }
    const VertexD* end() const noexcept { return data() + size(); }
    VertexD& operator[](std::size_t i) noexcept { return data()[i]; }
    const VertexD& operator[](std::size_t i) const noexcept { return data()[i]; }

    /// For the functions of orva/orva.h, as an input.
    const MeshD& record() const noexcept { return record_; }

private:
    MeshD record_{0, nullptr};
};

// ---- Two meshes ----

/// output = the boundary of what lies in a, in b, or in both.
inline void unionMesh(Mesh& output, View a, View b) {
    MeshD result{0, nullptr};
    orva_bspcsg_union_mesh(&result, &a.record(), &b.record());
    output = Mesh(result);
}

/// output = the boundary of what lies in a but not in b.
inline void subtractMesh(Mesh& output, View a, View b) {
    MeshD result{0, nullptr};
    orva_bspcsg_subtract_mesh(&result, &a.record(), &b.record());
    output = Mesh(result);
}

/// output = the boundary of what lies in both a and b.
inline void intersectMesh(Mesh& output, View a, View b) {
    MeshD result{0, nullptr};
    orva_bspcsg_intersect_mesh(&result, &a.record(), &b.record());
    output = Mesh(result);
}

// ---- One base, many cutters ----
//
// `cutters` is any range of what a View is made from: std::vector<orva::c::Mesh>, std::vector<std::vector<VertexD>>, a
// list of views in braces.

namespace detail {

/// What the three below share: views of the cutters as the array that the C functions take.
template <typename Operation, typename Cutters>
void subtractCutters(Operation operation, Mesh& output, View base, const Cutters& cutters) {
    std::vector<MeshD> records;
    for (const auto& cutter : cutters) records.push_back(View(cutter).record());
    if (records.empty()) return;
    MeshD result{0, nullptr};
    operation(&result, &base.record(), records.data(), countOf(records.size()));
    output = Mesh(result);
}

} // namespace detail

/// output = ((base - c0) - c1) - ...
template <typename Cutters> void subtractMultiMesh(Mesh& output, View base, const Cutters& cutters) {
    detail::subtractCutters(orva_bspcsg_subtract_multi_mesh, output, base, cutters);
}
inline void subtractMultiMesh(Mesh& output, View base, std::initializer_list<View> cutters) {
    detail::subtractCutters(orva_bspcsg_subtract_multi_mesh, output, base, cutters);
}

/// output = base - (c0 + c1 + ...), the union merged on the calling thread.
template <typename Cutters> void subtractMultiUnionMesh(Mesh& output, View base, const Cutters& cutters) {
    detail::subtractCutters(orva_bspcsg_subtract_multi_union_mesh, output, base, cutters);
}
inline void subtractMultiUnionMesh(Mesh& output, View base, std::initializer_list<View> cutters) {
    detail::subtractCutters(orva_bspcsg_subtract_multi_union_mesh, output, base, cutters);
}

/// The same solid, the union merged on the task scheduler's threads. It never returns where the scheduler has no worker
/// thread besides the caller, nor when memory runs out inside a merge.
template <typename Cutters> void subtractMultiUnionMeshParallel(Mesh& output, View base, const Cutters& cutters) {
    detail::subtractCutters(orva_bspcsg_subtract_multi_union_mesh_parallel, output, base, cutters);
}
inline void subtractMultiUnionMeshParallel(Mesh& output, View base, std::initializer_list<View> cutters) {
    detail::subtractCutters(orva_bspcsg_subtract_multi_union_mesh_parallel, output, base, cutters);
}

} // namespace orva::c

#endif

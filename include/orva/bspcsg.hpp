/// @file
/// Union, difference and intersection of closed triangle meshes.
///
///     orva::types::Mesh<double> block = ..., drill = ..., result;
///     orva::bspcsg::subtractMesh(result, block, drill); // result = block minus drill
///
/// What is assumed of the meshes: each is the whole boundary of a solid (closed, outward facing, not crossing itself).
/// Nothing checks it. Open, crossing or inside-out meshes, triangles without area, NaN and infinite coordinates go
/// through like any others and give what the planes give. The call does not fail on them as such; but coordinates so
/// large that their products overflow can multiply pieces until memory is out, which is then reported as always.
///
/// How it works: the triangles of each mesh become a binary space partitioning tree of polygons (B. Naylor, J.
/// Amanatides, W. Thibault: Merging BSP Trees Yields Polyhedral Set Operations, 1990); each tree clips the other's
/// polygons, and what survives is read out as fans of triangles. A triangle that a plane of the other solid, or of its
/// own, passes through is cut by that whole plane, so a result holds more triangles than its shape needs.
///
/// Tolerance: a vertex within 1e-6 of a plane, in the unit of the coordinates, lies in it. Parts that small vanish or
/// stay open; scale them up. From about 3e9 on, the coordinates' own rounding is coarser than the tolerance.
///
/// Triangles off their own plane: rounding can put a corner of a needle-thin or very large triangle more than 1e-6 off
/// the plane computed from its three corners. Such a triangle, when its plane becomes a splitting plane, is kept in
/// that plane as it is, so that every input yields a result.
///
/// Laws:
///  - The same input gives the same bits: on every platform, with any number of threads, at any time.
///  - The output is appended to: what `output` held before stays in front. Pass an empty mesh to get the result alone.
///  - A mesh without a whole triangle is not "nothing" but a solid that clips everything away: every operation with an
///    empty operand, the union included, appends no triangle.
///  - Swapping the operands of a union or an intersection gives the same solid, possibly cut into other triangles.
///  - Two solids apart from each other: the union is all of both, the intersection nothing, a minus b the surface of a.
///  - Faces that touch with opposite outsides vanish from a union; faces that coincide and face the same way appear
///  once.
///  - Normals and `aux` of a triangle that is neither cut nor turned inside out arrive bit for bit.
///
/// `output` may be one of the inputs: they are read before it is written.
///
/// Thrown, and nothing leaks: std::bad_alloc ("bad allocation") when memory runs out; std::length_error
/// ("vector too long", "deque<T> too long") when a list outgrows what can be counted, 2^31 vertices of one mesh for
/// instance; what the task scheduler throws. The output is then as it was, unless appending to it was what failed.
///
/// Threads: any number of calls at once, on meshes that nobody changes meanwhile. A call runs on the caller's thread
/// and shares its clipping with the task scheduler's default arena; it starts no thread of its own.
///
/// Cost: time and memory grow with the number of pieces into which the planes cut the triangles: a little faster than
/// with the number of triangles for smooth meshes, with the square of it where many large faces cross each other.
#ifndef ORVA_BSPCSG_HPP
#define ORVA_BSPCSG_HPP

#include "orva/export.h"
#include "orva/types.hpp"

namespace orva::bspcsg {

/// Appends to `output` the boundary of what lies in a, in b, or in both.
ORVA_API void unionMesh(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b);

/// Appends to `output` the boundary of what lies in a but not in b. The walls that b leaves are b's triangles turned
/// around: their corners in reverse order, their normals negated, their `aux` as it was.
ORVA_API void subtractMesh(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b);

/// Appends to `output` the boundary of what lies in both a and b.
ORVA_API void intersectMesh(types::Mesh<double>& output, const types::Mesh<double>& a, const types::Mesh<double>& b);

/// @defgroup cutters One base, many cutters
///
/// Without cutters the output stays as it is, not even the base is appended. A single cutter without a whole triangle
/// empties the result, like any empty operand: leave such cutters out. Which of the three to choose:
/// docs/many-cutters.md.
/// @{

/// Appends ((base - c0) - c1) - ..., the cutters taken out one after another in list order. The order decides how the
/// surface is cut, not which solid it bounds.
ORVA_API void subtractMultiMesh(types::Mesh<double>& output, const types::Mesh<double>& base,
                                const std::vector<types::Mesh<double>>& cutters);

/// Appends base - (c0 + c1 + ...): first the union of all cutters, merged two at a time in an order that depends on
/// their number alone, then one difference. One cutter gives exactly what subtractMesh gives.
ORVA_API void subtractMultiUnionMesh(types::Mesh<double>& output, const types::Mesh<double>& base,
                                     const std::vector<types::Mesh<double>>& cutters);

/// The same solid with the unions merged side by side on the task scheduler's threads. With one or two cutters the bits
/// are those of subtractMultiUnionMesh. From three on, which cutters are merged with which depends on which merge ends
/// first, so the surface can be cut differently from call to call; this is the one exception to "the same bits".
///
/// What a host has to know before it chooses this one:
///  - The calling thread merges nothing itself: the scheduler needs at least one worker thread besides it. With the
///    scheduler limited to a single thread (tbb::global_control, a one-core machine or container) this call never
///    returns.
///  - When memory runs out inside a merge, that merge gives no result, and the call waits for it without end.
///  - While it waits it does not sleep: it yields its thread and asks again.
ORVA_API void subtractMultiUnionMeshParallel(types::Mesh<double>& output, const types::Mesh<double>& base,
                                             const std::vector<types::Mesh<double>>& cutters);
/// @}

} // namespace orva::bspcsg

#endif

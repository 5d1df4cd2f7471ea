/// @file
/// What makes results fit for use: closed by index, with few triangles. The library Orva_tidy.
///
///     orva::tidy::Solid part;
///     const orva::tidy::Report report = orva::tidy::subtractSolid(part, block, {drill});
///     ... part.vertices, part.faces; report.closed ...
///
/// The operations of orva/bspcsg.hpp give a soup: pieces of the input's triangles, each cut along whole planes, corners
/// in the middle of neighbours' edges. Slicers, viewers with smooth shading and other modellers take an indexed mesh in
/// which every edge belongs to two triangles. tidySoup() makes one of the other, whoever made the soup; the three
/// operations below do all of it in one call.
///
/// What a tidied solid is:
///  - Closed and edge-manifold by index where report.closed says so: each directed edge of a face occurs once, and once
///    in the opposite direction. The faces around each vertex hang together by edges; where solids touch in a vertex or
///    an edge there are several vertices in one position. No two corners of a face are equal.
///  - Of few triangles: T-junctions and cuts that the shape does not need are gone. A face of the input that was not
///    really cut is one triangle again, its three corners bit for bit those of the input.
///  - What it is not: free of self-intersection where surfaces lie closer than the tolerance. Simplified: shapes stay.
///
/// Laws:
///  - The same input gives the same bits: on every platform, with any number of threads, at any time.
///  - Tidying what is closed and tidied, with the same options and its origins, changes nothing; but where a vertex had
///    to be put into an edge that four faces share, or things lie about a tolerance apart, faces may be divided anew.
///  - No vertex is farther from the surface it came from than report.movedByWeld + report.movedByZip +
///    report.movedByDrop, and each of the three is about the tolerance at most (the gap width where gaps are closed).
///    The volume is kept accordingly.
///  - A soup whose edges meet within the tolerance closes by index. What is open stays open and is counted: nothing is
///    filled that is not a piece of one face, unless a gap width is given.
///  - The result is no worse than the soup: a triangle with a coordinate that is not finite, or over 1e75, comes back
///    as it was.
///
/// Memory: all in standard vectors, the host's to keep and drop. Thrown: std::bad_alloc; std::length_error ("vector too
/// long") for 2^31 corners or more. The output is then as it was.
///
/// Threads: any number of calls at once, on meshes that nobody changes meanwhile. tidySoup() starts no thread.
///
/// Cost: in proportion to the soup. Measured figures stand in docs/results-fit-for-use.md.
#ifndef ORVA_TIDY_HPP
#define ORVA_TIDY_HPP

#include "orva/export.h"
#include "orva/types.hpp"

#include <array>
#include <cstdint>
#include <vector>

namespace orva::tidy {

/// Where a face came from: a face of one of the meshes that went into an operation.
struct Origin {
    std::uint32_t mesh = 0xFFFFFFFF; ///< the place of the mesh: 0 for the base or the first
    std::uint32_t face = 0xFFFFFFFF; ///< the place of the triangle in its mesh, from 0

    friend bool operator==(const Origin& a, const Origin& b) { return a.mesh == b.mesh && a.face == b.face; }
};

/// Of a face that could not be told.
inline constexpr Origin UNKNOWN_ORIGIN{};

/// What a corner of a face carries besides its position; two faces may differ in it at the same vertex.
struct Corner {
    types::Vec3 normal{};
    std::array<double, 2> aux{};
};

/// An indexed mesh. `corners` and `origins` may be empty on input: corners then carry zeros.
///
/// Indices are below the number of vertices: nothing checks it here, orva/tidy.h does.
///
/// One triangle in memory: vertices (0,0,0) (1,0,0) (0,1,0); faces {0,1,2}; corners {{n0,a0}, {n1,a1}, {n2,a2}};
/// origins {{0,0}}.
struct Solid {
    std::vector<types::Vec3> vertices;
    std::vector<std::array<std::uint32_t, 3>> faces; ///< counter-clockwise from outside; indices into `vertices`
    std::vector<std::array<Corner, 3>> corners;      ///< for each face, its three corners
    std::vector<Origin> origins;                     ///< for each face
};

/// Which coplanar neighbours become one face, to be divided into as few triangles as its outline needs. Only faces of
/// the same mesh whose corners carry the same linear values (texture coordinates, say) are ever merged. A merged face
/// has the origin of the largest face in it.
enum class Merge : std::int32_t {
    None = 0, ///< pieces of one input face only
    Cut = 1,  ///< faces that were cut; the result then has no more triangles than the soup, but for whole faces
              ///< that have to be divided because a neighbour has a corner in the middle of their side
    All = 2,  ///< those that were not cut, too
};

struct Options {
    /// How far apart things may be that should be one, in the unit of the coordinates. 0 is the larger of 8e-6, which
    /// covers what the operations' own 1e-6 leaves where planes meet, and 1e-9 of the size: with `scale`, 8e-6 of the
    /// unit that the operation is computed in.
    double tolerance = 0.0;
    /// Up to which width gaps are closed that are wider than the tolerance; 0 closes none. In the unit of the
    /// coordinates.
    double gapWidth = 0.0;
    Merge merge = Merge::Cut;
    /// Operations only. Computes in a unit (a power of two times the given one, so that no bit of an input is lost) in
    /// which the operations' fixed tolerance suits the meshes' size, and in another where the result does not close.
    bool scale = true;
};

/// What was found and done, on the way from step to step of an operation as well. Lengths and areas in the unit of the
/// coordinates.
struct Report {
    bool closed = false;         ///< closed and edge-manifold by index; true for a solid without faces
    std::uint64_t openEdges = 0; ///< edges of faces without a match
    double largestGap = 0.0;     ///< the most that the middle of an open edge is away from the nearest other open edge
    std::uint64_t loopsRemoved = 0;  ///< open loops in the plane of one face: pieces lost or given twice by the cuts
    double loopArea = 0.0;           ///< of all those
    double movedByWeld = 0.0;        ///< the most that a vertex was moved onto another
    double movedByZip = 0.0;         ///< the most that an edge was bent to pass through a vertex
    double movedByDrop = 0.0;        ///< the most that a dropped vertex was off the edge that is there now
    std::uint64_t forcedEars = 0;    ///< triangles made without regard to their shape, where an outline crosses itself
    std::uint64_t facesLeft = 0;     ///< input faces whose pieces were left as they were
    std::uint64_t soupTriangles = 0; ///< triangles that came in to be tidied
    std::uint64_t pieces = 0;        ///< groups of faces that hang together by edges
    double scale = 1.0;              ///< operations: what coordinates were multiplied by to compute
};

/// Replaces `output` by the tidied soup.
///
/// `origins` says for each triangle of the soup which input face it is a piece of, or is empty: then pieces are grouped
/// by plane and neighbourhood, which is slower and now and then leaves more triangles. Pieces of one origin lie in one
/// plane and carry values that are linear on it; where corners of the result are not corners of the soup, that is how
/// they get theirs.
ORVA_TIDY_API Report tidySoup(Solid& output, const types::Mesh<double>& soup, const std::vector<Origin>& origins = {},
                              const Options& options = {});

/// The solid as a soup, three vertices to a face.
ORVA_TIDY_API types::Mesh<double> toSoup(const Solid& solid);

/// @defgroup operations Operations with tidied results
///
/// Meshes are closed, face outward and do not cross themselves, as in orva/bspcsg.hpp. Each corner of the result
/// carries its normal and aux by its source face, bit for bit at that face's own corners, linearly elsewhere; normals
/// of a subtracted mesh are negated. `origins` of the result names the source face of every face.
///
/// An empty mesh empties every result, as in orva/bspcsg.hpp.
/// @{

/// In which way many cutters are subtracted. One solid in all three; docs/many-cutters.md says which to choose.
enum class Cutting : std::int32_t {
    InTurn = 0,             ///< ((base - c0) - c1) - ...
    AsOneUnion = 1,         ///< base - (c0 + c1 + ...)
    AsOneUnionParallel = 2, ///< the same merged by the task scheduler's threads: see subtractMultiUnionMeshParallel
};

/// Replaces `output` by what lies in any of the meshes.
ORVA_TIDY_API Report unionSolid(Solid& output, const std::vector<types::Mesh<double>>& meshes,
                                const Options& options = {});

/// Replaces `output` by what lies in all of the meshes.
ORVA_TIDY_API Report intersectSolid(Solid& output, const std::vector<types::Mesh<double>>& meshes,
                                    const Options& options = {});

/// Replaces `output` by what lies in base and in no cutter. Without cutters that is the base, tidied.
ORVA_TIDY_API Report subtractSolid(Solid& output, const types::Mesh<double>& base,
                                   const std::vector<types::Mesh<double>>& cutters, Cutting cutting = Cutting::InTurn,
                                   const Options& options = {});

/// The same on indexed meshes.
ORVA_TIDY_API Report unionSolid(Solid& output, const std::vector<Solid>& meshes, const Options& options = {});
ORVA_TIDY_API Report intersectSolid(Solid& output, const std::vector<Solid>& meshes, const Options& options = {});
ORVA_TIDY_API Report subtractSolid(Solid& output, const Solid& base, const std::vector<Solid>& cutters,
                                   Cutting cutting = Cutting::InTurn, const Options& options = {});
/// @}

} // namespace orva::tidy

#endif

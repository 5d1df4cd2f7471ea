// A boolean's result is right to the last bit and hard to use: pieces of the input's triangles, cut along whole planes.
// Of two neighbours one has corners in the middle of the other's edge, corners that should be one differ in their last
// bits, and slivers narrower than the tolerance are missing or there twice.
//
// The idea: pieces whose surface closes are a chain of directed edges that sums to zero, and every step below keeps
// that sum. So closedness is combinatorial and hangs on no comparison of coordinates; those decide about shape alone.
//
//  1. gather         pieces of the same input face, by their marks or by their planes
//  2. outlines       each face by itself, in the cache: what its pieces surround, as directed edges
//  3. match          opposite edges of neighbouring faces
//  4. weld and zip   what is still open, nearest things first: points become one, T-junctions are resolved
//  5. loops          what then is open around a piece that the cuts lost, or gave twice, is given to its face
//  6. gaps           the same at a larger distance, where the caller asks for it
//  7. regions        coplanar faces become one, where the caller asks for it
//  8. chains         between two regions there are no points that the line does not need, and no region without width
//  9. triangulate    each region, with its holes; pieces that need no change stay
// 10. umbrellas      mirrored triangles cancel; a vertex for each fan of triangles
//
// The order matters. Zipping to the tolerance comes before loops, and gaps come last: otherwise pieces that are really
// there twice are zipped together, and move by a hundred tolerances. Outlines come before welding: pieces of one face
// fit up to rounding, and most points are gone before anything is compared across faces.
#include "orva/tidy.hpp"

#include "tidy/carried.hpp"
#include "tidy/chains.hpp"
#include "tidy/gaps.hpp"
#include "tidy/gather.hpp"
#include "tidy/loops.hpp"
#include "tidy/open_edges.hpp"
#include "tidy/outlines.hpp"
#include "tidy/pieces.hpp"
#include "tidy/regions.hpp"
#include "tidy/triangulate.hpp"
#include "tidy/umbrellas.hpp"
#include "tidy/weld.hpp"
#include "tidy/zip.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace orva::tidy {

namespace {

// What two planes within the operations' 1e-6 of each other leave where three of them meet: see docs/design.md.
constexpr double TOLERANCE = 8e-6;
constexpr double TOLERANCE_OF_SIZE = 1e-9;

// Points of one face that should lie on a line do so up to rounding; this times the tolerance is far above that and far
// below what a cut means.
constexpr double SAME_LINE = 1e-4;

// Radii of welding and zipping, in tolerances: rounding, then rounding at shallow angles, then the rest.
constexpr std::array<double, 3> TIERS{1e-4, 1e-2, 1.0};

// Loops of lost pieces are slivers: in tolerances, the most that one is wide.
constexpr double WIDEST_LOOP = 1000.0;

// Pieces without marks belong together when they lie in a plane up to this, in tolerances.
constexpr double SAME_PLANE = 1e-3;

class Tidier {
public:
    Tidier(const types::Mesh<double>& ofSoup, const std::vector<Origin>& withOrigins, const Inputs* ofInputs,
           const Options& withOptions)
        : soup(ofSoup), origins(withOrigins), inputs(ofInputs), options(withOptions) {}

    void run(Solid& output);

    Report report;

private:
    void measureFaces();
    bool isUncut(std::size_t face, std::size_t firstEdge, std::size_t lastEdge) const;
    const types::Vertex* carrierOf(std::size_t face) const;
    void sew();
    bool isOfInput(std::size_t face) const;
    bool mayBePiece(std::uint32_t face, const std::vector<Vec3>& points, double width, double distance) const;
    void closeLoops(double distance);
    void closeGaps();
    void mergeFaces();
    void deliver(Solid& output, Triangles& triangles, const std::vector<std::uint32_t>& vertex);
    Corner cornerAt(const Corners& corners, std::size_t corner, const Vec3& at) const;
    void measure(const Triangles& triangles);

    const types::Mesh<double>& soup;
    const std::vector<Origin>& origins;
    const Inputs* inputs;
    const Options& options;
    double tolerance = 0.0; ///< in the unit of the soup
    Surface surface;
    std::vector<std::uint32_t> left; ///< triangles that stay as they are
    std::vector<FaceFacts> facts;
    std::vector<std::uint32_t> region;
    std::vector<bool> isCut; ///< by region
    Matcher matcher;
    Zipper zipper;
};

// ---- Faces ----

// The triangle that says what a face carries.
const types::Vertex* Tidier::carrierOf(std::size_t face) const {
    const std::size_t largest = surface.faces[face].largest;
    if (inputs != nullptr) {
        const Origin& origin = origins[largest];
        if (origin.mesh < inputs->meshes.size() && origin.face < inputs->meshes[origin.mesh]->vertices.size() / 3) {
            return &inputs->meshes[origin.mesh]->vertices[3 * std::size_t{origin.face}];
        }
    }
    return &soup.vertices[3 * largest];
}

// Whether the face of the input is known.
bool Tidier::isOfInput(std::size_t face) const {
    return facts[face].carrier != &soup.vertices[3 * std::size_t{surface.faces[face].largest}];
}

// Whether a face's edges are those of a face of the input. Without the input, any triangle may be one.
bool Tidier::isUncut(std::size_t face, std::size_t firstEdge, std::size_t lastEdge) const {
    if (lastEdge - firstEdge != 3 || origins.empty()) return false;
    const types::Vertex* source = carrierOf(face);
    if (inputs == nullptr || source == &soup.vertices[3 * std::size_t{surface.faces[face].largest}]) return true;
    for (std::size_t i = firstEdge; i < lastEdge; ++i) {
        const Vec3& at = surface.points[surface.edges[i].from];
        const bool isCorner = std::any_of(source, source + 3, [&](const types::Vertex& vertex) {
            const Vec3 corner = inputs->scale * vertex.pos;
            return corner.x == at.x && corner.y == at.y && corner.z == at.z;
        });
        if (!isCorner) return false;
    }
    return true;
}

// Right after the outlines, while the edges of a face still stand together.
void Tidier::measureFaces() {
    facts.reserve(surface.faces.size());
    std::size_t firstEdge = 0;
    for (std::size_t i = 0; i < surface.faces.size(); ++i) {
        std::size_t lastEdge = firstEdge;
        while (lastEdge < surface.edges.size() && surface.edges[lastEdge].face == i) ++lastEdge;
        const std::size_t largest = surface.faces[i].largest;
        facts.push_back(
            {origins.empty() ? NONE : origins[largest].mesh, carrierOf(i), !isUncut(i, firstEdge, lastEdge)});
        firstEdge = lastEdge;
    }
}

// ---- Seams, loops and gaps ----

void Tidier::sew() {
    matcher.matchOpposite(surface);
    for (const double tier : TIERS) {
        const double moved = weldOpen(surface, tier * tolerance);
        report.movedByWeld += moved;
        if (moved > 0.0) matcher.matchOpposite(surface);
        report.movedByZip = std::max(report.movedByZip, zipper.zip(surface, tier * tolerance));
    }
}

// A piece that was lost is a sliver; or, where the input tells, any part of its face.
bool Tidier::mayBePiece(std::uint32_t face, const std::vector<Vec3>& points, double width, double distance) const {
    if (width <= WIDEST_LOOP * tolerance) return true;
    if (!isOfInput(face)) return false;
    const types::Vertex* triangle = facts[face].carrier;
    const std::array<Vec3, 3> corners{inputs->scale * triangle[0].pos, inputs->scale * triangle[1].pos,
                                      inputs->scale * triangle[2].pos};
    const Vec3 normal = cross(corners[1] - corners[0], corners[2] - corners[0]);
    for (std::size_t k = 0; k < 3; ++k) {
        const Vec3 inward = cross(normal, corners[(k + 1) % 3] - corners[k]);
        const double reach = distance * squareRoot(squaredLength(inward));
        const bool all = std::all_of(points.begin(), points.end(),
                                     [&](const Vec3& point) { return dot(inward, point - corners[k]) >= -reach; });
        if (!all) return false;
    }
    return true;
}

void Tidier::closeLoops(double distance) {
    const Loops loops =
        closeLoopsOfFaces(surface, distance, [&](std::uint32_t face, const std::vector<Vec3>& points, double width) {
            return mayBePiece(face, points, width, distance);
        });
    report.loopsRemoved += loops.count;
    report.loopArea += loops.area;
}

// From the tolerance to the width that is asked for, by factors of four: what is near is closed before what is far.
void Tidier::closeGaps() {
    const double widest = options.gapWidth * (inputs == nullptr ? 1.0 : inputs->scale);
    for (double width = 4.0 * tolerance; widest > 0.0; width *= 4.0) {
        const double reach = std::min(width, widest);
        report.movedByZip = std::max(report.movedByZip, zipper.zip(surface, reach));
        report.movedByWeld = std::max(report.movedByWeld, weldOpen(surface, reach));
        matcher.matchOpposite(surface);
        closeLoops(reach);
        if (reach == widest) break;
    }
}

// ---- Regions ----

void Tidier::mergeFaces() {
    const bool hasMarks = !origins.empty();
    std::vector<bool> mayMerge(surface.faces.size());
    for (std::size_t i = 0; i < mayMerge.size(); ++i) {
        mayMerge[i] = options.merge == Merge::All || !hasMarks || (options.merge == Merge::Cut && facts[i].isCut);
    }
    // Without marks, pieces of one face have to find each other here, and nothing tells a face that was cut.
    const bool onlyOneFace = options.merge == Merge::None || (!hasMarks && options.merge == Merge::Cut);
    region = mergeCoplanar(surface, facts, mayMerge, (onlyOneFace ? SAME_PLANE : 1.0) * tolerance);
    keepFittingFaces(surface, soup, region, tolerance);
    isCut.assign(region.size(), false);
    for (std::size_t i = 0; i < region.size(); ++i) {
        if (region[i] == i)
            isCut[i] = isCut[i] || facts[i].isCut;
        else
            isCut[region[i]] = true;
        if (region[i] == i) continue;
        surface.faces[region[i]].isSound = false;
        surface.faces[region[i]].first = std::min(surface.faces[region[i]].first, surface.faces[i].first);
    }
    dissolve(surface, region);
}

// ---- Out ----

Corner Tidier::cornerAt(const Corners& corners, std::size_t corner, const Vec3& at) const {
    const std::uint32_t face = corners.face[corner];
    if (inputs != nullptr) {
        if (!isOfInput(face)) return {}; // what the soup carries are marks
        Corner carried = carriedAt(facts[face].carrier, at);
        if (origins[surface.faces[face].largest].mesh >= inputs->firstFlipped) carried.normal = -1.0 * carried.normal;
        return carried;
    }
    if (corners.soup[corner] == NONE) return carriedAt(facts[face].carrier, at);
    const types::Vertex& vertex = soup.vertices[corners.soup[corner]];
    return {vertex.normal, vertex.aux};
}

void Tidier::deliver(Solid& output, Triangles& triangles, const std::vector<std::uint32_t>& vertex) {
    const double back = inputs == nullptr ? 1.0 : 1.0 / inputs->scale;
    const std::size_t count = countTriangles(triangles);
    // In the order of the soup: a piece that stayed in its place, a region in that of its first piece.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> order;
    order.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t piece = triangles.piece[i];
        order.emplace_back(piece != NONE ? piece : surface.order[surface.faces[triangles.region[i]].first],
                           static_cast<std::uint32_t>(i));
    }
    std::sort(order.begin(), order.end());

    const std::size_t total = count + left.size();
    output.faces.reserve(total);
    output.corners.reserve(total);
    output.origins.reserve(total);
    std::vector<std::uint32_t> number(vertex.empty() ? 0 : 1 + *std::max_element(vertex.begin(), vertex.end()), NONE);
    for (const auto& [key, triangle] : order) {
        std::array<std::uint32_t, 3> face{};
        std::array<Corner, 3> carried{};
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t corner = 3 * std::size_t{triangle} + k;
            std::uint32_t& to = number[vertex[corner]];
            if (to == NONE) {
                to = static_cast<std::uint32_t>(output.vertices.size());
                output.vertices.push_back(back * surface.points[triangles.corners.point[corner]]);
            }
            face[k] = to;
            carried[k] = cornerAt(triangles.corners, corner, output.vertices[to]);
        }
        output.faces.push_back(face);
        output.corners.push_back(carried);
        output.origins.push_back(origins.empty() ? UNKNOWN_ORIGIN
                                                 : origins[surface.faces[triangles.region[triangle]].largest]);
    }
    for (const std::uint32_t triangle : left) {
        std::array<std::uint32_t, 3> face{};
        std::array<Corner, 3> carried{};
        for (std::size_t k = 0; k < 3; ++k) {
            const types::Vertex& corner = soup.vertices[3 * std::size_t{triangle} + k];
            face[k] = static_cast<std::uint32_t>(output.vertices.size());
            output.vertices.push_back(back * corner.pos);
            if (inputs == nullptr) carried[k] = {corner.normal, corner.aux};
        }
        output.faces.push_back(face);
        output.corners.push_back(carried);
        output.origins.push_back(origins.empty() ? UNKNOWN_ORIGIN : origins[triangle]);
    }
}

void Tidier::measure(const Triangles& triangles) {
    const double back = inputs == nullptr ? 1.0 : 1.0 / inputs->scale;
    const Corners& corners = triangles.corners;
    std::vector<Segment> open;
    for (std::size_t i = 0; i < corners.twin.size(); ++i) {
        if (corners.twin[i] != NONE) continue;
        const std::uint32_t next = nextCorner(static_cast<std::uint32_t>(i));
        open.push_back({surface.points[corners.point[i]], surface.points[corners.point[next]]});
    }
    report.largestGap = back * largestGap(open);
    report.openEdges = open.size() + 3 * left.size();
    report.facesLeft = left.size();
    report.closed = report.openEdges == 0;
    report.forcedEars = triangles.forcedEars;
    report.movedByWeld *= back;
    report.movedByZip *= back;
    report.movedByDrop *= back;
    report.loopArea *= back * back;
    report.soupTriangles = soup.vertices.size() / 3;
    report.scale = inputs == nullptr ? 1.0 : inputs->scale;

    std::vector<std::uint32_t> waiting;
    std::vector<bool> isCounted(countTriangles(triangles));
    for (std::size_t i = 0; i < isCounted.size(); ++i) {
        if (isCounted[i]) continue;
        ++report.pieces;
        isCounted[i] = true;
        waiting.assign(1, static_cast<std::uint32_t>(i));
        while (!waiting.empty()) {
            const std::uint32_t at = waiting.back();
            waiting.pop_back();
            for (std::uint32_t corner = 3 * at; corner < 3 * at + 3; ++corner) {
                if (corners.twin[corner] == NONE || isCounted[corners.twin[corner] / 3]) continue;
                isCounted[corners.twin[corner] / 3] = true;
                waiting.push_back(corners.twin[corner] / 3);
            }
        }
    }
    report.pieces += left.size();
}

void Tidier::run(Solid& output) {
    if (soup.vertices.size() > 0x7FFFFFFF) throw std::length_error("vector too long");
    Usable usable = findUsable(soup);
    left = std::move(usable.left);
    const double scale = inputs == nullptr ? 1.0 : inputs->scale;
    tolerance =
        options.tolerance > 0.0 ? options.tolerance * scale : std::max(TOLERANCE, TOLERANCE_OF_SIZE * usable.size);
    if (origins.empty()) {
        gatherByPlane(surface, soup, SAME_PLANE * tolerance, left);
    } else {
        gatherByOrigin(surface, soup, origins, left);
    }
    makeOutlines(surface, soup, SAME_LINE * tolerance);
    measureFaces();
    sew();
    closeLoops(tolerance);
    closeGaps();
    mergeFaces();
    report.movedByDrop = simplifyChains(surface, region, isCut, tolerance);
    Triangles triangles = triangulate(surface, region, soup);
    surface.edges = {}; // not needed any more, and what comes now takes the most memory
    cancelMirrored(triangles);
    std::vector<std::uint32_t> vertex;
    splitUmbrellas(triangles, surface, vertex);
    deliver(output, triangles, vertex);
    measure(triangles);
}

} // namespace

Report tidyPieces(Solid& output, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                  const Inputs* inputs, const Options& options) {
    Tidier tidier(soup, origins, inputs, options);
    Solid solid;
    tidier.run(solid);
    output = std::move(solid);
    return tidier.report;
}

Report tidySoup(Solid& output, const types::Mesh<double>& soup, const std::vector<Origin>& origins,
                const Options& options) {
    return tidyPieces(output, soup, origins, nullptr, options);
}

} // namespace orva::tidy

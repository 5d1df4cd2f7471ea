#include "tidy/outlines.hpp"

#include "tidy/open_edges.hpp"
#include "tidy/point_table.hpp"
#include "tidy/straighten.hpp"
#include "tidy/zip.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orva::tidy {

namespace {

class Outliner {
public:
    Outliner(Surface& intoSurface, const types::Mesh<double>& ofSoup, double atRadius)
        : surface(intoSurface), soup(ofSoup), radius(atRadius) {
        all.clear(surface.faces.size());
        surface.edges.reserve(3 * surface.faces.size());
    }

    void add(std::uint32_t face);

    PointTable all; ///< the points of the surface

private:
    const types::Vertex* pieceOf(const Face& face, std::size_t i) const {
        return &soup.vertices[3 * std::size_t{surface.order[face.first + i]}];
    }
    void measure(Face& face) const;
    bool addPieces(const Face& face);
    std::uint32_t countBorder();
    void findEnds();
    bool mayFold() const;
    void straightenAll();
    void take(std::uint32_t face);

    Surface& surface;
    const types::Mesh<double>& soup;
    double radius;

    Surface local; ///< one face
    PointTable table;
    Matcher matcher;
    Zipper zipper;
    Straightener straightener;
    std::vector<std::uint32_t> next;
    std::vector<std::uint32_t> in;
    std::vector<std::uint32_t> out;
    std::vector<std::uint32_t> global; ///< by local point
};

// Pieces that are asked for while so many others are worked on.
constexpr std::size_t AHEAD = 24;

void Outliner::measure(Face& face) const {
    double most = -1.0;
    for (std::size_t i = 0; i < face.count; ++i) {
        const std::size_t ahead = face.first + i + AHEAD;
        if (ahead < surface.order.size()) prefetch(&soup.vertices[3 * std::size_t{surface.order[ahead]}]);
        const types::Vertex* piece = pieceOf(face, i);
        const Vec3 normal = cross(piece[1].pos - piece[0].pos, piece[2].pos - piece[0].pos);
        const double square = squaredLength(normal);
        face.area += squareRoot(square);
        if (!(square > most)) continue;
        most = square;
        face.normal = normal;
        face.origin = piece[0].pos;
        face.largest = surface.order[face.first + i];
    }
}

// Whether all have area and face the same way.
bool Outliner::addPieces(const Face& face) {
    bool sound = true;
    local.edges.clear();
    table.clear(3 * std::size_t{face.count});
    for (std::size_t i = 0; i < face.count; ++i) {
        const types::Vertex* piece = pieceOf(face, i);
        const auto corner = static_cast<std::uint32_t>(piece - soup.vertices.data());
        std::array<std::uint32_t, 3> number{};
        for (std::size_t k = 0; k < 3; ++k) number[k] = table.numberOf(piece[k].pos);
        for (std::uint32_t k = 0; k < 3; ++k) {
            const std::uint32_t to = number[(k + 1) % 3];
            if (number[k] != to) local.edges.push_back({number[k], to, 0, NONE, corner + k});
        }
        const Vec3 normal = cross(piece[1].pos - piece[0].pos, piece[2].pos - piece[0].pos);
        sound = sound && dot(normal, face.normal) > 0.0;
    }
    std::swap(local.points, table.points());
    return sound;
}

// How many sides have no opposite one; 0 where a corner has none of them, and so lies inside.
std::uint32_t Outliner::countBorder() {
    out.assign(local.points.size(), NONE);
    std::size_t reached = 0;
    std::uint32_t count = 0;
    for (const Edge& edge : local.edges) {
        if (edge.twin != NONE) continue;
        ++count;
        if (out[edge.from] != NONE) continue;
        out[edge.from] = 0;
        ++reached;
    }
    return reached == local.points.size() ? count : 0;
}

// The open edge into each point, and out of it.
void Outliner::findEnds() {
    in.assign(local.points.size(), NONE);
    out.assign(local.points.size(), NONE);
    for (std::size_t i = 0; i < local.edges.size(); ++i) {
        const Edge& edge = local.edges[i];
        if (!isAlive(edge) || edge.twin != NONE) continue;
        in[edge.to] = in[edge.to] == NONE ? static_cast<std::uint32_t>(i) : SEVERAL;
        out[edge.from] = out[edge.from] == NONE ? static_cast<std::uint32_t>(i) : SEVERAL;
    }
}

// Whether anywhere two edges can fold back on one another: of most faces none can, and there is nothing to zip.
bool Outliner::mayFold() const {
    for (std::size_t p = 0; p < local.points.size(); ++p) {
        if (in[p] == NONE || out[p] == NONE) continue;
        if (in[p] == SEVERAL || out[p] == SEVERAL) return true;
        const Vec3 before = local.points[local.edges[in[p]].from] - local.points[p];
        const Vec3 behind = local.points[local.edges[out[p]].to] - local.points[p];
        const double length = std::max(squaredLength(before), squaredLength(behind));
        // Twice what folding asks for, so that rounding decides nothing here.
        if (dot(before, behind) > 0.0 && !(squaredLength(cross(before, behind)) > 2.0 * radius * radius * length)) {
            return true;
        }
    }
    return false;
}

void Outliner::straightenAll() {
    next.assign(local.edges.size(), NONE);
    bool any = false;
    for (std::size_t p = 0; p < local.points.size(); ++p) {
        if (in[p] >= SEVERAL || out[p] >= SEVERAL) continue;
        const Vec3& before = local.points[local.edges[in[p]].from];
        const Vec3& behind = local.points[local.edges[out[p]].to];
        if (!(squaredDistance(local.points[p], before, behind) <= radius * radius)) continue;
        next[in[p]] = out[p];
        any = true;
    }
    if (any) straightener.straighten(local, next, radius);
}

// What is open of the local edges becomes edges of the surface.
void Outliner::take(std::uint32_t face) {
    global.assign(local.points.size(), NONE);
    for (const Edge& edge : local.edges) {
        if (!isAlive(edge) || edge.twin != NONE) continue;
        for (const std::uint32_t point : {edge.from, edge.to}) {
            if (global[point] == NONE) global[point] = all.numberOf(local.points[point]);
        }
        surface.edges.push_back({global[edge.from], global[edge.to], face, NONE, edge.corner});
    }
}

void Outliner::add(std::uint32_t number) {
    Face& face = surface.faces[number];
    measure(face);
    face.isSound = addPieces(face);
    face.border = 3;
    if (face.count > 1) {
        local.faces.assign(1, {});
        matcher.matchOpposite(local);
        face.border = countBorder();
        face.isSound = face.isSound && face.border > 0;
        findEnds();
        if (mayFold()) {
            zipper.zip(local, radius);
            findEnds();
        }
        straightenAll();
    }
    take(number);
    std::swap(local.points, table.points());
}

} // namespace

void makeOutlines(Surface& surface, const types::Mesh<double>& soup, double radius) {
    Outliner outliner(surface, soup, radius);
    for (std::size_t i = 0; i < surface.faces.size(); ++i) outliner.add(static_cast<std::uint32_t>(i));
    surface.points = std::move(outliner.all.points());
}

} // namespace orva::tidy

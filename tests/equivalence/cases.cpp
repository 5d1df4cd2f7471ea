#include "cases.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace orva::equivalence {

namespace {

using reference::Plane;
using reference::Polygon;
using reference::PolygonList;
using test::joined;
using test::moved;
using test::scaled;
using types::Vec3;
using types::Vertex;

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

constexpr double HUGE_VALUES[]{1e154, 1.4e154, -1e155, 1e160, -1e200, 1e250, 1e300, 1e307, -1e308, 1.7e308};
constexpr double TINY_VALUES[]{1e-150, 1e-154, -1e-160, 1e-170, 1e-200, -1e-300, 2.3e-308, 1e-310, 5e-324, -5e-324};
constexpr double NO_NUMBERS[]{INF, -INF, NOT_A_NUMBER};

double wildValue(Random& random) {
    switch (random.integer(0, 3)) {
    case 0:
        return oneOf(random, HUGE_VALUES);
    case 1:
        return oneOf(random, TINY_VALUES);
    case 2:
        return oneOf(random, NO_NUMBERS);
    default:
        return random.integer(-2, 2);
    }
}

Vec3 gridPoint(Random& random, int low, int high) {
    const double x = random.integer(low, high);
    const double y = random.integer(low, high);
    const double z = random.integer(low, high);
    return {x, y, z};
}

Vec3 point(Random& random, double low, double high) {
    const double x = random.uniform(low, high);
    const double y = random.uniform(low, high);
    const double z = random.uniform(low, high);
    return {x, y, z};
}

Vec3 plus(const Vec3& a, const Vec3& b, double t = 1) {
    return {a.x + b.x * t, a.y + b.y * t, a.z + b.z * t};
}

double& coordinate(Vec3& p, int axis) {
    return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
}

// About the tolerance; four steps are exactly the tolerance.
double step(Random& random) {
    return random.integer(-8, 8) * 0.25e-6;
}

void carryAnything(Random& random, Vertex& vertex) {
    vertex.normal = point(random, -1, 1);
    vertex.aux = {random.uniform(0, 1), random.uniform(0, 1)};
}

// ---- meshes ----

Mesh shuffled(Random& random, const Mesh& mesh) {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < mesh.vertices.size() / 3; ++i) order.push_back(i);
    for (std::size_t i = order.size(); i > 1; --i) {
        std::swap(order[i - 1], order[static_cast<std::size_t>(random.integer(0, static_cast<int>(i) - 1))]);
    }
    Mesh result;
    for (const std::size_t i : order) {
        for (std::size_t k = 0; k < 3; ++k) result.vertices.push_back(mesh.vertices[3 * i + k]);
    }
    return result;
}

Mesh insideOut(Mesh mesh) {
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) std::swap(mesh.vertices[i], mesh.vertices[i + 2]);
    return mesh;
}

// Triangles in any order, any normals and aux, one or two vertices too many: now and then, each.
Mesh dressed(Random& random, Mesh mesh) {
    if (chance(random, 40)) mesh = shuffled(random, mesh);
    if (chance(random, 60)) {
        for (Vertex& vertex : mesh.vertices) carryAnything(random, vertex);
    }
    if (chance(random, 5)) {
        const int extra = random.integer(1, 2);
        for (int i = 0; i < extra; ++i) mesh.vertices.push_back({point(random, 0, 1), {}, {}});
    }
    return mesh;
}

MeshPair dressed(Random& random, Mesh a, Mesh b) {
    a = dressed(random, std::move(a));
    b = dressed(random, std::move(b));
    if (chance(random, 50)) std::swap(a, b);
    return {std::move(a), std::move(b)};
}

Mesh firstTriangles(Mesh mesh, int count) {
    mesh.vertices.resize(std::min(mesh.vertices.size(), 3 * static_cast<std::size_t>(count)));
    return mesh;
}

Mesh turnedBox(Random& random) {
    const Vec3 size = point(random, 0.3, 1);
    const Mesh box = turned(test::box({0, 0, 0}, size), random);
    return moved(box, point(random, -0.5, 0.5));
}

Mesh turnedSphere(Random& random, int level) {
    const double radius = random.uniform(0.4, 1.2);
    const Mesh sphere = turned(test::icosphere(level, {0, 0, 0}, radius), random);
    return moved(sphere, point(random, -0.5, 0.5));
}

// Triangles of about `reach` across.
Mesh scatter(Random& random, int count, double reach) {
    Mesh mesh;
    for (int i = 0; i < count; ++i) {
        const Vec3 centre = point(random, 0, 1);
        for (int k = 0; k < 3; ++k) mesh.vertices.push_back({plus(centre, point(random, -reach, reach)), {}, {}});
    }
    return mesh;
}

// Boxes side by side: few planes, each of which many of them share.
Mesh rowOfBoxes(Random& random, int triangles) {
    Mesh mesh;
    for (int i = 0; 12 * i < triangles; ++i) {
        const double x = i;
        const double height = random.integer(1, 3);
        mesh = joined(std::move(mesh), test::box({x, 0, 0}, {x + 0.5, 1, height}));
    }
    return firstTriangles(std::move(mesh), triangles);
}

int gridSteps(int triangles) {
    int steps = 1;
    while (12 * steps * steps < triangles) ++steps;
    return steps;
}

// A mesh of exactly so many triangles that a comparison can afford.
Mesh meshOfSize(Random& random, int triangles) {
    switch (random.integer(0, 4)) {
    case 0: {
        const Mesh box = test::griddedBox({0, 0, 0}, {3, 3, 3}, gridSteps(triangles));
        return firstTriangles(chance(random, 50) ? shuffled(random, box) : box, triangles);
    }
    case 1:
        return rowOfBoxes(random, triangles);
    case 2:
        return scatter(random, triangles, triangles > 300 ? 0.002 : 0.02);
    case 3: { // one face: everything in one plane
        const Mesh box = test::griddedBox({0, 0, 0}, {3, 3, 1}, 2 * gridSteps(triangles) + 2);
        return firstTriangles(box, triangles);
    }
    default: {
        if (triangles > 320) return rowOfBoxes(random, triangles);
        const Mesh sphere = turnedSphere(random, triangles > 80 ? 2 : 1);
        return firstTriangles(chance(random, 50) ? shuffled(random, sphere) : sphere, triangles);
    }
    }
}

Mesh smallMesh(Random& random) {
    switch (random.integer(0, 7)) {
    case 0:
    case 1:
        return boxOnCoarseGrid(random);
    case 2:
        return turnedBox(random);
    case 3:
        return turnedSphere(random, random.integer(0, 1));
    case 4:
        return test::soup(random, random.integer(1, 12));
    case 5:
        return scatter(random, random.integer(1, 40), 0.1);
    case 6:
        return rowOfBoxes(random, random.integer(1, 60));
    default:
        return test::griddedBox({0, 0, 0}, {2, 2, 2}, random.integer(1, 3));
    }
}

void spoil(Random& random, Mesh& mesh, double (*value)(Random&)) {
    const int count = random.integer(1, 6);
    for (int i = 0; i < count && !mesh.vertices.empty(); ++i) {
        const auto which = static_cast<std::size_t>(random.integer(0, static_cast<int>(mesh.vertices.size()) - 1));
        coordinate(mesh.vertices[which].pos, random.integer(0, 2)) = value(random);
    }
}

// Both scaled alike, one alone, or single coordinates replaced.
MeshPair extreme(Random& random, double (*value)(Random&)) {
    Mesh a = smallMesh(random);
    Mesh b = smallMesh(random);
    const double scale = value(random);
    switch (random.integer(0, 3)) {
    case 0:
        a = scaled(a, scale);
        b = scaled(b, scale);
        break;
    case 1:
        a = scaled(a, scale);
        break;
    case 2:
        spoil(random, a, value);
        break;
    default:
        spoil(random, a, value);
        spoil(random, b, value);
        break;
    }
    return dressed(random, std::move(a), std::move(b));
}

} // namespace

Mesh boxOnCoarseGrid(Random& random) {
    const Vec3 low = gridPoint(random, 0, 2);
    const Vec3 size = gridPoint(random, 1, 2);
    return test::griddedBox(low, plus(low, size), chance(random, 80) ? 1 : random.integer(2, 4));
}

MeshPair boxesOnCoarseGrid(Random& random) {
    Mesh a = boxOnCoarseGrid(random);
    Mesh b = boxOnCoarseGrid(random);
    if (chance(random, 20)) a = joined(std::move(a), moved(boxOnCoarseGrid(random), {10, 0, 0}));
    return dressed(random, std::move(a), std::move(b));
}

MeshPair sameSolidTwice(Random& random) {
    const Mesh a = smallMesh(random);
    Mesh b = a;
    switch (random.integer(0, 3)) {
    case 0:
        b = insideOut(std::move(b));
        break;
    case 1:
        b = moved(std::move(b), gridPoint(random, -1, 1));
        break;
    case 2:
        b = moved(std::move(b), {random.uniform(-1, 1), 0, 0});
        break;
    default:
        break;
    }
    return dressed(random, a, std::move(b));
}

MeshPair nearTolerance(Random& random) {
    Mesh a = boxOnCoarseGrid(random);
    Mesh b = chance(random, 70) ? boxOnCoarseGrid(random) : a;
    switch (random.integer(0, 3)) {
    case 0: { // in parallel
        const double x = step(random);
        const double y = step(random);
        b = moved(std::move(b), {x, y, step(random)});
        break;
    }
    case 1: // every corner of every triangle by itself
        for (Vertex& vertex : b.vertices) {
            for (int axis = 0; axis < 3; ++axis) coordinate(vertex.pos, axis) += step(random);
        }
        break;
    case 2: // tilted
        for (Vertex& vertex : b.vertices) vertex.pos.z += vertex.pos.x * 1e-6;
        break;
    default: // about a plane through the origin, where distances are exactly what they seem
        for (Vertex& vertex : b.vertices) vertex.pos.z = step(random);
        a = moved(std::move(a), {0, 0, -1});
        break;
    }
    return dressed(random, std::move(a), std::move(b));
}

MeshPair turnedSolids(Random& random) {
    Mesh a = chance(random, 50) ? turnedBox(random) : turnedSphere(random, random.integer(0, 2));
    Mesh b = chance(random, 50) ? turnedBox(random) : turnedSphere(random, random.integer(0, 1));
    return dressed(random, std::move(a), std::move(b));
}

MeshPair soups(Random& random) {
    Mesh a = test::soup(random, random.integer(1, 16));
    Mesh b = chance(random, 50) ? test::soup(random, random.integer(1, 16)) : smallMesh(random);
    return dressed(random, std::move(a), std::move(b));
}

MeshPair slivers(Random& random) {
    Mesh a = smallMesh(random);
    Mesh b = smallMesh(random);
    const int count = random.integer(1, 10);
    for (int i = 0; i < count; ++i) {
        const Vec3 from = point(random, 0, 1);
        const Vec3 along = point(random, -1, 1);
        const double off = oneOf(random, {0.0, 1e-9, 1e-7, 1e-6, 1e-5});
        Mesh sliver;
        switch (random.integer(0, 3)) {
        case 0:
            sliver = test::triangle(from, from, plus(from, along));
            break; // no area, exactly
        case 1:
            sliver = test::triangle(from, plus(from, along, 0.3), plus(from, along));
            break;
        case 2:
            sliver = test::triangle(from, plus(plus(from, along, 0.4), {0, 0, off}), plus(from, along, 3));
            break;
        default:
            sliver = test::triangle(from, plus(from, {off, 0, 0}), plus(from, {0, off, 0}));
            break;
        }
        // In front too, where it gives the root its plane.
        Mesh& target = chance(random, 50) ? a : b;
        target = chance(random, 50) ? joined(sliver, target) : joined(std::move(target), sliver);
    }
    return dressed(random, std::move(a), std::move(b));
}

MeshPair withoutNumbers(Random& random) {
    return extreme(random, [](Random& source) { return oneOf(source, NO_NUMBERS); });
}

MeshPair overflowing(Random& random) {
    return extreme(random, [](Random& source) { return oneOf(source, HUGE_VALUES); });
}

MeshPair vanishing(Random& random) {
    return extreme(random, [](Random& source) { return oneOf(source, TINY_VALUES); });
}

MeshPair griddedBoxes(Random& random) {
    Mesh a = test::griddedBox({0, 0, 0}, {1, 1, 1}, random.integer(8, 16));
    const double height = oneOf(random, {0.5, 1.0, 1.0, 2.0});
    // Two faces of these in one plane make a node of more than 1,024 polygons.
    const Vec3 by{oneOf(random, {0.0, 1.0, 2.0, 0.5}), 0, 0};
    a = joined(std::move(a), moved(test::griddedBox({0, 0, 0}, {1, 1, 1}, random.integer(14, 18)), {3, 0, 0}));
    Mesh b = moved(test::griddedBox({0, 0, 0}, {1, 1, height}, random.integer(1, 12)), by);
    return dressed(random, std::move(a), std::move(b));
}

MeshPair aroundPowersOfTwo(Random& random) {
    const int size = oneOf(random, {16, 32, 64, 128, 256});
    const int sizeA = size + random.integer(-2, 2);
    const int sizeB = chance(random, 50) ? random.integer(1, 70) : oneOf(random, {16, 32, 64, 128});
    Mesh a = meshOfSize(random, sizeA);
    Mesh b = meshOfSize(random, sizeB);
    return dressed(random, std::move(a), std::move(b));
}

MeshPair aroundAThousand(Random& random) {
    const int size = oneOf(random, {512, 1024, 1024, 1026, 2048});
    Mesh a = meshOfSize(random, size + random.integer(-2, 2));
    Mesh b = chance(random, 30) ? meshOfSize(random, oneOf(random, {128, 256, 1024})) : smallMesh(random);
    return dressed(random, std::move(a), std::move(b));
}

MeshPair fineSpheres(Random& random) {
    Mesh a = turnedSphere(random, 3);
    Mesh b = smallMesh(random);
    return dressed(random, std::move(a), std::move(b));
}

MeshPair placedAnywhere(Random& random) {
    MeshPair pair = chance(random, 50) ? turnedSolids(random) : nearTolerance(random);
    const Placement placement = anyPlacement(random);
    place(placement, pair.a);
    place(placement, pair.b);
    return pair;
}

std::vector<Mesh> baseAndCutters(Random& random) {
    std::vector<Mesh> meshes{chance(random, 60) ? boxOnCoarseGrid(random) : smallMesh(random)};
    const int cutters = oneOf(random, {0, 1, 1, 2, 2, 3, 3, 4, 5, 7, 9});
    for (int i = 0; i < cutters; ++i) {
        switch (random.integer(0, 19)) {
        case 0:
            meshes.emplace_back();
            break;
        case 1:
            meshes.push_back(meshes[static_cast<std::size_t>(random.integer(0, i))]);
            break; // one that was there
        case 2:
            meshes.push_back(withoutNumbers(random).a);
            break;
        case 3:
            meshes.push_back(nearTolerance(random).a);
            break;
        case 4:
        case 5:
        case 6:
            meshes.push_back(cutters < 5 ? smallMesh(random) : turnedBox(random));
            break;
        default:
            meshes.push_back(boxOnCoarseGrid(random));
            break;
        }
        meshes.back() = dressed(random, std::move(meshes.back()));
    }
    return meshes;
}

// ---- polygon lists and trees ----

namespace {

// Where the corners of a list's polygons lie.
enum class Corners { OnGrid, NearGrid, Anywhere, Small, Wild };

Vec3 cornerNear(Random& random, Corners corners, const Vec3& centre) {
    switch (corners) {
    case Corners::OnGrid:
        return gridPoint(random, 0, 3);
    case Corners::NearGrid: {
        Vec3 p = gridPoint(random, 0, 2);
        for (int axis = 0; axis < 3; ++axis) coordinate(p, axis) += step(random);
        return p;
    }
    case Corners::Anywhere:
        return point(random, 0, 1);
    case Corners::Small:
        return plus(centre, point(random, -0.02, 0.02));
    default: {
        Vec3 p = gridPoint(random, 0, 2);
        if (chance(random, 30)) coordinate(p, random.integer(0, 2)) = wildValue(random);
        return p;
    }
    }
}

Plane planeOf(const Polygon& polygon) {
    if (polygon.vertices.size() < 3) return {};
    return reference::planeFromPoints(polygon.vertices[0].pos, polygon.vertices[1].pos, polygon.vertices[2].pos);
}

// A plane that need not be anybody's.
Plane foreignPlane(Random& random) {
    Plane plane{point(random, -1, 1), random.uniform(-1, 2)};
    switch (random.integer(0, 9)) {
    case 0:
        return {};
    case 1:
        return {{NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER}, NOT_A_NUMBER};
    case 2:
        coordinate(plane.normal, random.integer(0, 2)) = oneOf(random, NO_NUMBERS);
        return plane;
    case 3:
        plane.w = oneOf(random, NO_NUMBERS);
        return plane;
    case 4:
        coordinate(plane.normal, random.integer(0, 2)) = wildValue(random);
        return plane;
    case 5:
        return {{0, 0, oneOf(random, {1e-6, -1e-6, 0.9e-6, -0.9e-6, 5e-324})}, plane.w};
    case 6:
        return plane; // not of unit length
    default: {        // a plane of the grid
        Plane grid;
        coordinate(grid.normal, random.integer(0, 2)) = chance(random, 50) ? 1 : -1;
        grid.w = random.integer(-1, 3);
        if (chance(random, 30)) grid.w += step(random);
        return grid;
    }
    }
}

Polygon withCorners(Random& random, Corners corners, int count) {
    Polygon polygon;
    const Vec3 centre = point(random, 0, 1);
    for (int i = 0; i < count; ++i) {
        Vertex vertex{cornerNear(random, corners, centre), {}, {}};
        carryAnything(random, vertex);
        polygon.vertices.push_back(vertex);
    }
    polygon.plane = planeOf(polygon);
    return polygon;
}

// Convex: on an ellipse, by the rational parametrisation of the circle.
Polygon onEllipse(Random& random, int count) {
    Polygon polygon;
    const Vec3 centre = point(random, 0, 1);
    const Vec3 u = point(random, -0.3, 0.3);
    const Vec3 v = point(random, -0.3, 0.3);
    for (int i = 0; i < count; ++i) {
        const double t = -3 + 6.0 * i / count;
        const Vec3 pos = plus(plus(centre, u, (1 - t * t) / (1 + t * t)), v, 2 * t / (1 + t * t));
        Vertex vertex{pos, {}, {}};
        carryAnything(random, vertex);
        polygon.vertices.push_back(vertex);
    }
    polygon.plane = planeOf(polygon);
    return polygon;
}

// What clipping leaves of a triangle: three to six corners, the triangle's own plane.
Polygon fragment(Random& random, Corners corners) {
    Polygon polygon = withCorners(random, corners, 3);
    for (int i = 0; i < 3; ++i) {
        Plane plane{point(random, -1, 1), 0};
        const Vec3& through = polygon.vertices[0].pos;
        plane.w = plane.normal.x * through.x + plane.normal.y * through.y + plane.normal.z * through.z +
                  random.uniform(-0.1, 0.1);
        PolygonList pieces;
        reference::splitPolygon(plane, polygon, pieces, pieces, pieces, pieces);
        polygon = pieces[static_cast<std::size_t>(random.integer(0, static_cast<int>(pieces.size()) - 1))];
    }
    return polygon;
}

enum class Ingredient { Triangle, Fragment, ManyCorners, Bent, Stump, ForeignPlane, Last = ForeignPlane };

Polygon drawn(Random& random, Ingredient ingredient, Corners corners) {
    switch (ingredient) {
    case Ingredient::Triangle:
        return withCorners(random, corners, 3);
    case Ingredient::Fragment:
        return fragment(random, corners);
    case Ingredient::ManyCorners:
        return onEllipse(random, chance(random, 95) ? random.integer(4, 12) : oneOf(random, {31, 32, 33, 64, 65, 300}));
    case Ingredient::Bent:
        return withCorners(random, corners, random.integer(4, 9));
    case Ingredient::Stump: {
        Polygon polygon = withCorners(random, corners, random.integer(0, 2));
        polygon.plane = foreignPlane(random);
        return polygon;
    }
    default: {
        Polygon polygon = withCorners(random, corners, random.integer(3, 5));
        polygon.plane = foreignPlane(random);
        return polygon;
    }
    }
}

Ingredient anyIngredient(Random& random) {
    return static_cast<Ingredient>(random.integer(0, static_cast<int>(Ingredient::Last)));
}

} // namespace

PolygonList polygonList(Random& random, int count) {
    const Corners corners = oneOf(random, {Corners::OnGrid, Corners::NearGrid, Corners::Anywhere, Corners::Small,
                                           Corners::Small, Corners::Small, Corners::Wild});
    // Mostly of one kind: what is rare among many others is what a fast path overlooks.
    const Ingredient most = anyIngredient(random);
    const Ingredient few = anyIngredient(random);
    const int share = oneOf(random, {0, 1, 5, 20, 50});
    PolygonList list;
    for (int i = 0; i < count; ++i) {
        list.push_back(drawn(random, chance(random, share) ? few : most, corners));
        // The same plane many times, as pieces of one face have it.
        if (i > 0 && chance(random, 10)) list.back().plane = list[static_cast<std::size_t>(i) / 2].plane;
        if (chance(random, 5)) list.back() = flipped(list.back());
    }
    return list;
}

int listLength(Random& random, int most) {
    static constexpr int around[]{0,   1,    2,    3,    4,    5,    7,    8,    9,    12,   15,   16,  17,  31,
                                  32,  33,   63,   64,   65,   100,  127,  128,  129,  255,  256,  257, 511, 512,
                                  513, 1000, 1023, 1024, 1025, 1026, 2047, 2048, 2049, 3000, 4096, 4097};
    int length = 0;
    do length = oneOf(random, around);
    while (length > most);
    return length;
}

reference::Tree arbitraryTree(Random& random, int count) {
    auto tree = std::make_unique<reference::Node>();
    const int towardsFront = oneOf(random, {0, 10, 50, 50, 90, 100}); // a chain of either kind, or a bush
    const bool foreign = chance(random, 30);
    const PolygonList planes = polygonList(random, count);
    for (int i = 0; i < count; ++i) {
        reference::Node* node = tree.get();
        while (i > 0) {
            reference::Tree& child = chance(random, towardsFront) ? node->front : node->back;
            const bool missing = child == nullptr;
            if (missing) child = std::make_unique<reference::Node>();
            node = child.get();
            if (missing) break;
        }
        node->plane = foreign ? foreignPlane(random) : planes[static_cast<std::size_t>(i)].plane;
        if (chance(random, 20)) node->polygons = polygonList(random, random.integer(0, 5));
    }
    return tree;
}

PolygonList smoothSurface(Random& random, int count) {
    Mesh mesh;
    if (chance(random, 50)) {
        int level = 0;
        while (20 << (2 * level) < count) ++level;
        mesh = firstTriangles(turnedSphere(random, level), count);
        if (chance(random, 50)) mesh = shuffled(random, mesh);
    } else { // height (x^2 + a y^2) / 2 + b x y over a square
        const double a = random.uniform(-1, 1);
        const double b = random.uniform(-0.5, 0.5);
        int steps = 1;
        while (2 * steps * steps < count) ++steps;
        const auto at = [&](int i, int j) {
            const double x = 2.0 * i / steps - 1;
            const double y = 2.0 * j / steps - 1;
            return test::at(x, y, (x * x + a * y * y) / 2 + b * x * y);
        };
        for (int i = 0; i < steps; ++i) {
            for (int j = 0; j < steps; ++j) {
                for (const auto& [di, dj] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}}) {
                    mesh.vertices.push_back(at(i + di, j + dj));
                }
            }
        }
        mesh = turned(std::move(mesh), random);
    }
    return reference::polygonsOf(mesh);
}

PolygonList patchesAlong(Random& random, const reference::Node& tree, int count) {
    std::vector<Plane> planes;
    std::vector<const reference::Node*> open{&tree};
    while (!open.empty()) {
        const reference::Node* node = open.back();
        open.pop_back();
        if (node == nullptr) continue;
        planes.push_back(node->plane);
        open.push_back(node->front.get());
        open.push_back(node->back.get());
    }

    PolygonList list;
    while (list.size() < static_cast<std::size_t>(count)) {
        const Plane& plane = planes[static_cast<std::size_t>(random.integer(0, static_cast<int>(planes.size()) - 1))];
        const Vec3& n = plane.normal;
        // Two directions in the plane; unit length does not matter.
        const Vec3 any = point(random, -1, 1);
        const Vec3 u{n.y * any.z - n.z * any.y, n.z * any.x - n.x * any.z, n.x * any.y - n.y * any.x};
        const Vec3 v{n.y * u.z - n.z * u.y, n.z * u.x - n.x * u.z, n.x * u.y - n.y * u.x};
        const double side = chance(random, 50) ? reference::EPSILON : -reference::EPSILON;
        const double off = oneOf(random, {0.0, 1e-16, 1e-13, 1e-12, 1e-11, 1e-9, 1e-6});
        const double reach = oneOf(random, {1e-3, 0.1, 1.0});
        const int patch = random.integer(1, 120);
        for (int i = 0; i < patch; ++i) {
            Polygon polygon;
            const double s = random.uniform(-reach, reach);
            const double t = random.uniform(-reach, reach);
            const int corners = random.integer(3, 5);
            for (int k = 0; k < corners; ++k) {
                Vec3 p = plus(Vec3{}, n, plane.w + side * (1 + random.uniform(-off, off)));
                p = plus(p, u, s + random.uniform(-0.1, 0.1) * reach);
                p = plus(p, v, t + random.uniform(-0.1, 0.1) * reach);
                Vertex vertex{p, {}, {}};
                carryAnything(random, vertex);
                polygon.vertices.push_back(vertex);
            }
            if (chance(random, 2)) coordinate(polygon.vertices[0].pos, random.integer(0, 2)) = wildValue(random);
            polygon.plane = chance(random, 70) ? plane : planeOf(polygon);
            if (chance(random, 20)) polygon.plane = flipped(polygon.plane);
            list.push_back(polygon);
        }
    }
    return list;
}

Placement anyPlacement(Random& random) {
    // Not beyond 1e9: where rounding is coarser than the tolerance, pieces can multiply without end.
    const double scale = oneOf(random, {1e-5, 1e-3, 1.0, 1.0, 1e3, 1e6, 1e8});
    Vec3 move{};
    if (chance(random, 60)) move = point(random, -1, 1);
    const double far = std::min(scale * oneOf(random, {1.0, 1e3, 1e6}), 5e8);
    return {scale, {move.x * far, move.y * far, move.z * far}};
}

namespace {

Vec3 placed(const Placement& placement, const Vec3& p) {
    return plus(placement.move, p, placement.scale);
}

Plane placed(const Placement& placement, const Plane& plane) {
    const Vec3& n = plane.normal;
    const Vec3& by = placement.move;
    return {n, plane.w * placement.scale + (n.x * by.x + n.y * by.y + n.z * by.z)};
}

} // namespace

void place(const Placement& placement, Mesh& mesh) {
    for (Vertex& vertex : mesh.vertices) vertex.pos = placed(placement, vertex.pos);
}

void place(const Placement& placement, PolygonList& polygons) {
    for (Polygon& polygon : polygons) {
        for (Vertex& vertex : polygon.vertices) vertex.pos = placed(placement, vertex.pos);
        polygon.plane = placed(placement, polygon.plane);
    }
}

void place(const Placement& placement, reference::Node& tree) {
    std::vector<reference::Node*> open{&tree};
    while (!open.empty()) {
        reference::Node* node = open.back();
        open.pop_back();
        if (node == nullptr) continue;
        node->plane = placed(placement, node->plane);
        place(placement, node->polygons);
        open.push_back(node->front.get());
        open.push_back(node->back.get());
    }
}

} // namespace orva::equivalence

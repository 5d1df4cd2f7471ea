// What is drawn for the comparison: meshes, polygon lists and trees, from tidy to wild. Drawn in an order that every
// compiler keeps, so a seed is the same case on every platform.
#pragma once

#include "reference.hpp"
#include "shapes.hpp"

#include <vector>

namespace orva::equivalence {

using test::Mesh;
using test::Random;

/// One of the values, with equal chances.
template <typename T, std::size_t N> const T& oneOf(Random& random, const T (&values)[N]) {
    return values[static_cast<std::size_t>(random.integer(0, static_cast<int>(N) - 1))];
}
inline bool chance(Random& random, int percent) {
    return random.integer(1, 100) <= percent;
}

// ---- meshes ----

struct MeshPair {
    Mesh a;
    Mesh b;
};

Mesh boxOnCoarseGrid(Random& random);
MeshPair boxesOnCoarseGrid(Random& random);       ///< shared planes, touching faces
MeshPair sameSolidTwice(Random& random);          ///< perhaps shuffled, inside out, or moved along its own faces
MeshPair nearTolerance(Random& random);           ///< off each other's planes by multiples of 0.25e-6
MeshPair turnedSolids(Random& random);            ///< boxes and spheres in any position
MeshPair soups(Random& random);                   ///< triangles anywhere
MeshPair slivers(Random& random);                 ///< degenerate and needle-thin triangles among others
MeshPair withoutNumbers(Random& random);          ///< NaN and infinite coordinates
MeshPair overflowing(Random& random);             ///< 1e154 to 1e308, which overflow in products
MeshPair vanishing(Random& random);               ///< 1e-160 to subnormal
MeshPair griddedBoxes(Random& random);            ///< so many triangles in one plane that clipping makes them tasks
MeshPair aroundPowersOfTwo(Random& random);       ///< about 16, 32, 64, 128 and 256 triangles
MeshPair aroundAThousand(Random& random);         ///< and about 512, 1024 and 2048
MeshPair fineSpheres(Random& random);             ///< 1,280 triangles in a or in b
MeshPair placedAnywhere(Random& random);          ///< small or large numbers, or far from the origin
std::vector<Mesh> baseAndCutters(Random& random); ///< the base, and up to nine cutters of all kinds

// ---- polygon lists and trees ----

/// Polygons such as no mesh gives: of any number of corners, bent, with foreign planes, zero and NaN planes.
reference::PolygonList polygonList(Random& random, int count);
/// A length of interest up to `most`.
int listLength(Random& random, int most);

/// A tree of `count` nodes that build could not have made: any shape, any planes, some polygons.
reference::Tree arbitraryTree(Random& random, int count);

/// The triangles of a smooth surface, of about `count`: a part of a sphere, or a wavy sheet.
reference::PolygonList smoothSurface(Random& random, int count);

/// Patches of polygons almost parallel to planes of the tree, with corners a tolerance off them, give or take a few
/// roundings.
reference::PolygonList patchesAlong(Random& random, const reference::Node& tree, int count);

/// The same situation larger or smaller, or far from the origin.
struct Placement {
    double scale;
    types::Vec3 move;
};
Placement anyPlacement(Random& random);
void place(const Placement& placement, Mesh& mesh);
void place(const Placement& placement, reference::PolygonList& polygons);
void place(const Placement& placement, reference::Node& tree); ///< planes and polygons

} // namespace orva::equivalence

// Random solids, of two kinds.
//
// Those on the grid have integer corners from 0 to 4: faces in one plane, edges that meet, corners on faces are the
// rule with them. Planes through such corners have integer normals of length 28 at most, so a point where three of them
// meet lies in a fourth one or at least 1 / 28^4 = 1.6e-6 from it: the tolerance never takes one thing for another.
// Those anywhere are turned by random angles and moved: nothing of theirs meets.
#pragma once

#include "shapes.hpp"

namespace orva::test {

/// A closed mesh with something inside, of one of both kinds.
using DrawSolid = Mesh (*)(Random&);
Mesh solidOnGrid(Random& random);
Mesh solidAnywhere(Random& random);

/// Between low and high in each coordinate.
Vec3 randomPoint(Random& random, double low, double high);

Mesh insideOut(Mesh mesh);

} // namespace orva::test

// Operations of the library beside those of the reference.
#pragma once

#include "shapes.hpp"

#include <array>
#include <vector>

namespace orva::fuzz {

using test::Mesh;

/// Which of the library's doors to take; both have to lead to the same bits.
enum class Interface { Cpp, C };

/// Union, a minus b, intersection.
std::array<Mesh, 3> allThree(const Mesh& a, const Mesh& b, Interface door);

/// One of the three, by its number.
Mesh one(std::size_t operation, const Mesh& a, const Mesh& b, Interface door);

/// In turn, as one union and, with up to two cutters, as one union in parallel: from three on its bits are not defined.
std::vector<Mesh> allBatches(const Mesh& base, const std::vector<Mesh>& cutters, Interface door);

} // namespace orva::fuzz

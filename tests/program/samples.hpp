// Meshes and files to test with.
#pragma once

#include "formats/format.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orva::program {

using types::Vec3;
using Mesh = types::Mesh<double>;
using Triangle = std::array<Vec3, 3>;

// The twelve triangles of an axis-aligned box; the first two are its bottom, the last two its top.
std::vector<Triangle> boxTriangles(const Vec3& low, const Vec3& high);

Mesh meshOf(const std::vector<Triangle>& triangles);

Mesh box(const Vec3& low, const Vec3& high);

// A model of nothing but that mesh.
Model modelOf(Mesh mesh);

// What a format's reader and writer make of it, their notes left aside.
Mesh readAs(decltype(Format::read) read, std::string_view bytes);
std::string writeAs(decltype(Format::write) write, const Mesh& mesh);

// The same with all that a file said of the mesh.
Model modelAs(decltype(Format::read) read, std::string_view bytes);

// What a reader says to something that it cannot read.
std::string refusalOf(decltype(Format::read) read, std::string_view bytes);

// A box as the content of an .off file.
std::string boxFile(const Vec3& low, const Vec3& high);

// Binary STL: the header, the count, and the triangles' floats, whatever the count says.
std::string stlFile(std::uint32_t count, const std::vector<float>& floats, const std::string& header = "sample");

// One triangle with an odd normal, as twelve floats.
std::vector<float> stlTriangle();

} // namespace orva::program

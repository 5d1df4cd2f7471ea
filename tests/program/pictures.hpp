// Pictures to compare with.
#pragma once

#include "picture/png.hpp"

#include <string>
#include <string_view>

namespace orva::program {

// Fails the test, and gives an empty picture, for bytes that are no PNG.
Image decodePng(std::string_view bytes);

struct Difference {
    double mean = 0.0;  // of all values, 0 to 255
    double share = 0.0; // of the pixels, 0 to 1: those of which a value differs by a tenth of all levels and more
};

// For pictures of the same size.
Difference differenceOf(const Image& a, const Image& b);

// The picture is the one that is stored under that name in tests/program/pictures/, but for what nobody would see. With
// ORVA_RECORD_PICTURES set in the environment, it is stored there instead: look at it before it is committed.
void expectStored(const std::string& name, std::string_view bytes);

} // namespace orva::program

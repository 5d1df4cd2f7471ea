// What the fuzzers run: any bytes are a case, and what the library makes of it has to be what the plain reading of the
// algorithm (tests/reference) makes of it, bit for bit, and what the laws of solids ask for where they apply. For the
// program's readers the bytes are a file.
//
//     targets.hpp, bytes.hpp   what is here for both
//     solids.cpp               bytes to solids on a coarse grid, exactly there or about a tolerance off it
//     vertices.cpp             bytes to triangles with any doubles for coordinates
//     tidied.cpp               bytes to soups and solids that are tidied, and what holds of every result
//     compare.cpp              operations of the library beside those of the reference
//     memory.hpp               the working memory that the library gets here
//     entry.cpp                what libFuzzer calls
//     replay.hpp, .cpp         the same without a fuzzer: all inputs kept in corpus/ and regressions/
//     replay_tests.cpp         that, as a test
//     readers/                 all of it for the program's readers; words/ has the words of each format
//
// Found something? scripts/fuzz leaves the input in build/fuzz/findings. Put it into regressions/, in the folder of its
// target, under a name that says what it shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace orva::fuzz {

/// The library, or a reader, gave something else than it should.
class Difference : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Each runs one case and throws Difference, or what the library throws; std::bad_alloc when the case is too large.
void solids(const std::uint8_t* data, std::size_t size);
void vertices(const std::uint8_t* data, std::size_t size);
void tidied(const std::uint8_t* data, std::size_t size);

/// Each reads one file and throws Difference.
void stl(const std::uint8_t* data, std::size_t size);
void off(const std::uint8_t* data, std::size_t size);
void obj(const std::uint8_t* data, std::size_t size);
void ply(const std::uint8_t* data, std::size_t size);
void glb(const std::uint8_t* data, std::size_t size);

} // namespace orva::fuzz

// Every input that is kept, once more, without a fuzzer: corpus/ reaches all that the fuzzers have reached,
// regressions/ holds what once failed.
#include "targets.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <vector>

namespace orva::fuzz {

namespace {

using Target = void (*)(const std::uint8_t* data, std::size_t size);

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::exists(folder)) return files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::size_t replay(const std::filesystem::path& folder, Target target) {
    const std::vector<std::filesystem::path> files = filesIn(folder);
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> input{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        EXPECT_TRUE(stream.good() || stream.eof()) << file << " cannot be read";
        try {
            target(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
        } catch (const std::bad_alloc&) { // too large
        } catch (const std::exception& failure) {
            ADD_FAILURE() << file << ": " << failure.what();
        }
    }
    return files.size();
}

} // namespace

TEST(Fuzz, KeptSolids) {
    EXPECT_GT(replay("fuzz/corpus/solids", solids), 50U) << "tests run in the folder tests/";
    replay("fuzz/regressions/solids", solids);
}

TEST(Fuzz, KeptVertices) {
    EXPECT_GT(replay("fuzz/corpus/vertices", vertices), 50U) << "tests run in the folder tests/";
    replay("fuzz/regressions/vertices", vertices);
}

} // namespace orva::fuzz

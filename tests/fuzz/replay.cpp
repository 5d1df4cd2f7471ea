#include "replay.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <new>
#include <vector>

namespace orva::fuzz {

namespace {

using Input = std::vector<std::uint8_t>;

void run(Target target, const Input& input, const std::string& name) {
    try {
        target(input.data(), input.size());
    } catch (const std::bad_alloc&) { // too large
    } catch (const std::exception& failure) {
        ADD_FAILURE() << name << ": " << failure.what();
    }
}

} // namespace

int replayCorpus(const std::string& file, Target target) {
    std::ifstream stream(file);
    EXPECT_TRUE(stream) << file << " cannot be opened: tests run in the folder tests/";
    int inputs = 0;
    for (std::string line; std::getline(stream, line); ++inputs) {
        Input input;
        for (std::size_t i = 0; i + 1 < line.size(); i += 2) {
            input.push_back(static_cast<std::uint8_t>(std::stoi(line.substr(i, 2), nullptr, 16)));
        }
        run(target, input, file + " line " + std::to_string(inputs + 1));
    }
    return inputs;
}

int replayRegressions(const std::filesystem::path& folder, Target target) {
    int inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream stream(entry.path(), std::ios::binary);
        const Input input{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        run(target, input, entry.path().string());
        ++inputs;
    }
    return inputs;
}

} // namespace orva::fuzz

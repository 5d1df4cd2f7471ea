// Every input that is kept, once more, without a fuzzer: corpus/ reaches all that the fuzzers have reached,
// regressions/ holds what once failed.
#pragma once

#include "targets.hpp"

#include <filesystem>
#include <string>

namespace orva::fuzz {

using Target = void (*)(const std::uint8_t* data, std::size_t size);

/// One a line, two hexadecimal digits a byte. Gives their number, and fails the test that runs where one fails.
int replayCorpus(const std::string& file, Target target);

/// Named after what it showed, each in a file as the fuzzer left it.
int replayRegressions(const std::filesystem::path& folder, Target target);

} // namespace orva::fuzz

// What makes results fit for use on every input that is kept.
#include "replay.hpp"

#include <gtest/gtest.h>

namespace orva::fuzz {

TEST(Fuzz, KeptTidied) {
    EXPECT_GT(replayCorpus("fuzz/corpus/tidied.txt", tidied), 40);
}

} // namespace orva::fuzz

// The library on every input that is kept.
#include "replay.hpp"

#include <gtest/gtest.h>

namespace orva::fuzz {

TEST(Fuzz, KeptSolids) {
    EXPECT_GT(replayCorpus("fuzz/corpus/solids.txt", solids), 100);
    EXPECT_GT(replayRegressions("fuzz/regressions/solids", solids), 0);
}

TEST(Fuzz, KeptVertices) {
    EXPECT_GT(replayCorpus("fuzz/corpus/vertices.txt", vertices), 100);
    EXPECT_GT(replayRegressions("fuzz/regressions/vertices", vertices), 0);
}

} // namespace orva::fuzz

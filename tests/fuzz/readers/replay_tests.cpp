// The program's readers on every file that is kept.
#include "replay.hpp"

#include <gtest/gtest.h>

namespace orva::fuzz {

namespace {

void replay(const std::string& name, Target target) {
    EXPECT_GT(replayCorpus("fuzz/corpus/" + name + ".txt", target), 10);
    const std::string regressions = "fuzz/regressions/" + name;
    if (!std::filesystem::exists(regressions)) return; // git keeps no empty folders
    EXPECT_GT(replayRegressions(regressions, target), 0);
}

} // namespace

TEST(FuzzReaders, KeptStl) {
    replay("stl", stl);
}

TEST(FuzzReaders, KeptOff) {
    replay("off", off);
}

TEST(FuzzReaders, KeptObj) {
    replay("obj", obj);
}

TEST(FuzzReaders, KeptPly) {
    replay("ply", ply);
}

TEST(FuzzReaders, KeptGlb) {
    replay("glb", glb);
}

} // namespace orva::fuzz

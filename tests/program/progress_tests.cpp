// The line that tells what goes on. That it is seen at all: terminal_tests.cpp.
#include "report/progress.hpp"

#include <gtest/gtest.h>

namespace orva::program {
namespace {

using namespace std::chrono_literals;

std::string lineOf(const std::string& doing, std::size_t done, std::size_t all, std::chrono::seconds elapsed,
                   std::size_t width = 80) {
    std::size_t escapes = 0;
    const std::string line = progressLine(doing, done, all, elapsed, width, false, escapes);
    EXPECT_EQ(escapes, 0U);
    return line;
}

TEST(Progress, WithoutAFractionShowsTheTimeAlone) {
    EXPECT_EQ(lineOf("subtracting", 0, 0, 7s), "orva: subtracting  0:07");
    EXPECT_EQ(lineOf("reading a.off", 0, 1, 3671s), "orva: reading a.off  61:11");
}

TEST(Progress, WithAFractionHasABar) {
    EXPECT_EQ(lineOf("combining", 1, 4, 65s), "orva: combining  [#####...............] 1 of 4  1:05");
    EXPECT_EQ(lineOf("combining", 0, 3, 1s), "orva: combining  [....................] 0 of 3  0:01");
    EXPECT_EQ(lineOf("combining", 3, 3, 1s), "orva: combining  [####################] 3 of 3  0:01");
}

TEST(Progress, FitsTheTerminal) {
    const std::string file = "reading " + std::string(100, 'a') + "/last.off";
    const std::string line = lineOf(file, 1, 2, 9s, 60);
    EXPECT_EQ(line.size(), 59U);
    EXPECT_TRUE(line.ends_with("a/last.off  [##########..........] 1 of 2  0:09")) << line;
    EXPECT_EQ(lineOf(file, 0, 0, 9s, 5), "orva:   0:09"); // no room for anything: better too long than wrong
}

TEST(Progress, KeepsCharactersWhole) {
    EXPECT_EQ(lineOf("箱箱箱箱", 0, 0, 9s, 15), "orva: 箱箱  0:09");
}

TEST(Progress, NamesCannotMoveTheCursor) {
    EXPECT_EQ(lineOf("reading a\033[2J\nb", 0, 0, 9s), "orva: reading a?[2J?b  0:09");
}

TEST(Progress, ColoursTakeNoPlace) {
    std::size_t escapes = 0;
    const std::string line = progressLine("x", 1, 2, 1s, 80, true, escapes);
    EXPECT_EQ(line, "orva: x  [\033[36m##########..........\033[0m] 1 of 2  0:01");
    EXPECT_EQ(line.size() - escapes, lineOf("x", 1, 2, 1s).size());
}

} // namespace
} // namespace orva::program

// What was required, what was measured, and how many of the goals that makes.
#pragma once

#include <string>

namespace orva::bench {

struct Bound {
    double need;
    double aim;
};

/// Prints a line for each goal as soon as it is judged.
class Score {
public:
    /// `what` was measured, and `of` it which figure.
    void judge(const std::string& what, const std::string& of, double value, Bound bound, bool atLeast);
    void failed(const std::string& what, const std::string& of, const std::string& why);
    static void skipped(const std::string& what, const std::string& of, const std::string& why);
    /// Below a goal, what its figure came from.
    static void note(const std::string& text);

    /// Prints how many were reached; true for all.
    bool sumUp() const;

private:
    int reached_ = 0;
    int aimsReached_ = 0;
    int all_ = 0;
};

} // namespace orva::bench

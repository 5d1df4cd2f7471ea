#include "score.hpp"

#include "table.hpp"

#include <cmath>
#include <cstdio>

namespace orva::bench {

namespace {

std::string shown(double value) {
    if (value == 0.0 || std::abs(value) >= 0.01) return rounded(value);
    char text[32];
    std::snprintf(text, sizeof text, "%.1e", value);
    return text;
}

} // namespace

void Score::judge(const std::string& what, const std::string& of, double value, Bound bound, bool atLeast) {
    const auto holds = [=](double than) { return atLeast ? value >= than : value <= than; };
    const bool isReached = holds(bound.need);
    const bool isAim = holds(bound.aim);
    ++all_;
    reached_ += isReached ? 1 : 0;
    aimsReached_ += isAim ? 1 : 0;
    std::printf("%-34s %-26s %9s   %s %5g   aim %5g   %s\n", what.c_str(), of.c_str(), shown(value).c_str(),
                atLeast ? "at least" : "at most ", bound.need, bound.aim,
                isAim       ? "reached, the aim too"
                : isReached ? "reached"
                            : "NOT REACHED");
    std::fflush(stdout);
}

void Score::failed(const std::string& what, const std::string& of, const std::string& why) {
    ++all_;
    std::printf("%-34s %-26s NOT REACHED: %s\n", what.c_str(), of.c_str(), why.c_str());
    std::fflush(stdout);
}

void Score::skipped(const std::string& what, const std::string& of, const std::string& why) {
    std::printf("%-34s %-26s not judged, %s\n", what.c_str(), of.c_str(), why.c_str());
    std::fflush(stdout);
}

void Score::note(const std::string& text) {
    std::printf("    %s\n", text.c_str());
    std::fflush(stdout);
}

bool Score::sumUp() const {
    std::printf("%d of %d goals reached, %d aims\n", reached_, all_, aimsReached_);
    return reached_ == all_;
}

} // namespace orva::bench

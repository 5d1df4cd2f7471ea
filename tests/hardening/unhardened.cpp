// A program without any of the protection that ours have: tests/hardening/reads.cmake has to see that all of it is
// missing.
#include <cstdio>

int main(int count, char** arguments) {
    char copy[64];
    std::snprintf(copy, sizeof copy, "%s", arguments[count - 1]);
    return std::puts(copy) < 0 ? 1 : 0;
}

// A host that limits the scheduler to its own thread: argument "sequential" or
// "parallel" says which operation it calls. Exit code 0 when the call returned.
#include "operations.hpp"

#include <tbb/global_control.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, 1);
    const std::string which = argc > 1 ? argv[1] : "";
    const auto& operation = which == "parallel" ? orva::test::subtractUnionParallel : orva::test::subtractUnion;
    const std::vector<orva::test::Mesh> cutters(3, orva::test::box({0.25, 0.25, -1}, {0.75, 0.75, 2}));
    std::puts("calling");
    std::fflush(stdout);
    const auto result = operation(orva::test::unitCube(), cutters);
    std::printf("returned %zu triangles\n", result.vertices.size() / 3);
    return result.vertices.empty() ? 1 : 0;
}

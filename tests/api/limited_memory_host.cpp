// A host whose memory is limited: with nothing more than it has, and with a little more and a little more again, a call
// fails cleanly as long as that does not suffice; with the limit lifted the same call gives the whole result.
//
// Argument: the number of the operation, 0 to 4. A process for each, because what an earlier call gave back would be
// there for a later one. Exit code 0 when all held. Not the parallel union, in which a merge without memory leaves the
// call waiting.
#include "figures.hpp"
#include "operations.hpp"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <new>
#include <string>

namespace orva::test {

namespace {

// The address space that this process has now, in bytes.
rlim_t addressSpace() {
    std::ifstream statm("/proc/self/statm");
    rlim_t pages = 0;
    statm >> pages;
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

void limitTo(rlim_t bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = bytes;
    if (setrlimit(RLIMIT_AS, &limit) != 0) std::perror("setrlimit");
}

template <typename Operation, typename Second>
bool holds(const char* name, const Operation& operation, const Mesh& a, const Second& b) {
    int failed = 0;
    for (rlim_t more = 0;; more += rlim_t{8} << 20) {
        Mesh output;
        std::string text = "nothing";
        limitTo(addressSpace() + more);
        try {
            operation.cpp(output, a, b);
        } catch (const std::bad_alloc& exception) {
            text = exception.what();
        }
        limitTo(RLIM_INFINITY);
        if (text == "nothing") break;
        if (text != "bad allocation" || !output.vertices.empty()) {
            std::printf("%s: '%s', %zu vertices\n", name, text.c_str(), output.vertices.size());
            return false;
        }
        ++failed;
    }
    const Mesh result = operation(a, b);
    const bool whole = !result.vertices.empty() && sameBits(result, operation.throughC(a, b));
    std::printf("%s: %d calls failed, then the result was %s\n", name, failed, whole ? "whole" : "wrong");
    figure(std::string("limited-memory.") + name + ".failed-calls", static_cast<std::uint64_t>(failed));
    return whole && failed > 0;
}

constexpr std::array names{"Union", "Subtract", "Intersect", "SubtractInTurn", "SubtractUnion"};

bool holds(std::size_t operation) {
    (void)subtractUnionParallel(unitCube(), {unitCube(), unitCube()}); // the scheduler has set itself up
    const Mesh a = icosphere(4, {0, 0, 0}, 1);
    const Mesh b = icosphere(4, {0.31, 0.17, 0.23}, 0.9);
    if (operation < twoMeshOperations.size()) return holds(names[operation], twoMeshOperations[operation], a, b);
    return holds(names[operation], batchOperations[operation - twoMeshOperations.size()], a,
                 std::vector<Mesh>{b, unitCube()});
}

} // namespace

} // namespace orva::test

int main(int argc, char** argv) {
    return argc == 2 && orva::test::holds(static_cast<std::size_t>(argv[1][0] - '0')) ? 0 : 1;
}

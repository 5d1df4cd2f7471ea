#include "solvers.hpp"

#include "bits.hpp"
#include "cgal.hpp"
#include "library.hpp"
#include "measures.hpp"
#include "orva/bspcsg.hpp"
#include "reference.hpp"

#include <tbb/global_control.h>

#include <malloc.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fstream>
#include <stdexcept>

namespace orva::bench {

namespace {

Mesh byReference(Operation operation, const Mesh& first, const std::vector<Mesh>& others) {
    switch (operation) {
    case Operation::Union:
        return reference::unite(first, others[0]);
    case Operation::Difference:
        return reference::subtract(first, others[0]);
    case Operation::Intersection:
        return reference::intersect(first, others[0]);
    case Operation::InTurn:
        return reference::subtractInTurn(first, others);
    default:
        return reference::subtractUnion(first, others);
    }
}

Mesh byCgal(Operation operation, const Mesh& first, const std::vector<Mesh>& others) {
    switch (operation) {
    case Operation::Union:
        return cgal::unite(first, others[0]);
    case Operation::Difference:
        return cgal::subtract(first, others[0]);
    case Operation::Intersection:
        return cgal::intersect(first, others[0]);
    case Operation::InTurn:
        return cgal::subtractInTurn(first, others);
    default:
        return cgal::subtractUnion(first, others);
    }
}

// Short jobs are repeated for this long, longer ones once.
constexpr double AT_LEAST = 0.05;
// Beyond this a job is not repeated.
constexpr double LONG = 0.5;

struct Clocks {
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    double processor = ofProcess();

    static double ofProcess() {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }
};

double residentBytes() {
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// A new process starts with what it has from the old one.
double mostResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

Solution solved(Solver solver, Operation operation, const std::vector<Mesh>& inputs) {
    const Mesh& first = inputs.front();
    const std::vector<Mesh> others(inputs.begin() + 1, inputs.end());
    const auto by = solver == Solver::Reference ? byReference : solver == Solver::Cgal ? byCgal : byLibrary;
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, solver == Solver::TwoThreads ? 2 : 1);
    Mesh warmUp; // the scheduler's thread starts before the clock does
    bspcsg::unionMesh(warmUp, test::icosphere(1, {0, 0, 0}, 1), test::icosphere(1, {0.5, 0, 0}, 1));

    Solution solution{};
    Mesh result;
    const auto run = [&](int calls) {
        const Clocks start;
        for (int i = 0; i < calls; ++i) result = by(operation, first, others);
        const Clocks end;
        solution.seconds = (end.seconds - start.seconds) / calls;
        solution.processor = (end.processor - start.processor) / calls;
    };
    malloc_trim(0); // what earlier jobs left in the heap would hold a result and not be seen
    const double before = residentBytes();
    run(1);
    solution.memory = mostResidentBytes() - before;
    solution.cuts = reference::cuts;
    if (solution.processor < LONG) {
        result = {};
        run(std::max(1, static_cast<int>(AT_LEAST / solution.seconds)));
    }
    test::BitHash hash;
    hash.add(result);
    solution.triangles = result.vertices.size() / 3;
    solution.bits = hash.value();
    solution.volume = test::volume(result);
    return solution;
}

// What the child sends: a solution, or words.
struct Message {
    bool solved = false;
    Solution solution{};
    char words[160]{};
};

[[noreturn]] void solveAndExit(int pipe, Solver solver, Operation operation, const std::vector<Mesh>& inputs) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nothing goes on when the measuring is broken off
    Message message;
    try {
        message.solution = solved(solver, operation, inputs);
        message.solved = true;
    } catch (const std::exception& exception) {
        std::strncpy(message.words, exception.what(), sizeof message.words - 1);
    }
    const bool sent = write(pipe, &message, sizeof message) == static_cast<ssize_t>(sizeof message);
    _exit(sent ? 0 : 1);
}

} // namespace

const char* nameOf(Solver solver) {
    switch (solver) {
    case Solver::Reference:
        return "plain reading";
    case Solver::OneThread:
        return "1 thread";
    case Solver::TwoThreads:
        return "2 threads";
    default:
        return "CGAL";
    }
}

bool canDo(Solver solver, Operation operation) {
    return operation != Operation::ParallelUnion || solver == Solver::TwoThreads;
}

Solution solve(Solver solver, Operation operation, const std::vector<Mesh>& inputs, double limit) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0) solveAndExit(ends[1], solver, operation, inputs);
    close(ends[1]);

    pollfd ready{ends[0], POLLIN, 0};
    const bool inTime = poll(&ready, 1, static_cast<int>(limit * 1000)) > 0;
    Message message;
    const bool received = inTime && read(ends[0], &message, sizeof message) == static_cast<ssize_t>(sizeof message);
    if (!inTime) kill(child, SIGKILL);
    close(ends[0]);
    waitpid(child, nullptr, 0);

    if (!inTime) throw std::runtime_error("> " + std::to_string(std::lround(limit)) + " s");
    if (!received) throw std::runtime_error("crashed");
    if (!message.solved) throw std::runtime_error(message.words);
    return message.solution;
}

std::optional<std::string> Check::operator()(Solver solver, const Solution& solution) {
    if (solution.triangles == 0) return "an empty result";
    if (solver != Solver::Cgal && operation_ != Operation::ParallelUnion) {
        if (!bits_) bits_ = solution.bits;
        if (*bits_ != solution.bits) return "other bits";
    }
    // Ours can lack slivers within the tolerance, the fandisk's two parts in ten thousand; CGAL rounds where it cuts.
    if (!volume_) volume_ = solution.volume;
    if (!(std::abs(solution.volume - *volume_) <= 1e-3 * std::abs(*volume_))) {
        return "volume " + std::to_string(solution.volume) + " against " + std::to_string(*volume_);
    }
    return std::nullopt;
}

} // namespace orva::bench

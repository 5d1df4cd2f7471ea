// One call of the library, for bench/instructions to count what the processor does in it.
//
//     orva_instructions               the names of the cases, one a line
//     orva_instructions CASE CALLS    does that one so many times, after a first time in which nothing is counted: it
//                                     sets up what a process sets up once
#include "library.hpp"

#include <tbb/task_arena.h>

#include <array>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using orva::bench::Job;
using orva::bench::Mesh;

// The daily work, where what a call allocates and sets up is most of it; and one pair of smooth surfaces, for what long
// lists take another way.
constexpr std::array cases{"boxes/12/union", "wall and windows/1/in turn", "wall and windows/10/in turn",
                           "wall and windows/10/as one union", "icospheres/level 3/union"};

} // namespace

// The only function in which valgrind counts, under a name that is written as it is said.
extern "C" [[gnu::noinline]] void orva_counted_call(Mesh& result, const Job& job, const Mesh& first,
                                                    const std::vector<Mesh>& others) {
    result = orva::bench::byLibrary(job.operation, first, others);
}

int main(int argc, char** argv) {
    try {
        if (argc == 1) {
            for (const char* name : cases) std::cout << name << "\n";
            return 0;
        }
        if (argc != 3) throw std::runtime_error("usage: orva_instructions [CASE CALLS]");
        const Job job = orva::bench::jobNamed(argv[1], "");
        const std::vector<Mesh> inputs = job.inputs();
        const std::vector<Mesh> others(inputs.begin() + 1, inputs.end());

        // note: an arena with one place, not only a limit on threads: how the scheduler divides work goes by the
        // number of places, which is otherwise the number of processors.
        tbb::task_arena arena(1);
        arena.execute([&] {
            const Mesh first = orva::bench::byLibrary(job.operation, inputs.front(), others);
            for (int i = std::stoi(argv[2]); i > 0; --i) {
                Mesh again;
                orva_counted_call(again, job, inputs.front(), others);
                if (again.vertices.empty() || again.vertices.size() != first.vertices.size()) {
                    throw std::runtime_error("wrong result");
                }
            }
        });
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "orva_instructions: " << exception.what() << "\n";
        return 1;
    }
}

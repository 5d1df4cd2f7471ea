// Calling from many threads: meshes that nobody changes may be shared, results are each thread's own, without a lock.
// Eight threads cut one block with drills of their own; each gets, bit for bit, what it would have got alone.
#include "box.hpp"
#include "same_bits.hpp"

#include <orva/bspcsg.hpp>

#include <cstdio>
#include <thread>

namespace {

using Mesh = orva::types::Mesh<double>;

constexpr int threadCount = 8;

Mesh drilled(const Mesh& block, int number) {
    const double x = 0.1 + number;
    Mesh result;
    orva::bspcsg::subtractMesh(result, block, box({x, 0.2, -1}, {x + 0.7, 0.8, 2}));
    return result;
}

} // namespace

int main() {
    const Mesh block = box({0, 0, 0}, {threadCount, 1, 1});
    std::vector<Mesh> results(threadCount);
    {
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&block, &result = results[static_cast<std::size_t>(i)], i] {
                result = drilled(block, i); // note: an exception (std::bad_alloc) would have to be caught in here
            });
        }
        for (std::thread& thread : threads) thread.join();
    }

    int right = 0;
    for (int i = 0; i < threadCount; ++i) {
        const Mesh alone = drilled(block, i);
        if (!alone.vertices.empty() && sameBits(results[static_cast<std::size_t>(i)], alone)) ++right;
    }
    std::printf("%d of %d threads got what they would have got alone\n", right, threadCount);
    return right == threadCount ? 0 : 1;
}

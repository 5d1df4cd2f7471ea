// Catching out-of-memory: a call that cannot get what it needs throws std::bad_alloc, and gives back all it took.
// The address space is used up first; the call then fails, and with the space given back it succeeds.
#include "box.hpp"

#include <orva/bspcsg.hpp>

#include <cstdio>
#include <new>
#include <stdexcept>

#include <sys/mman.h>

namespace {

using Mesh = orva::types::Mesh<double>;

// What a host does: the record is left as it was, and whoever asked is told.
bool tryToUnite(Mesh& output, const Mesh& a, const Mesh& b) {
    try {
        orva::bspcsg::unionMesh(output, a, b);
        return true;
    } catch (const std::bad_alloc& exception) {
        std::printf("not enough memory (%s)\n", exception.what());
    } catch (const std::length_error& exception) {
        std::printf("more than can be counted (%s)\n", exception.what());
    }
    return false;
}

// Address space, taken in ever smaller pieces but never used: nobody gets any more until they are given back. (This
// part is for Linux alone; the one above is the same everywhere.)
class AddressSpace {
public:
    AddressSpace() {
        pieces_.reserve(1000);
        for (std::size_t size = std::size_t{1} << 46; size >= smallest; size /= 2) {
            while (void* piece = take(size)) pieces_.push_back({piece, size});
        }
    }
    ~AddressSpace() {
        for (const Piece& piece : pieces_) giveBack(piece);
    }
    AddressSpace(const AddressSpace&) = delete;
    AddressSpace& operator=(const AddressSpace&) = delete;

private:
    struct Piece {
        void* memory;
        std::size_t size;
    };
    static constexpr std::size_t smallest = 65536;

    static void* take(std::size_t size) {
        void* memory = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        return memory == MAP_FAILED ? nullptr : memory;
    }
    static void giveBack(const Piece& piece) { munmap(piece.memory, piece.size); }

    std::vector<Piece> pieces_;
};

// A box of many triangles.
Mesh plates(double x) {
    Mesh all;
    for (int i = 0; i < 2000; ++i) {
        const Mesh plate = box({x, 0, i + 0.0}, {x + 2, 1, i + 0.5});
        all.vertices.insert(all.vertices.end(), plate.vertices.begin(), plate.vertices.end());
    }
    return all;
}

} // namespace

int main() {
    const Mesh a = plates(0);
    const Mesh b = plates(0.7);
    Mesh result;
    (void)tryToUnite(result, box({0, 0, 0}, {1, 1, 1}),
                     box({0.5, 0.5, 0.5}, {2, 2, 2})); // the scheduler sets itself up
    result.vertices.clear();

    bool failed = false;
    {
        const AddressSpace all;
        failed = !tryToUnite(result, a, b);
    }
    const bool nothingWritten = result.vertices.empty();
    const bool succeeded = tryToUnite(result, a, b);
    std::printf("then %zu triangles\n", result.vertices.size() / 3);
    return failed && nothingWritten && succeeded && !result.vertices.empty() ? 0 : 1;
}

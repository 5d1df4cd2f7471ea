// What the library never does, done to its working memory, to show that the sanitizers would see it. Its memory comes
// from mimalloc otherwise, inside which they see nothing (tests/watched_heap).
#include "boolean/batch.hpp"
#include "polygons.hpp"

#include <cstdio>
#include <string>

namespace orva::bspcsg {

namespace {

void plant(const std::string& error) {
    NodePtr tree = buildTree(listOf({level(1), level(0)}));
    const Vertex* vertices = tree->polygons.front().vertices.data();
    double read = 0;
    if (error == "overrun") read = vertices[3].pos.x;
    if (error == "late") {
        tree.reset();
        read = vertices[0].pos.x;
    }
    if (error == "lost") (void)tree->back.release();
    if (error == "shift") {
        const volatile int bits = 40;
        read = 1 << bits;
    }
    std::printf("read %g\n", read);
}

} // namespace

} // namespace orva::bspcsg

int main(int argc, char** argv) {
    orva::bspcsg::plant(argc > 1 ? argv[1] : "");
}

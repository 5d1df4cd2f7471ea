// What the library does to the process that loads it: nothing.
#include "operations.hpp"

#include <cstdlib>
#include <string>

#if defined(__linux__)
#include <dlfcn.h>
#include <sys/resource.h>
#endif

namespace orva::test {

#if defined(__linux__)

TEST(HostProcess, KeepsItsOwnMalloc) {
    (void)unite(unitCube(), unitCube());
    for (const char* name : {"malloc", "free", "realloc", "calloc"}) {
        void* function = dlsym(RTLD_DEFAULT, name);
        Dl_info info{};
        ASSERT_NE(dladdr(function, &info), 0);
        EXPECT_NE(std::string(info.dli_fname).find("libc.so"), std::string::npos) << name << " is " << info.dli_fname;
    }
    Dl_info info{};
    ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "_Znwm"), &info), 0);
    EXPECT_NE(std::string(info.dli_fname).find("libstdc++"), std::string::npos);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "mi_malloc"), nullptr);
}

TEST(HostProcess, OutOfMemoryPassesThroughTheCInterfaceAndTheProcessGoesOn) {
    (void)unite(unitCube(), unitCube()); // the scheduler has set itself up
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
    const rlimit limited{rlim_t{8} << 30, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limited), 0);

    // A count that the array does not have: memory for its polygons is taken before the first vertex is read.
    const Mesh cube = unitCube();
    MeshD lying = viewOf(cube);
    lying.count = 0x7FFFFFFF;
    const MeshD honest = viewOf(cube);
    MeshD output{5, nullptr};
    std::string text;
    try {
        orva_bspcsg_union_mesh(&output, &lying, &honest);
    } catch (const std::bad_alloc& exception) {
        text = exception.what();
    }
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    EXPECT_EQ(text, "bad allocation");
    EXPECT_EQ(output.count, 5);
    EXPECT_FALSE(unite(cube, moved(cube, {5, 5, 5})).vertices.empty());
}

#endif

} // namespace orva::test

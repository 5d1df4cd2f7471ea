// The DLLs of a Windows wheel, loaded the way ctypes loads them: by the whole path of one, which finds the others
// beside itself. Replays the golden results through them. Run in the folder tests/; argument: the whole path of
// orva_acc_guarded.dll.
#include "bits.hpp"
#include "golden.hpp"
#include "guarded.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace orva::test {

namespace {

template <typename Function> Function* find(HMODULE library, const char* name) {
    const FARPROC function = GetProcAddress(library, name);
    if (function == nullptr) throw std::runtime_error(std::string("not exported: ") + name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(function));
}

int run(const char* path) {
    for (const char* name :
         {"Orva_acc.dll", "Orva_tidy.dll", "libtbb12.dll"}) { // or that one would be taken, wherever it is
        if (GetModuleHandleA(name) != nullptr) throw std::runtime_error(std::string("loaded already: ") + name);
    }
    const HMODULE library =
        LoadLibraryExA(path, nullptr, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR);
    if (library == nullptr) throw std::runtime_error("not loaded: error " + std::to_string(GetLastError()));
    const auto call = find<decltype(orva_guarded_call)>(library, "orva_guarded_call");
    const auto release = find<decltype(orva_guarded_free)>(library, "orva_guarded_free");

    const std::vector<GoldenCase> cases = readGoldenCases();
    std::string text(256, '\0');
    for (std::size_t i = 0; i < cases.size(); ++i) {
        std::vector<MeshD> inputs;
        for (const Mesh& input : cases[i].inputs) inputs.push_back(viewOf(input));
        MeshD output{};
        const std::int32_t code =
            call(static_cast<std::int32_t>(cases[i].operation), &output, &inputs.at(0), &inputs.at(1),
                 static_cast<std::int32_t>(inputs.size() - 1), text.data(), text.size());
        const testing::AssertionResult same = sameBits(meshOf(output), cases[i].result);
        release(output.vertices);
        if (code != 0 || !same) {
            std::printf("case %zu: code %d, %s\n", i, code, same.message());
            return 1;
        }
    }

    // And the other library, found beside the first one.
    const auto tidy = find<decltype(orva_guarded_tidy)>(library, "orva_guarded_tidy");
    const auto releaseSolid = find<decltype(orva_guarded_tidy_free)>(library, "orva_guarded_tidy_free");
    const Mesh block = box({0, 0, 0}, {2, 2, 2});
    const Mesh corner = box({1, 1, 1}, {3, 3, 3});
    const std::vector<MeshD> meshes{viewOf(block), viewOf(corner)};
    OrvaSolid solid{};
    OrvaTidyReport report{};
    const OrvaTidyOptions options{0, 0, ORVA_TIDY_MERGE_CUT, 1};
    const std::int32_t status = tidy(OrvaGuardedSubtractInTurn, &solid, &report, meshes.data(), 2, &options);
    const std::int32_t faces = solid.face_count;
    releaseSolid(&solid);
    if (status != ORVA_TIDY_DONE || faces != 24) {
        std::printf("tidied: status %d, %d faces\n", status, faces);
        return 1;
    }

    std::printf("%zu results are the recorded ones\n", cases.size());
    return cases.empty() ? 1 : 0;
}

} // namespace

} // namespace orva::test

int main(int argc, char** argv) {
    try {
        return argc == 2 ? orva::test::run(argv[1]) : 2;
    } catch (const std::exception& exception) {
        std::puts(exception.what());
        return 1;
    }
}

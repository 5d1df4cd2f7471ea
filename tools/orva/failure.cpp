#include "failure.hpp"

#include <cstdio>
#include <new>

namespace orva::program {

namespace {

// note: fprintf, because it needs no memory of ours: there may be none left.
int report(ExitCode code, const char* text) {
    std::fprintf(stderr, "orva: %s\n", text);
    return static_cast<int>(code);
}

} // namespace

int reportException() {
    try {
        throw;
    } catch (const Failure& failure) {
        return report(failure.code, failure.what());
    } catch (const std::bad_alloc&) {
        return report(ExitCode::OutOfMemory, "out of memory; use simpler meshes or a machine with more memory");
    } catch (const std::length_error&) {
        return report(ExitCode::OutOfMemory, "more triangles than can be counted; use simpler meshes");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orva: internal error: %s; please report it\n", error.what());
        return static_cast<int>(ExitCode::Internal);
    } catch (...) {
        return report(ExitCode::Internal, "internal error of an unknown kind; please report it");
    }
}

} // namespace orva::program

#include "failure.hpp"

#include <cstdio>
#include <new>

namespace orva::program {

namespace {

// Calls `say(code, before, text, after)` for the exception that is being handled; the line is the three texts together.
// In three, because putting them together needs memory, and there may be none left.
template <typename Say> auto describe(const Say& say) {
    try {
        throw;
    } catch (const Failure& failure) {
        return say(failure.code, "", failure.what(), "");
    } catch (const std::bad_alloc&) {
        return say(ExitCode::OutOfMemory, "", "out of memory; use simpler meshes or a machine with more memory", "");
    } catch (const std::length_error&) {
        return say(ExitCode::OutOfMemory, "", "more triangles than can be counted; use simpler meshes", "");
    } catch (const std::exception& error) {
        return say(ExitCode::Internal, "internal error: ", error.what(), "; please report it");
    } catch (...) {
        return say(ExitCode::Internal, "", "internal error of an unknown kind; please report it", "");
    }
}

} // namespace

const char* nameOf(ExitCode code) {
    switch (code) {
    case ExitCode::Done:
        return "done";
    case ExitCode::Internal:
        return "internal error";
    case ExitCode::Usage:
        return "usage";
    case ExitCode::CannotRead:
        return "cannot read";
    case ExitCode::Unfit:
        return "unfit";
    case ExitCode::OutOfMemory:
        return "out of memory";
    case ExitCode::CannotWrite:
        return "cannot write";
    case ExitCode::Interrupted:
        return "interrupted";
    }
    return "internal error";
}

int reportException() {
    return describe([](ExitCode code, const char* before, const char* text, const char* after) {
        std::fprintf(stderr, "orva: %s%s%s\n", before, text, after);
        return static_cast<int>(code);
    });
}

Failure describeException() {
    return describe([](ExitCode code, const char* before, const char* text, const char* after) {
        return Failure(code, std::string(before) + text + after);
    });
}

} // namespace orva::program

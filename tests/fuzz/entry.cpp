// libFuzzer's way in. What a target throws ends the program, and libFuzzer keeps the input.
#include "targets.hpp"

#include <new>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        orva::fuzz::ORVA_FUZZ_TARGET(data, size);
    } catch (const std::bad_alloc&) { // too large
    }
    return 0;
}

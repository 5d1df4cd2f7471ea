// What a test counted, for the page that shows it: `name=value` lines in the file that ORVA_FIGURES names.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace orva::test {

/// Whether everything is to be tried instead of a sample: where ORVA_LONG is set.
inline bool longForm() {
    return std::getenv("ORVA_LONG") != nullptr;
}

/// Appends one line, `name.linux=value` or `name.windows=value`; nothing where no file is named.
inline void figure(const std::string& name, std::uint64_t value) {
    const char* path = std::getenv("ORVA_FIGURES");
    if (path == nullptr) return;
    std::FILE* file = std::fopen(path, "a"); // one short write: lines of tests that run side by side stay whole
    if (file == nullptr) return;
#if defined(_WIN32)
    const char* platform = "windows";
#else
    const char* platform = "linux";
#endif
    std::fprintf(file, "%s.%s=%llu\n", name.c_str(), platform, static_cast<unsigned long long>(value));
    std::fclose(file);
}

} // namespace orva::test

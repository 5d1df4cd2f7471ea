/// @file
/// Files that are on their way to their name, and are gone if they do not get there: also when the run is interrupted.
#ifndef ORVA_PROGRAM_FILES_TEMPORARY_HPP
#define ORVA_PROGRAM_FILES_TEMPORARY_HPP

#include <filesystem>
#include <fstream>
#include <mutex>
#include <string_view>
#include <system_error>

namespace orva::program {

class TemporaryFile {
public:
    /// In the folder of the name that it shall take, so that it can take its name in one step. Throws
    /// std::system_error.
    explicit TemporaryFile(const std::filesystem::path& name);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// All of its content. Throws std::system_error.
    void write(std::string_view bytes);

    /// Replaces what has the name, keeping its rights. Throws std::system_error.
    void takeName();

    /// All that are there now, for a run that ends at once: whoever writes one waits from then on, for ever.
    static void removeAll() noexcept;

private:
    void remove() noexcept;

    std::filesystem::path target;
    std::filesystem::path path;
    std::mutex busy; // held while one of the members below is in use
    std::ofstream stream;
};

} // namespace orva::program

#endif

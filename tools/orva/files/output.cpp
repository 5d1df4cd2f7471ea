#include "files/output.hpp"

#include "failure.hpp"
#include "files/name.hpp"
#include "files/temporary.hpp"

#include <cerrno>
#include <cstdio>
#include <optional>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace orva::program {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& name, const std::string& what) {
    throw Failure(ExitCode::CannotWrite, name + ": " + what);
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

void refuseToReplace(const OutputFile& file) {
    std::error_code error;
    if (!file.replace && fs::exists(file.path, error)) fail(file.name, "exists already; use --force to replace it");
}

// One step on the way to the file; an error of the system is told between two texts.
template <typename Step> void attempt(const OutputFile& file, const Step& step, const char* before, const char* after) {
    try {
        step();
    } catch (const std::system_error& error) {
        fail(file.name, before + error.code().message() + after);
    }
}

void writeStdout(std::string_view bytes) {
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    errno = 0;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
    if (std::fflush(stdout) != 0 || !written) {
        fail("-", "writing to stdout failed: " + std::generic_category().message(errno) + "; check where it leads");
    }
}

} // namespace

OutputFile prepareOutput(const std::string& name, bool replace) {
    OutputFile file{name, pathOf(name), replace};
    if (isStream(name)) return file;
    std::error_code error;
    if (fs::is_symlink(file.path, error)) {
        const fs::path behind = fs::canonical(file.path, error);
        if (!error) file.path = behind;
    }

    const fs::path folder = folderOf(file.path);
    if (!fs::is_directory(folder, error)) fail(name, "there is no folder " + nameOf(folder) + "; make it first");
    const fs::file_status status = fs::status(file.path, error);
    if (!fs::exists(status)) return file;
    if (fs::is_directory(status)) fail(name, "this is a folder; name a file in it");
    if (!fs::is_regular_file(status)) fail(name, "this is no ordinary file; choose another name");
    refuseToReplace(file);
    constexpr fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if ((status.permissions() & write) == fs::perms::none) {
        fail(name, "the file there is write-protected; choose another name or make it writable");
    }
    return file;
}

void writeFile(const OutputFile& file, std::string_view bytes) {
    if (isStream(file.name)) return writeStdout(bytes);
    refuseToReplace(file); // again, since the work may have taken long: another run may have been sooner
    std::optional<TemporaryFile> temporary;
    attempt(
        file, [&] { temporary.emplace(file.path); }, "cannot write to its folder: ", "; check its permissions");
    attempt(
        file, [&] { temporary->write(bytes); },
        "writing failed: ", "; nothing was changed, check the space on the disk");
    attempt(
        file, [&] { temporary->takeName(); },
        "cannot be replaced: ", "; close it in other programs or choose another name");
}

} // namespace orva::program

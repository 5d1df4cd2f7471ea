#include "files/input.hpp"

#include "failure.hpp"
#include "files/name.hpp"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace orva::program {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;

std::string readStdin() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY); // or line ends would change, and Ctrl-Z end a binary file
#endif
    std::string bytes;
    errno = 0;
    while (std::feof(stdin) == 0 && std::ferror(stdin) == 0) {
        const std::size_t before = bytes.size();
        bytes.resize(before + pieceSize);
        bytes.resize(before + std::fread(bytes.data() + before, 1, pieceSize, stdin));
    }
    if (std::ferror(stdin) != 0) {
        throw Failure(ExitCode::CannotRead, "-: reading stdin stopped at byte " + std::to_string(bytes.size()) + ": " +
                                                std::generic_category().message(errno) + "; check where it comes from");
    }
    return bytes;
}

} // namespace

std::string readFile(const std::string& name) {
    if (isStream(name)) return readStdin();
    const auto fail = [&name](const std::string& what) { throw Failure(ExitCode::CannotRead, name + ": " + what); };
    const std::filesystem::path path = pathOf(name);

    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) fail("there is no such file; check the name");
    if (std::filesystem::is_directory(status)) fail("this is a folder; name a mesh file in it");

    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) fail("cannot open: " + std::generic_category().message(errno) + "; check its permissions");

    // In pieces: a pipe says nothing of its size, and a file can end before the size that the system gave.
    std::string bytes;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error) bytes.reserve(static_cast<std::size_t>(size) + pieceSize);
    while (stream) {
        const std::size_t before = bytes.size();
        bytes.resize(before + pieceSize);
        stream.read(bytes.data() + before, static_cast<std::streamsize>(pieceSize));
        bytes.resize(before + static_cast<std::size_t>(stream.gcount()));
    }
    if (stream.bad()) fail("reading stopped at byte " + std::to_string(bytes.size()) + "; check the disk");
    return bytes;
}

} // namespace orva::program

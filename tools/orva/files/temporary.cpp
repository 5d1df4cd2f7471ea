#include "files/temporary.hpp"

#include <algorithm>
#include <cerrno>
#include <random>
#include <set>
#include <string>

namespace orva::program {

namespace {

namespace fs = std::filesystem;

// Never destroyed: an interruption may come while the process is ending.
struct Registry {
    std::mutex busy; // taken before that of a file
    std::set<TemporaryFile*> files;
};
Registry& registry() {
    static Registry& all = *new Registry;
    return all;
}

// Short, so that a target with the longest name allowed has one too; random, so that two runs do not meet.
fs::path temporaryBeside(const fs::path& target) {
    std::random_device random;
    return target.parent_path() / (".orva-" + std::to_string(random()) + "-" + std::to_string(random()) + ".tmp");
}

[[noreturn]] void failByErrno() {
    throw std::system_error(errno, std::generic_category());
}

} // namespace

TemporaryFile::TemporaryFile(const fs::path& name) : target(name), path(temporaryBeside(name)) {
    const std::lock_guard lock(registry().busy);
    errno = 0;
    stream.open(path, std::ios::binary);
    if (!stream) failByErrno();
    registry().files.insert(this);
}

TemporaryFile::~TemporaryFile() {
    const std::lock_guard lock(registry().busy);
    registry().files.erase(this);
    remove(); // note: nobody else has the file then, so its own lock is not needed
}

void TemporaryFile::write(std::string_view bytes) {
    constexpr std::size_t pieceSize = std::size_t{1} << 20; // between two pieces, an interruption gets its turn
    while (!bytes.empty()) {
        const std::lock_guard lock(busy);
        const std::string_view piece = bytes.substr(0, std::min(bytes.size(), pieceSize));
        errno = 0;
        if (!stream.write(piece.data(), static_cast<std::streamsize>(piece.size()))) failByErrno();
        bytes.remove_prefix(piece.size());
    }
    const std::lock_guard lock(busy);
    errno = 0;
    stream.close();
    if (!stream) failByErrno();
}

void TemporaryFile::takeName() {
    const std::lock_guard lock(busy);
    std::error_code ignored;
    const fs::file_status old = fs::status(target, ignored);
    if (fs::exists(old)) fs::permissions(path, old.permissions(), ignored); // the reader's rights stay; if not, no harm
    std::error_code error;
    fs::rename(path, target, error);
    if (error) throw std::system_error(error);
    path.clear();
}

void TemporaryFile::remove() noexcept {
    if (path.empty()) return;
    stream.close(); // Windows removes no open file
    std::error_code ignored;
    fs::remove(path, ignored);
}

void TemporaryFile::removeAll() noexcept {
    registry().busy.lock(); // for good: none is made and none given back any more
    for (TemporaryFile* file : registry().files) {
        file->busy.lock();
        file->remove();
    }
}

} // namespace orva::program

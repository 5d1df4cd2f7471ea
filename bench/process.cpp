#include "process.hpp"

#include <malloc.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <ctime>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace orva::bench {

namespace {

// What the child sends: this, and behind it the result.
struct Head {
    bool done = false;
    char words[160]{};
};

bool writeAll(int pipe, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(pipe, bytes, count);
        if (written <= 0) return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

bool readAll(int pipe, char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t received = read(pipe, bytes, count);
        if (received <= 0) return false;
        bytes += received;
        count -= static_cast<std::size_t>(received);
    }
    return true;
}

[[noreturn]] void workAndExit(int pipe, std::size_t size, const std::function<void(void*)>& work) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nothing goes on when the measuring is broken off
    Head head;
    std::vector<char> result(size);
    try {
        work(result.data());
        head.done = true;
    } catch (const std::exception& exception) {
        std::strncpy(head.words, exception.what(), sizeof head.words - 1);
    }
    const bool sent = writeAll(pipe, reinterpret_cast<const char*>(&head), sizeof head) &&
                      writeAll(pipe, result.data(), result.size());
    _exit(sent ? 0 : 1);
}

} // namespace

Clocks::Clocks() : seconds(std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count()) {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    processor = static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double residentBytes() {
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double mostResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

void callApart(double limit, void* result, std::size_t size, const std::function<void(void*)>& work) {
    malloc_trim(0); // what was given back here would hold what the new process takes, and its memory would not be seen
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0) workAndExit(ends[1], size, work);
    close(ends[1]);

    pollfd ready{ends[0], POLLIN, 0};
    const bool inTime = poll(&ready, 1, static_cast<int>(limit * 1000)) > 0;
    Head head;
    const bool received = inTime && readAll(ends[0], reinterpret_cast<char*>(&head), sizeof head) &&
                          readAll(ends[0], static_cast<char*>(result), size);
    if (!inTime) kill(child, SIGKILL);
    close(ends[0]);
    waitpid(child, nullptr, 0);

    if (!inTime) throw std::runtime_error("> " + std::to_string(std::lround(limit)) + " s");
    if (!received) throw std::runtime_error("crashed");
    if (!head.done) throw std::runtime_error(head.words);
}

} // namespace orva::bench

#include "interruption.hpp"

#include "failure.hpp"
#include "files/temporary.hpp"
#include "report/terminal.hpp"

#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#include <signal.h>
#include <system_error>
#include <thread>
#endif

namespace orva::program {

namespace {

// note: on a thread of its own, on both platforms, and no signal handler: it may lock, and take memory.
[[noreturn]] void endInterrupted() {
    TemporaryFile::removeAll();
    leaveTerminal();
    std::fputs("orva: interrupted\n", stderr);
    constexpr int code = static_cast<int>(ExitCode::Interrupted);
#ifdef _WIN32
    TerminateProcess(GetCurrentProcess(), code); // an orderly end would wait for threads in the middle of their work
#endif
    std::_Exit(code);
}

} // namespace

#ifdef _WIN32

void watchForInterruption() {
    SetConsoleCtrlHandler([](DWORD) -> BOOL { endInterrupted(); }, TRUE); // Ctrl-C, Ctrl-Break, a closed window
}

#else

void watchForInterruption() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) sigaddset(&signals, signal); // nohup means it
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr); // every thread made from here on has it from us
    try {
        std::thread([signals] {
            int signal = 0;
            if (sigwait(&signals, &signal) == 0) endInterrupted();
        }).detach();
    } catch (const std::system_error&) { // no thread to be had: then the signals do what they always do
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    }
}

#endif

} // namespace orva::program

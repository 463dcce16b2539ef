// The stop signals during a run (SIGINT, SIGTERM, SIGHUP, SIGQUIT) and
// SIGABRT: the handler only writes the signal number into a pipe; a watcher
// thread reads it and ends the run the ordinary way, restoring the user's
// data first. SIGPIPE is ignored, so that output piped into a reader that
// goes away cannot end a run with the data aside.
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <mutex>
#include <thread>

#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"

namespace jtk {

namespace {

int signalPipe[2] = {-1, -1};
// The process whose run the watcher guards. A child that a test forks
// inherits the handlers but not the watcher: its signals are its own.
std::atomic<pid_t> watchedProcess{0};

constexpr int watchedSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT};

extern "C" void onWatchedSignal(int signalNumber) {
    int savedErrno = errno;
    if (getpid() != watchedProcess) {
        signal(signalNumber, SIG_DFL);
        raise(signalNumber);
        errno = savedErrno;
        return;
    }
    unsigned char byte = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] auto written = write(signalPipe[1], &byte, 1);
    if (signalNumber == SIGABRT) {
        // abort() ends the process as soon as this handler returns: hold this
        // thread while the watcher puts the data back and ends the process.
        // Bounded, since a thread that aborted may hold a lock the restore
        // needs; then the next run recovers the data.
        struct timespec step {0, 50'000'000};
        for (int i = 0; i < 200; ++i) nanosleep(&step, nullptr);
    }
    errno = savedErrno;
}

std::atomic<bool> stopRequested{false};

void watch() {
    while (true) {
        unsigned char byte = 0;
        ssize_t count = read(signalPipe[0], &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count != 1) return;
        int signalNumber = byte;
        stopRequested = true;
        if (jtkDataMovedAside()) {
            jtkPrintLine("Run interrupted by signal " + std::to_string(signalNumber));
            jtkRestoreAndExit(128 + signalNumber);
        }
        // Nothing of the user's is aside: end as the signal would have.
        std::signal(signalNumber, SIG_DFL);
        std::raise(signalNumber);
    }
}

void install(int signalNumber) {
    // Installed whatever the process inherited: a shell starts background
    // jobs with SIGINT and SIGQUIT ignored, and a run must still stop cleanly.
    struct sigaction action {};
    action.sa_handler = onWatchedSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(signalNumber, &action, nullptr);
}

}  // namespace

const std::atomic<bool>& jtkStopRequested() { return stopRequested; }

void jtkWatchTerminationSignals() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (pipe2(signalPipe, O_CLOEXEC) != 0) return;
        watchedProcess = getpid();
        fcntl(signalPipe[1], F_SETFL, O_NONBLOCK);
        // A blocked mask is inherited too: unblock here, before the watcher
        // thread is made, so that it and this thread can take the signals.
        sigset_t stops;
        sigemptyset(&stops);
        for (int signalNumber : watchedSignals) sigaddset(&stops, signalNumber);
        pthread_sigmask(SIG_UNBLOCK, &stops, nullptr);
        std::thread(watch).detach();
        for (int signalNumber : watchedSignals) install(signalNumber);
        std::signal(SIGPIPE, SIG_IGN);
    });
}

}  // namespace jtk

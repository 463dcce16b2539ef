// SIGINT and SIGTERM during a run: the handler only writes the signal number
// into a pipe; a watcher thread reads it and ends the run the ordinary way,
// restoring the user's data first.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <mutex>
#include <thread>

#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"

namespace jtk {

namespace {

int signalPipe[2] = {-1, -1};

extern "C" void onTerminationSignal(int signalNumber) {
    int savedErrno = errno;
    unsigned char byte = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] auto written = write(signalPipe[1], &byte, 1);
    errno = savedErrno;
}

void watch() {
    while (true) {
        unsigned char byte = 0;
        ssize_t count = read(signalPipe[0], &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count != 1) return;
        int signalNumber = byte;
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
    struct sigaction previous {};
    sigaction(signalNumber, nullptr, &previous);
    if (previous.sa_handler == SIG_IGN) return;  // a process started to ignore it keeps ignoring it
    struct sigaction action {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(signalNumber, &action, nullptr);
}

}  // namespace

void jtkWatchTerminationSignals() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (pipe2(signalPipe, O_CLOEXEC) != 0) return;
        fcntl(signalPipe[1], F_SETFL, O_NONBLOCK);
        std::thread(watch).detach();
        install(SIGINT);
        install(SIGTERM);
    });
}

}  // namespace jtk

// Ends of a run that do not come through the run driver: test code or the
// application calling exit() (or returning from main) and an uncaught
// exception. Left alone, exit() would run static destructors under the test
// queue's feet and hang joining it, with the user's data still aside; so the
// guard puts the data back, says why the run ended and ends the process.
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <string>

#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"

namespace jtk {

namespace {

// The process of the run. A child that a test forks inherits the handlers;
// its own exit must not touch the run's data.
std::atomic<pid_t> guardedProcess{0};

bool inTheRunsProcess() { return getpid() == guardedProcess.load(); }

void onExit(int status, void*) {
    if (!inTheRunsProcess()) return;
    jtkPrintLine("Run ended early: the process exited with status " + std::to_string(status));
    jtkRestoreAndExit(status);
}

extern "C" void onQuickExit() {
    if (!inTheRunsProcess()) return;
    jtkPrintLine("Run ended early: the process called quick_exit");
    jtkRestoreAndExit(1);
}

[[noreturn]] void onTerminate() {
    if (!inTheRunsProcess()) std::abort();
    std::string reason = "std::terminate was called";
    if (auto exception = std::current_exception()) {
        try {
            std::rethrow_exception(exception);
        } catch (const std::exception& error) {
            reason = std::string("an uncaught exception: ") + error.what();
        } catch (...) {
            reason = "an uncaught exception";
        }
    }
    jtkPrintLine("Run ended by " + reason);
    jtkRestoreAndExit(128 + 6);  // as abort() would have, by SIGABRT
}

}  // namespace

void jtkGuardProcessExits() {
    guardedProcess = getpid();
    // Handlers run in the reverse order of registration, and the C++ runtime
    // interleaves them with the destructors of statics made before: each call
    // registers again, so that the latest guard runs before any of those.
    on_exit(onExit, nullptr);
    at_quick_exit(onQuickExit);
    std::set_terminate(onTerminate);
}

}  // namespace jtk

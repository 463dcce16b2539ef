// Every end of a run: the final alert and its timer, endTests, fatal stops,
// stop signals, exit() and uncaught exceptions. Whatever ends a run puts the
// user's data back first.
#include "run/JTKRunEnd.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <string>
#include <thread>
#include <unistd.h>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Alert.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/RunLoop.h"
#include "run/JTKConsole.h"
#include "run/JTKProcessEnd.h"
#include "run/JTKRecordingSession.h"
#include "run/JTKRunOptions.h"
#include "run/JTKRunSettings.h"
#include "run/JTKTestEnvironment.h"
#include "run/JTKTestFailure.h"
#include "run/JTKTestResults.h"
#include "run/JTKTestRun.h"
#include "screenshots/JTKFailurePictures.h"

namespace jtk {

// The end of a run: the final alert (with a 4-second timer that ends the run
// while the alert is still up), endTests and the alert timer's timeout.

void jtkCompleteRun() {
    // Common modes: the timer also fires while the alert runs modally.
    static std::shared_ptr<platform::Timer> timer;
    timer = platform::scheduleTimer(4.0, false, [](platform::Timer&) { JTKTestSuite::timeout(); }, true);

    auto application = platform::sharedApplication();
    std::string name = application ? application->name() : std::string();
    auto alert = platform::makeAlert();
    alert->setMessageText("All Tests Completed Succesfully!");
    alert->setInformativeText("Application data has been restored and " + name + " will now terminate.");
    alert->addButtonWithTitle("Quit");
    alert->runModal();
    jtkRestoreAndExit(0);
}

// A test that ends the run on purpose has passed; the tests after it did not run.
void JTKTestSuite::endTests() {
    JTKTestResults::shared().testFinished();
    jtkRestoreAndExit(0);
}

void JTKTestSuite::timeout() { jtkRestoreAndExit(0); }

// Ending the process: the run's settings folder goes, the console is flushed
// and static destructors are skipped, since other threads may still be using
// what they would destroy.

namespace {

// Held by the thread that ends the process and never released: any other end
// that comes later waits here until the process has gone.
std::recursive_mutex& endLock() {
    static std::recursive_mutex lock;
    return lock;
}

}  // namespace

void jtkExitProcess(int status) {
    endLock().lock();
    jtkRemoveRunSettings();
    std::cout.flush();
    std::cerr.flush();
    std::fflush(stdout);
    std::fflush(stderr);
    std::_Exit(status);
}

// Ends the results before the process goes: pictures of a test that is
// still running, the last JUnit file and the summary. A strict run's status
// says whether every test passed, unless something else already ends it
// with a status of its own.
int finishResults(int status, const std::string& why) {
    auto& results = JTKTestResults::shared();
    if (!results.begun()) return status;
    if (auto test = results.runningTest()) {
        for (const auto& picture : jtkTakeFailurePictures(jtkRunOptions().picturesFolder(), *test))
            results.attach(picture);
    }
    results.end(why);
    if (jtkRunOptions().strict && status == 0) return results.strictStatus();
    return status;
}

void jtkEndRun(int status, const std::string& why) {
    endLock().lock();
    status = finishResults(status, why);
    // Data left aside is no success, whatever the run's status was.
    if (!jtkRestoreApplicationSupportData() && status == 0) status = 1;
    jtkExitProcess(status);
}

void jtkRestoreAndExit(int status) { jtkEndRun(status, "the run ended while this test was running"); }

void jtkFatalStop(const std::string& message, const char* location) {
    // Inside a test, a stop fails that test (and, in a strict run, only that test).
    // The test's own call, where known, says more than the framework's label.
    if (JTKTestResults::shared().runningTest()) {
        auto call = JTKCallSite::current();
        jtkFailTest(message, {}, !call.empty() ? call : location ? location : "", 1);
    }
    endLock().lock();
    jtkPrintLine(message);
    std::cout.flush();
    std::fprintf(stderr, "%s: fatal stop\n", location ? location : "JTK");
    std::fflush(stderr);
    jtkRestoreIfMovedAside();
    jtkExitProcess(1);
}

// The stop signals during a run (SIGINT, SIGTERM, SIGHUP, SIGQUIT) and
// SIGABRT: the handler only writes the signal number into a pipe; a watcher
// thread reads it and ends the run the ordinary way, restoring the user's
// data first. SIGPIPE is ignored, so that output piped into a reader that
// goes away cannot end a run with the data aside.

namespace {

int signalPipe[2] = {-1, -1};
// The process whose run the watcher guards. A child that a test forks
// inherits the handlers but not the watcher: its signals are its own.
std::atomic<pid_t> watchedProcess{0};

constexpr int watchedSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};

// Signals that end the process as soon as their handler returns (abort()),
// or that would come again at once (a crash): the handler holds the thread.
bool holdsTheThread(int signalNumber) {
    return signalNumber == SIGABRT || signalNumber == SIGSEGV || signalNumber == SIGBUS || signalNumber == SIGFPE ||
           signalNumber == SIGILL;
}

bool isCrash(int signalNumber) { return holdsTheThread(signalNumber) && signalNumber != SIGABRT; }

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
    if (holdsTheThread(signalNumber)) {
        // Hold this thread while the watcher puts the data back and ends the
        // process. Bounded, since a thread that crashed may hold a lock the
        // restore needs; then the signal ends the process as it would have,
        // and the next run recovers the data.
        struct timespec step {0, 50'000'000};
        for (int i = 0; i < 200; ++i) nanosleep(&step, nullptr);
        if (isCrash(signalNumber)) signal(signalNumber, SIG_DFL);
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
        if (jtkDataMovedAside() || JTKTestResults::shared().begun()) {
            std::string why = isCrash(signalNumber)
                                  ? "the process crashed (signal " + std::to_string(signalNumber) + ", " +
                                        strsignal(signalNumber) + ")"
                                  : "the run was interrupted by signal " + std::to_string(signalNumber);
            if (isCrash(signalNumber)) jtkPrintLine("Run ended by a crash: signal " + std::to_string(signalNumber));
            else jtkPrintLine("Run interrupted by signal " + std::to_string(signalNumber));
            jtkEndRun(128 + signalNumber, why);
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

// Ends of a run that do not come through the run driver: test code or the
// application calling exit() (or returning from main) and an uncaught
// exception. Left alone, exit() would run static destructors under the test
// queue's feet and hang joining it, with the user's data still aside; so the
// guard puts the data back, says why the run ended and ends the process.

namespace {

// The process of the run. A child that a test forks inherits the handlers;
// its own exit must not touch the run's data.
std::atomic<pid_t> guardedProcess{0};

bool inTheRunsProcess() { return getpid() == guardedProcess.load(); }

void onExit(int status, void*) {
    if (!inTheRunsProcess()) return;
    // A recording session ends when the program quits: that is no early end.
    if (jtkRecordingSessionOpen()) jtkEndRecordingSession(status);
    jtkPrintLine("Run ended early: the process exited with status " + std::to_string(status));
    jtkEndRun(status, "the process exited with status " + std::to_string(status) + " during this test");
}

extern "C" void onQuickExit() {
    if (!inTheRunsProcess()) return;
    jtkPrintLine("Run ended early: the process called quick_exit");
    jtkEndRun(1, "the process called quick_exit during this test");
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
    jtkEndRun(128 + 6, reason);  // as abort() would have, by SIGABRT
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

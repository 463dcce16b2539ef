// Ending the process: the console is flushed and static destructors are
// skipped, since other threads may still be using what they would destroy.
#include "run/JTKProcessEnd.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <mutex>

#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"
#include "JTK/JTKTestSuite.h"

namespace jtk {

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
    std::cout.flush();
    std::cerr.flush();
    std::fflush(stdout);
    std::fflush(stderr);
    std::_Exit(status);
}

void jtkRestoreAndExit(int status) {
    endLock().lock();
    JTKTestSuite::restoreApplicationSupportData();
    jtkExitProcess(status);
}

void jtkFatalStop(const std::string& message, const char* location) {
    endLock().lock();
    jtkPrintLine(message);
    std::cout.flush();
    std::fprintf(stderr, "%s: fatal stop\n", location ? location : "JTK");
    std::fflush(stderr);
    jtkRestoreIfMovedAside();
    jtkExitProcess(1);
}

}  // namespace jtk

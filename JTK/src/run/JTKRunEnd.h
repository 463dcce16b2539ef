// The ends of a run. Whatever ends it (the final alert, its timer, endTests,
// a time-out, a fatal stop, a stop signal, exit(), an uncaught exception),
// the user's data is put back
// first, and only the first end goes on to end the process: a second end
// that races it waits for the process to go.
#pragma once

#include <atomic>
#include <string>

namespace jtk {

// Ends the run: a test still running fails with why, the results are
// written and summed up, the user's Application Support data is restored and
// the process ends with status (a strict run's own status when status is 0).
[[noreturn]] void jtkEndRun(int status, const std::string& why);
// jtkEndRun with the reason that the run ended while a test was running.
[[noreturn]] void jtkRestoreAndExit(int status);

// True while this process has moved the user's data aside and not yet put it back.
bool jtkDataMovedAside();
// Puts the user's data back when this process moved it aside; else does nothing.
void jtkRestoreIfMovedAside();

// From the first call on, SIGINT, SIGTERM, SIGHUP, SIGQUIT and SIGABRT restore
// the user's data (when it is aside) and end the process with status
// 128 + signal, whatever dispositions the process inherited; SIGPIPE is
// ignored. Idempotent.
void jtkWatchTerminationSignals();

// Turns true when a stop signal has arrived: long work under the data
// environment's lock (copying the test data) ends early, so that the data is
// put back without waiting for it.
const std::atomic<bool>& jtkStopRequested();

// For a run of the driver: exit(), a return from main, quick_exit() and
// std::terminate restore the user's data, print why the run ended and end the
// process (with exit's status; 134 for terminate). Each call registers the
// exit handlers again, so that they run before the destructors of statics
// made up to then.
void jtkGuardProcessExits();

}  // namespace jtk

// Failing the running test. Every failure inside a test (a check, a lookup
// that finds nothing, a wait that runs out, an action on a view that has
// gone) comes here. In a strict run the failure ends the test and the run
// goes on with the next one: the failure is thrown as a JTKTestFailure on
// the test's thread (from a main-thread step, it travels back with the
// step's result) and the test loop catches it. Otherwise the run ends as
// the failure always ended it: results written, the user's data back, the
// process ended.
#pragma once

#include <source_location>
#include <string>

namespace jtk {

// Not a std::exception, so that test code catching those does not swallow it.
struct JTKTestFailure {
    std::string message;
};

// Records the failure against the running test (printing one line that
// names it and the location, "file:line" or empty) and ends the test or the
// run as above. exitStatus is the status the run ends with outside a strict
// run. When no test is running (the run's start or end) the run ends.
[[noreturn]] void jtkFailTest(const std::string& message, const std::string& detail, const std::string& location,
                              int exitStatus);

// True on the thread that runs a test of a strict run, and on the main
// thread during a step that such a thread waits for.
bool jtkTestFailuresThrow();

// Marks the calling thread (for the life of the object) as one whose
// failures throw. The test loop sets it around each test; the main-thread
// step sets it for the steps of such a thread.
class JTKFailuresThrowScope {
public:
    explicit JTKFailuresThrowScope(bool enabled);
    ~JTKFailuresThrowScope();
    JTKFailuresThrowScope(const JTKFailuresThrowScope&) = delete;
    JTKFailuresThrowScope& operator=(const JTKFailuresThrowScope&) = delete;

private:
    bool previous_;
};

// Where the test called the framework, for failures that have no location
// of their own (a search that finds nothing names the test's line). The
// outermost call on a thread wins: a search inside a search does not move it.
class JTKCallSite {
public:
    explicit JTKCallSite(std::source_location call);
    ~JTKCallSite();
    JTKCallSite(const JTKCallSite&) = delete;
    JTKCallSite& operator=(const JTKCallSite&) = delete;

    // "file:line" of the outermost call on this thread; empty outside any.
    static std::string current();

private:
    bool outermost_;
};

}  // namespace jtk

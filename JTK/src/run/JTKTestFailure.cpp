#include "run/JTKTestFailure.h"

#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"
#include "run/JTKTestResults.h"

namespace jtk {

namespace {

thread_local bool failuresThrow = false;
thread_local const std::source_location* callSite = nullptr;
thread_local std::source_location callSiteStorage;

// One line for the failure and its detail lines indented below it, for a
// failure outside any test.
void printOutsideTest(const std::string& message, const std::string& detail, const std::string& location) {
    jtkPrintLine("JTK: " + message + (location.empty() ? std::string() : " (at " + location + ")"));
    for (size_t start = 0; start < detail.size();) {
        size_t end = detail.find('\n', start);
        if (end == std::string::npos) end = detail.size();
        jtkPrintLine("  " + detail.substr(start, end - start));
        start = end + 1;
    }
}

}  // namespace

bool jtkTestFailuresThrow() { return failuresThrow; }

JTKFailuresThrowScope::JTKFailuresThrowScope(bool enabled) : previous_(failuresThrow) { failuresThrow = enabled; }

JTKFailuresThrowScope::~JTKFailuresThrowScope() { failuresThrow = previous_; }

JTKCallSite::JTKCallSite(std::source_location call) : outermost_(callSite == nullptr) {
    if (!outermost_) return;
    callSiteStorage = call;
    callSite = &callSiteStorage;
}

JTKCallSite::~JTKCallSite() {
    if (outermost_) callSite = nullptr;
}

std::string JTKCallSite::current() {
    if (!callSite) return {};
    return std::string(callSite->file_name()) + ":" + std::to_string(callSite->line());
}

void jtkFailTest(const std::string& message, const std::string& detail, const std::string& givenLocation,
                 int exitStatus) {
    std::string location = givenLocation.empty() ? JTKCallSite::current() : givenLocation;
    bool recorded = JTKTestResults::shared().failRunningTest(message, detail, location);
    if (recorded && failuresThrow) throw JTKTestFailure{message};
    if (!recorded) printOutsideTest(message, detail, location);
    jtkEndRun(exitStatus, message);
}

}  // namespace jtk

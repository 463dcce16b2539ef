#include "run/JTKTestFailure.h"

#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"
#include "run/JTKTestResults.h"

namespace jtk {

namespace {

thread_local bool failuresThrow = false;

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

void jtkFailTest(const std::string& message, const std::string& detail, const std::string& location, int exitStatus) {
    bool recorded = JTKTestResults::shared().failRunningTest(message, detail, location);
    if (recorded && failuresThrow) throw JTKTestFailure{message};
    if (!recorded) printOutsideTest(message, detail, location);
    jtkEndRun(exitStatus, message);
}

}  // namespace jtk

// Waiting for an element to appear, and asking once whether one exists.
#include <chrono>
#include <thread>

#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"
#include "run/JTKRunEnd.h"
#include "elements/JTKSearchPass.h"
#include "JTK/JTKTestSuite.h"

namespace jtk {

JTKElement JTKTestSuite::waitForExistence(const std::string& lookup, std::optional<JTKClass> type, double timeout) {
    using Clock = std::chrono::steady_clock;
    constexpr auto pollInterval = std::chrono::microseconds(100000);
    const auto start = Clock::now();
    // Whether the count of matching elements is 0 is all the wait needs, so
    // each poll stops at the first match.
    bool found = elementExists(lookup, type);
    while (!found) {
        // The elapsed time is tested before each sleep: the first search is
        // made at once, and the last may come up to one sleep after the timeout.
        // Written so that a timeout that is not a number gives up at once
        // instead of waiting for ever.
        double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
        if (!(elapsed <= timeout)) {
            jtkPrintLine("waitForExistence timeout while looking for element: " + lookup);
            // Puts the user's data back (restoreApplicationSupportData), then
            // ends the process; a second end racing this one waits for it.
            jtkRestoreAndExit(0);
        }
        std::this_thread::sleep_for(pollInterval);
        found = elementExists(lookup, type);
    }
    return element(lookup, type);
}

bool JTKTestSuite::elementExists(const std::string& lookup, std::optional<JTKClass> type) {
    return jtkOnMainThread([&] { return !JTKSearchPass::applicationElements().matches(lookup, type, 1).empty(); });
}

}  // namespace jtk

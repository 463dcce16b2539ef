// The test run after start-up: the loop on "GUITestQueue" and the final
// alert on the main thread. Neither returns: the run ends the process.
#pragma once

#include <string>
#include <vector>

#include "run/JTKRunConfiguration.h"

namespace jtk {

// Runs the tests in order with their screenshots, then tear-down, the
// teardown commands, the comparison window and the final alert.
[[noreturn]] void jtkRunTestLoop(const JTKMethodList& methods, const JTKTestOptions& options,
                                 const std::vector<std::string>& teardownCommands);

// The final alert on the main thread; "Quit" or 4 seconds restore and exit 0.
[[noreturn]] void jtkCompleteRun();

// The test the loop is running, for failure messages; empty between tests.
void jtkSetCurrentTest(std::string name);
std::string jtkCurrentTest();

}  // namespace jtk

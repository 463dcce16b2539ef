// The test run after start-up: the loop on "GUITestQueue" and the final
// alert on the main thread. Neither returns: the run ends the process.
#pragma once

#include <string>
#include <vector>

#include "run/JTKRunConfiguration.h"

namespace jtk {

// Runs the chosen tests in order with their screenshots, recording each
// result, then tear-down (methods holds it), the teardown commands, the
// summary, the comparison window and the final alert (not in a CI run).
[[noreturn]] void jtkRunTestLoop(const JTKMethodList& tests, const JTKTestOptions& options,
                                 const JTKMethodList& methods, const std::vector<std::string>& teardownCommands);

// The final alert on the main thread; "Quit" or 4 seconds restore and exit 0.
[[noreturn]] void jtkCompleteRun();

}  // namespace jtk

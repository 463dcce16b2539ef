// Ending the process. Every end flushes the console first and skips static
// destructors, which would otherwise run under other threads' feet.
#pragma once

#include <string>

namespace jtk {

// Removes the run's settings folder (JTKRunSettings.h), flushes standard
// output and error, then ends the process with status.
[[noreturn]] void jtkExitProcess(int status);

// A stop the run cannot continue from: prints the message on its own line,
// names the source location on standard error, restores the user's data and
// ends the process with status 1.
[[noreturn]] void jtkFatalStop(const std::string& message, const char* location);

}  // namespace jtk

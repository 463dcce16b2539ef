// The two halves of a loaded launch: prepared before the program's main
// (JTKLoaderLaunch.cpp) and started once the program's event loop turns
// (JTKLoader.cpp).
#pragma once

#include <string>

namespace jtk::loader {

// True once a test launch has been prepared before main: the framework has
// the launch arguments, the tests library is loaded and the program has a
// settings folder of its own.
bool launchPrepared();

// Ends the process before a run has started: "JTK: <why>; no test ran" on
// standard error, the run's settings folder removed, exit status 2. Nothing
// of the user's has been touched at that point.
[[noreturn]] void refuseLaunch(const std::string& why);

}  // namespace jtk::loader

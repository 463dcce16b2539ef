// Process information every backend shares: the launch arguments and the
// operating system's version text.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "JTK/platform/Process.h"

namespace jtk::services {

// Called by the application's main with its own arguments. Until then (or
// after a call with argc 0) the arguments are read from /proc/self/cmdline.
void setProcessArguments(int argc, char** argv);
// The NUL-separated arguments of a command-line file such as /proc/self/cmdline;
// empty when it cannot be read.
std::vector<std::string> readCommandLine(const std::filesystem::path& file);

// The version text built from the contents of /etc/os-release, /etc/debian_version
// and the kernel release (see the rule in ProcessInfo.cpp).
std::string formatOperatingSystemVersion(const std::string& osRelease, const std::string& debianVersion,
                                         const std::string& kernelRelease);

}  // namespace jtk::services

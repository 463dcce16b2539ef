// Process information, the per-user data folder and the accessibility trust.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace jtk::platform {

std::vector<std::string> processArguments();
// The launch test: true when any argument contains "uxtest" (case-sensitive).
// Shared by every backend (defined by the platform library).
bool argumentsRequestTesting(const std::vector<std::string>& arguments);
int processIdentifier();
// Shaped like "Version 12.8 (Build 6.1.0)".
std::string operatingSystemVersionString();
// The user's application data directory ($XDG_DATA_HOME or ~/.local/share);
// none when it cannot be determined.
std::optional<std::filesystem::path> applicationSupportDirectory();

bool isProcessTrusted();
// With prompt true the platform asks the user for the permission.
bool isProcessTrustedWithOptions(bool prompt);

// One line to the system log (standard error here).
void systemLog(const std::string& message);

}  // namespace jtk::platform

// The application data folder, the standard user defaults and the trust
// that synthesised input needs.
//
// The defaults are the services' property-list file under the user's
// configuration folder ($XDG_CONFIG_HOME/<application name>/defaults.plist):
// GTK has no settings store of an application's own (GSettings needs an
// installed schema), and a test run that gives the program a private
// XDG_CONFIG_HOME keeps them there, away from the person's. A program
// launched for a test run ("uxtest") keeps them in its data folder instead
// (<data folder>/<name>/.jtk-defaults.plist), which the run fills with test
// data and replaces with the person's own at its end: the test defaults it
// loads never reach the person's settings file, and every run starts from
// the same defaults.
#include <cstdlib>

#include "JTK/platform/Process.h"
#include "JTK/platform/UserDefaults.h"
#include "JTK/services/UserDefaults.h"

namespace jtk::platform {

std::optional<std::filesystem::path> applicationSupportDirectory() {
    // $XDG_DATA_HOME, else ~/.local/share, read now (GLib keeps the first
    // answer for the whole process).
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && std::filesystem::path(data).is_absolute())
        return std::filesystem::path(data);
    const char* home = std::getenv("HOME");
    if (!home || !std::filesystem::path(home).is_absolute()) return std::nullopt;
    return std::filesystem::path(home) / ".local" / "share";
}

namespace {

std::optional<std::filesystem::path> defaultsFile() {
    static const bool testing = argumentsRequestTesting(processArguments());
    if (!testing) return services::standardUserDefaultsPath();
    auto data = applicationSupportDirectory();
    if (!data) return std::nullopt;
    return *data / services::userDefaultsApplicationName() / ".jtk-defaults.plist";
}

services::UserDefaults& standardDefaults() {
    // Never destroyed: another thread may read the defaults while the process ends.
    static auto* defaults = new services::UserDefaults(defaultsFile);
    return *defaults;
}

}  // namespace

UserDefaults& standardUserDefaults() { return standardDefaults(); }

void resetStandardUserDefaults() { standardDefaults().reset(); }

// XTest input goes through the X server the process already talks to, past
// no permission: a GTK program needs none to be driven.
bool isProcessTrusted() { return true; }

bool isProcessTrustedWithOptions(bool) { return true; }

}  // namespace jtk::platform

// Where the embedded desktop keeps a user's application data and defaults:
// the XDG data folder, and one property-list file of defaults per application.
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "JTK/platform/Process.h"
#include "JTK/platform/UserDefaults.h"
#include "JTK/services/BackendHooks.h"
#include "JTK/services/UserDefaults.h"

namespace jtk::platform {

namespace {

services::UserDefaults& standardDefaults() {
    // Never destroyed: other threads may use the defaults while the process ends.
    static auto* defaults = [] {
        auto* made = new services::UserDefaults(services::standardUserDefaultsPath);
        // The services reset them when the application's name changes.
        services::installBackendHooks({.resetStandardUserDefaults = [made] { made->reset(); }});
        return made;
    }();
    return *defaults;
}

}  // namespace

std::optional<std::filesystem::path> applicationSupportDirectory() {
    // The XDG base-directory rule: a relative $XDG_DATA_HOME is ignored.
    if (const char* dataHome = std::getenv("XDG_DATA_HOME"); dataHome && *dataHome == '/')
        return std::filesystem::path(dataHome);
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return std::filesystem::path(home) / ".local" / "share";
    return std::nullopt;
}

UserDefaults& standardUserDefaults() { return standardDefaults(); }

void resetStandardUserDefaults() { standardDefaults().reset(); }

}  // namespace jtk::platform

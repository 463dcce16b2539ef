// The standard user defaults: one property-list file per application,
// $XDG_CONFIG_HOME (or ~/.config)/<application name>/defaults.plist. The file
// is read on first use; changes stay in memory until synchronize() writes
// the whole domain.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "JTK/platform/UserDefaults.h"

namespace jtk::services {

// Names the application whose defaults are used (the executable's file name
// until then). Call it before the defaults are first used: a different name
// drops the values read so far, unsynchronized changes included, so that the
// next use reads the new application's file. A name that cannot be a folder
// name ("", ".", "..", or with "/") is refused with a message.
void setUserDefaultsApplicationName(const std::string& name);
std::string userDefaultsApplicationName();
// The file of the standard defaults as the environment names it now; none
// without an absolute $XDG_CONFIG_HOME or $HOME.
std::optional<std::filesystem::path> standardUserDefaultsPath();

class UserDefaults : public platform::UserDefaults {
public:
    // locate names the file at every load and every synchronize.
    explicit UserDefaults(std::function<std::optional<std::filesystem::path>()> locate);

    platform::Value objectForKey(const std::string& key) const override;
    // Setting none removes the key. A value a property list cannot hold is
    // refused with a message and the key keeps its value.
    void setObject(const platform::Value& value, const std::string& key) override;
    void removeObject(const std::string& key) override;
    // Writes the whole domain; false (with a message) when it could not.
    bool synchronize() override;
    // Drops the in-memory state; the next use reads the file again.
    void reset();

private:
    void loadIfNeeded() const;

    std::function<std::optional<std::filesystem::path>()> locate_;
    mutable std::mutex mutex_;
    mutable bool loaded_ = false;
    mutable std::map<std::string, platform::Value> values_;
    // A file that existed but could not be read: kept aside before it is replaced.
    mutable std::optional<std::filesystem::path> unreadableFile_;
};

}  // namespace jtk::services

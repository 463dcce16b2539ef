#include "JTK/services/UserDefaults.h"

#include <cstdlib>

#include "JTK/services/BackendHooks.h"
#include "JTK/services/PropertyList.h"
#include "JTK/platform/Process.h"

namespace jtk::services {

namespace {

struct ApplicationName {
    std::mutex mutex;
    std::string name;  // empty: the executable's file name
};

ApplicationName& applicationName() {
    static auto* name = new ApplicationName;  // never destroyed: used until the process ends
    return *name;
}

std::string executableName() {
    std::error_code code;
    std::string name = std::filesystem::read_symlink("/proc/self/exe", code).filename().string();
    // The kernel marks the link of a replaced executable.
    const std::string deleted = " (deleted)";
    if (name.size() > deleted.size() && name.ends_with(deleted)) name.resize(name.size() - deleted.size());
    return code || name.empty() ? "application" : name;
}

}  // namespace

void setUserDefaultsApplicationName(const std::string& name) {
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos ||
        name.find('\0') != std::string::npos) {
        platform::systemLog("UserDefaults: \"" + name + "\" cannot name an application's defaults folder; keeping \"" +
                            userDefaultsApplicationName() + "\"");
        return;
    }
    auto& current = applicationName();
    {
        std::lock_guard lock(current.mutex);
        if (current.name == name) return;
        current.name = name;
    }
    resetStandardUserDefaults();
}

std::string userDefaultsApplicationName() {
    auto& current = applicationName();
    {
        std::lock_guard lock(current.mutex);
        if (!current.name.empty()) return current.name;
    }
    return executableName();
}

std::optional<std::filesystem::path> standardUserDefaultsPath() {
    std::filesystem::path configHome;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg == '/')
        configHome = xdg;
    else if (const char* home = std::getenv("HOME"); home && *home == '/')
        configHome = std::filesystem::path(home) / ".config";
    else
        return std::nullopt;
    return configHome / userDefaultsApplicationName() / "defaults.plist";
}

UserDefaults::UserDefaults(std::function<std::optional<std::filesystem::path>()> locate) : locate_(std::move(locate)) {}

void UserDefaults::loadIfNeeded() const {
    if (loaded_) return;
    loaded_ = true;
    values_.clear();
    unreadableFile_.reset();
    auto path = locate_();
    std::error_code code;
    if (!path || !std::filesystem::exists(*path, code)) return;
    auto dictionary = platform::readPropertyListDictionary(*path);
    if (!dictionary) {
        unreadableFile_ = *path;
        platform::systemLog("UserDefaults: " + path->string() +
                            " is not a readable property-list dictionary; starting with empty defaults");
        return;
    }
    for (auto& [key, value] : *dictionary) values_[*key.text()] = std::move(value);
}

platform::Value UserDefaults::objectForKey(const std::string& key) const {
    std::lock_guard lock(mutex_);
    loadIfNeeded();
    auto found = values_.find(key);
    return found == values_.end() ? platform::Value() : found->second;
}

void UserDefaults::setObject(const platform::Value& value, const std::string& key) {
    if (value.isNone()) {
        removeObject(key);
        return;
    }
    std::string reason;
    if (!isPropertyListValue(value, &reason)) {
        platform::systemLog("UserDefaults: not storing the value for \"" + key + "\": " + reason);
        return;
    }
    std::lock_guard lock(mutex_);
    loadIfNeeded();
    values_[key] = value;
}

void UserDefaults::removeObject(const std::string& key) {
    std::lock_guard lock(mutex_);
    loadIfNeeded();
    values_.erase(key);
}

bool UserDefaults::synchronize() {
    std::lock_guard lock(mutex_);
    loadIfNeeded();
    auto path = locate_();
    if (!path) {
        platform::systemLog("UserDefaults: no folder for the defaults (neither XDG_CONFIG_HOME nor HOME is set)");
        return false;
    }
    std::error_code code;
    if (unreadableFile_ == path && std::filesystem::exists(*path, code)) {
        // Keep what could not be read instead of overwriting it.
        auto aside = *path;
        aside += ".unreadable";
        std::filesystem::rename(*path, aside, code);
        if (code) {
            platform::systemLog("UserDefaults: cannot move the unreadable " + path->string() + " aside: " +
                                code.message() + "; not writing the defaults");
            return false;
        }
        platform::systemLog("UserDefaults: kept the unreadable defaults file as " + aside.string());
        unreadableFile_.reset();
    }
    platform::ValueDictionary dictionary;
    dictionary.reserve(values_.size());
    for (const auto& [key, value] : values_) dictionary.emplace_back(key, value);
    std::string error;
    if (!writePropertyListDictionary(*path, dictionary, error)) {
        platform::systemLog("UserDefaults: cannot write " + path->string() + ": " + error);
        return false;
    }
    return true;
}

void UserDefaults::reset() {
    std::lock_guard lock(mutex_);
    loaded_ = false;
    values_.clear();
    unreadableFile_.reset();
}

}  // namespace jtk::services

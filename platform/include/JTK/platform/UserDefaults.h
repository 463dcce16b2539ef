// User defaults and property-list files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "JTK/platform/Value.h"

namespace jtk::platform {

class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    virtual Value objectForKey(const std::string& key) const = 0;
    virtual void setObject(const Value& value, const std::string& key) = 0;
    virtual void removeObject(const std::string& key) = 0;
    virtual bool synchronize() = 0;
};

UserDefaults& standardUserDefaults();
// Drops the in-memory state; the next use reads the stored defaults again.
void resetStandardUserDefaults();

// Reads an XML or binary property list whose root is a dictionary with text
// keys; none when the file cannot be read as one.
std::optional<ValueDictionary> readPropertyListDictionary(const std::filesystem::path& path);

}  // namespace jtk::platform

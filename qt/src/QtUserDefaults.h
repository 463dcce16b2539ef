// The standard user defaults over QSettings in its native format, under the
// application's organisation and name, so that the application reads with
// QSettings what a test stores here and the other way round.
//
// The native format keeps texts, byte arrays, dates and dictionaries with
// their kinds, but reads booleans and numbers (alone or in lists) back as
// text after the file is read again. A value stored through this object
// keeps its kind as long as QSettings still holds that value;
// otherwise a stored text that reads as true/false, an integer or a real
// number comes back as that kind.
#pragma once

#include <QSettings>
#include <map>
#include <memory>
#include <mutex>

#include "JTK/platform/UserDefaults.h"

namespace jtk::qt {

class QtUserDefaults : public platform::UserDefaults {
public:
    platform::Value objectForKey(const std::string& key) const override;
    // None removes the key; an object reference (which QSettings cannot
    // hold) is refused with a message.
    void setObject(const platform::Value& value, const std::string& key) override;
    void removeObject(const std::string& key) override;
    bool synchronize() override;
    // Forgets what this object knows; the next use reads the stored settings.
    void reset();

private:
    QSettings& settings() const;

    mutable std::mutex mutex_;
    mutable std::unique_ptr<QSettings> settings_;
    std::map<std::string, platform::Value> stored_;  // kinds of the values stored through here
};

// The kind a text read back from the settings file stands for.
platform::Value valueOfStoredText(const QString& text);

}  // namespace jtk::qt

#include "QtUserDefaults.h"

#include "JTK/platform/Process.h"
#include "QtObjectRuntime.h"

namespace jtk::qt {

namespace {

bool holdsObject(const platform::Value& value) {
    using Kind = platform::Value::Kind;
    if (value.kind() == Kind::object) return true;
    if (const auto* list = value.list())
        for (const auto& item : *list)
            if (holdsObject(item)) return true;
    if (const auto* dictionary = value.dictionary())
        for (const auto& [key, item] : *dictionary)
            if (!key.text() || holdsObject(item)) return true;
    return false;
}

// Lists read back from the file hold texts where numbers were stored.
platform::Value withStoredKinds(const QVariant& variant) {
    if (variant.userType() == QMetaType::QString) return valueOfStoredText(variant.toString());
    if (variant.userType() == QMetaType::QStringList || variant.userType() == QMetaType::QVariantList) {
        platform::ValueList list;
        for (const QVariant& item : variant.toList()) list.push_back(withStoredKinds(item));
        return list;
    }
    return valueFromVariant(variant);
}

}  // namespace

platform::Value valueOfStoredText(const QString& text) {
    if (text == QLatin1String("true")) return true;
    if (text == QLatin1String("false")) return false;
    bool ok = false;
    qlonglong integer = text.toLongLong(&ok);
    if (ok) return static_cast<int64_t>(integer);
    double real = text.toDouble(&ok);
    if (ok) return real;
    return toStdString(text);
}

QSettings& QtUserDefaults::settings() const {
    if (!settings_) settings_ = std::make_unique<QSettings>();  // the application's organisation and name
    return *settings_;
}

platform::Value QtUserDefaults::objectForKey(const std::string& key) const {
    std::lock_guard lock(mutex_);
    QVariant variant = settings().value(toQString(key));
    if (!variant.isValid()) return {};
    auto stored = stored_.find(key);
    if (stored != stored_.end() && variantFromValue(stored->second) == variant) return stored->second;
    return withStoredKinds(variant);
}

void QtUserDefaults::setObject(const platform::Value& value, const std::string& key) {
    if (value.isNone()) {
        removeObject(key);
        return;
    }
    if (holdsObject(value)) {
        platform::systemLog("UserDefaults: not storing the value for \"" + key +
                            "\": the settings hold texts, numbers, dates, data, lists and dictionaries with text keys");
        return;
    }
    std::lock_guard lock(mutex_);
    settings().setValue(toQString(key), variantFromValue(value));
    stored_[key] = value;
}

void QtUserDefaults::removeObject(const std::string& key) {
    std::lock_guard lock(mutex_);
    settings().remove(toQString(key));
    stored_.erase(key);
}

bool QtUserDefaults::synchronize() {
    std::lock_guard lock(mutex_);
    settings().sync();
    if (settings().status() == QSettings::NoError) return true;
    platform::systemLog("UserDefaults: cannot write " + toStdString(settings().fileName()) +
                        (settings().status() == QSettings::AccessError ? ": no access" : ": bad format"));
    return false;
}

void QtUserDefaults::reset() {
    std::lock_guard lock(mutex_);
    settings_.reset();
    stored_.clear();
}

}  // namespace jtk::qt

namespace jtk::platform {

namespace {

qt::QtUserDefaults& standardDefaults() {
    static auto* defaults = new qt::QtUserDefaults;  // never destroyed: used while the process ends
    return *defaults;
}

}  // namespace

UserDefaults& standardUserDefaults() { return standardDefaults(); }

void resetStandardUserDefaults() { standardDefaults().reset(); }

}  // namespace jtk::platform

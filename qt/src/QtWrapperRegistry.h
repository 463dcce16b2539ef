// The one wrapper per Qt object and role: a widget's view, a top-level
// widget's window, a QMenu's menu, a QAction's menu item. The registry owns
// the wrappers (the framework holds them weakly) and drops an object's
// wrappers when Qt destroys the object. Main thread only.
#pragma once

#include <functional>
#include <memory>

#include "JTK/platform/Object.h"

class QObject;

namespace jtk::qt {

// parts: what a widget shows as views of their own (tabs, items), see QtParts.h.
enum class WrapperRole { view, window, menu, menuItem, parts };

class WrapperRegistry {
public:
    // The object's wrapper in that role, made by make on first use.
    static std::shared_ptr<platform::Object> wrapperFor(QObject* object, WrapperRole role,
                                                        const std::function<std::shared_ptr<platform::Object>()>& make);
    // The wrapper if one exists; null otherwise.
    static std::shared_ptr<platform::Object> existingWrapper(const QObject* object, WrapperRole role);
    // Number of Qt objects with wrappers (for tests of the registry's upkeep).
    static size_t objectCount();
};

}  // namespace jtk::qt

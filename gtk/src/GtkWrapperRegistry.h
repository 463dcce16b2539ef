// The one wrapper per GObject and role: a widget's view, a native widget's
// window, and the roles the menus use. The registry owns the wrappers (the
// framework holds them weakly) and drops an object's wrappers when GTK
// disposes of it; each wrapper holds the object through a WidgetHandle that
// the registry empties then, so a wrapper kept alive sees its object gone.
// Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <functional>
#include <memory>

#include "JTK/platform/Object.h"

namespace jtk::gtk {

enum class WrapperRole { view, window, menu, menuItem, other };

// The object a wrapper stands for, null once GTK has disposed of it.
struct WidgetHandle {
    GObject* object = nullptr;
    GtkWidget* widget() const { return object && GTK_IS_WIDGET(object) ? GTK_WIDGET(object) : nullptr; }
};

class WrapperRegistry {
public:
    // The object's wrapper in that role, made by make (given the object's
    // handle) on first use; null for null.
    static std::shared_ptr<platform::Object> wrapperFor(
        GObject* object, WrapperRole role,
        const std::function<std::shared_ptr<platform::Object>(std::shared_ptr<WidgetHandle>)>& make);
    // The wrapper if one exists; null otherwise.
    static std::shared_ptr<platform::Object> existingWrapper(GObject* object, WrapperRole role);
    // Number of objects with wrappers (for tests of the registry's upkeep).
    static size_t objectCount();
};

}  // namespace jtk::gtk

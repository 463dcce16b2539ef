#include "GtkWrappers.h"

#include "GtkViews.h"
#include "GtkWindows.h"
#include "GtkWrapperRegistry.h"
#include "GtkX11.h"

namespace jtk::gtk {

std::shared_ptr<platform::View> viewFor(GtkWidget* widget) {
    auto wrapper = WrapperRegistry::wrapperFor(G_OBJECT(widget), WrapperRole::view, [](auto handle) {
        return std::make_shared<WidgetView>(std::move(handle));
    });
    return std::static_pointer_cast<platform::View>(wrapper);
}

std::shared_ptr<platform::Window> windowFor(GtkWidget* native) {
    if (!native || !(GTK_IS_WINDOW(native) || GTK_IS_NATIVE(native))) return nullptr;
    auto wrapper = WrapperRegistry::wrapperFor(G_OBJECT(native), WrapperRole::window, [](auto handle) {
        return std::make_shared<NativeWindow>(std::move(handle));
    });
    return std::static_pointer_cast<platform::Window>(wrapper);
}

GtkWidget* widgetOf(const platform::View& view) {
    auto* gtkView = dynamic_cast<const WidgetView*>(&view);
    return gtkView ? gtkView->widget() : nullptr;
}

GtkWidget* nativeOf(const platform::Window& window) {
    auto* gtkWindow = dynamic_cast<const NativeWindow*>(&window);
    return gtkWindow ? gtkWindow->native() : nullptr;
}

int64_t windowNumberOf(GtkWidget* native) { return static_cast<int64_t>(xWindowOf(native)); }

}  // namespace jtk::gtk

#include "GtkWindows.h"

#include "GtkObjectRuntime.h"
#include "GtkScreens.h"
#include "GtkViews.h"
#include "GtkWindowOrder.h"
#include "GtkWrappers.h"
#include "GtkX11.h"
#include "JTK/platform/Notifications.h"

namespace jtk::gtk {

namespace {

// The widget a text field stands for when its inner text widget has the
// focus: an entry, a spin button, a search or password entry.
GtkWidget* editableOwnerOf(GtkWidget* focus) {
    GtkWidget* parent = gtk_widget_get_parent(focus);
    if (GTK_IS_TEXT(focus) && parent && GTK_IS_EDITABLE(parent) &&
        gtk_editable_get_delegate(GTK_EDITABLE(parent)) == GTK_EDITABLE(focus))
        return parent;
    return focus;
}

}  // namespace

platform::Rect screenFrameOf(GtkWidget* native) {
    auto position = rootPositionOf(native);
    if (!position) return {};
    auto size = surfaceSize(native);
    return screenRectFromGlobal({position->x, position->y, size.width, size.height});
}

NativeWindow::NativeWindow(std::shared_ptr<WidgetHandle> native)
    : native_(native), frameView_(std::make_shared<FrameView>(native)) {}

std::string NativeWindow::className() const {
    GtkWidget* n = native();
    return n ? gtkClassName(G_OBJECT(n)) : "GtkWindow";
}

bool NativeWindow::respondsToSelector(const std::string& selector) const {
    return Window::respondsToSelector(selector) || gtkRespondsToSelector(native(), selector);
}

platform::Value NativeWindow::performSelector(const std::string& selector, const platform::Value& argument) {
    if (Window::respondsToSelector(selector)) return Window::performSelector(selector, argument);
    return gtkPerformSelector(native(), selector);
}

std::shared_ptr<platform::View> NativeWindow::contentView() const {
    GtkWidget* n = native();
    return n ? viewFor(contentWidgetOf(n)) : nullptr;
}

std::shared_ptr<platform::View> NativeWindow::frameView() const { return native() ? frameView_ : nullptr; }

std::string NativeWindow::title() const { return gtkTitle(native()).value_or(std::string()); }

platform::Rect NativeWindow::frame() const { return screenFrameOf(native()); }

platform::Rect NativeWindow::convertRectToScreen(const platform::Rect& rect) const {
    platform::Rect windowFrame = frame();
    return offsetRect(rect, windowFrame.minX(), windowFrame.minY());
}

void NativeWindow::makeKeyAndOrderFront() {
    GtkWidget* n = native();
    if (!n) return;
    if (GTK_IS_WINDOW(n)) {
        gtk_window_present(GTK_WINDOW(n));
        activateWindow(n);
    } else if (GTK_IS_POPOVER(n)) {
        gtk_popover_popup(GTK_POPOVER(n));
        bringToFront(n);
    }
}

void NativeWindow::close() {
    GtkWidget* n = native();
    if (!n) return;
    // Keeps this wrapper (and so the notification's object) alive when GTK
    // disposes of the window as it closes.
    auto self = shared_from_this();
    platform::defaultNotificationCenter().post(platform::windowWillCloseNotification, self);
    // The front window becomes key when the key window goes (GtkWindowOrder.h).
    if (GTK_IS_POPOVER(n)) gtk_popover_popdown(GTK_POPOVER(n));
    else gtk_widget_set_visible(n, FALSE);
}

bool NativeWindow::isVisible() const {
    GtkWidget* n = native();
    return n && gtk_widget_get_mapped(n);
}

bool NativeWindow::isKeyWindow() const {
    GtkWidget* n = native();
    return n && GTK_IS_WINDOW(n) && gtk_widget_get_mapped(n) && gtk_window_is_active(GTK_WINDOW(n));
}

std::shared_ptr<platform::Object> NativeWindow::firstResponderObject() const {
    GtkWidget* n = native();
    GtkRoot* root = n ? gtk_widget_get_root(n) : nullptr;
    GtkWidget* focus = root ? gtk_root_get_focus(root) : nullptr;
    // A popover's first responder is the focus inside it.
    if (!focus || focus == n || (GTK_WIDGET(root) != n && !gtk_widget_is_ancestor(focus, n))) return nullptr;
    return viewFor(editableOwnerOf(focus));
}

}  // namespace jtk::gtk

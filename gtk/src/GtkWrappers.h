// The platform objects that stand for GTK's widgets. Each GtkWidget met by
// the framework gets one wrapper, kept in a registry keyed by the widget and
// dropped when GTK finalises it: the framework holds wrappers weakly, so an
// element of a destroyed widget finds its view gone. Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <cstdint>
#include <memory>

#include "JTK/platform/View.h"
#include "JTK/platform/Window.h"

namespace jtk::gtk {

// The view of a widget (null for null). A window's child is its content view.
std::shared_ptr<platform::View> viewFor(GtkWidget* widget);
// The window of a native widget: a GtkWindow or an open GtkPopover (null for
// null or any other widget).
std::shared_ptr<platform::Window> windowFor(GtkWidget* native);
// The widget a view stands for; null for a window's frame view, for a view
// of another platform, or when the widget is gone.
GtkWidget* widgetOf(const platform::View& view);
// The native widget (GtkWindow, popover) a window stands for; null for a
// window of another platform or when the widget is gone.
GtkWidget* nativeOf(const platform::Window& window);
// The number events carry for the window of a native widget: its X window;
// 0 when it has no surface.
int64_t windowNumberOf(GtkWidget* native);

}  // namespace jtk::gtk

// The menus' side of the backend that the application object calls: the main
// menu of a window (its menu bar, a GtkPopoverMenuBar or the application's
// menubar model). gtk-menus implements it.
#pragma once

#include <gtk/gtk.h>
#include <memory>

#include "JTK/platform/Menu.h"

namespace jtk::gtk {

// The menu bar of the window as a menu whose items are the bar's menus;
// null when the window (or null) has none.
std::shared_ptr<platform::Menu> mainMenuOf(GtkWidget* window);

}  // namespace jtk::gtk

// Menus over GMenuModel, as GTK 4 shows them: a window's GtkPopoverMenuBar
// is its main menu, a GtkPopoverMenu (a GtkMenuButton's, a context menu) a
// menu of its own. A menu is a model seen through its owner, the bar or the
// outermost popover menu that shows it: the owner's actions are what its
// items activate. Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <memory>

#include "JTK/platform/Menu.h"

namespace jtk::gtk {

// The main menu of a window: its menu bar's; none without a bar.
std::shared_ptr<platform::Menu> mainMenuOf(GtkWidget* window);

// The widget whose actions a menu widget's items activate: the menu bar a
// popover menu belongs to, else the outermost popover menu around it.
GtkWidget* menuOwnerOf(GtkWidget* menuWidget);
// The menu a GtkPopoverMenu or GtkPopoverMenuBar shows; none for others.
std::shared_ptr<platform::Menu> menuShownBy(GtkWidget* menuWidget);

// An item of a menu, found the way a person reads it: the first item with
// this title (mnemonics left out) that activates an action, in the menu or
// its submenus. With its menu.
struct MenuChoice {
    std::shared_ptr<platform::Menu> menu;
    std::shared_ptr<platform::MenuItem> item;
};
MenuChoice findActionItem(GtkWidget* menuWidget, const std::string& title);
// The item of a window's menu bar (or of its submenus) that activates this
// action ("refresh" of "win.refresh" or "app.refresh") with this parameter
// and has a shortcut.
MenuChoice findShortcutItem(GtkWidget* window, const char* actionName, GVariant* parameter);

// True while the framework performs an item, which posts the notification itself.
bool performingMenuItem();

// Installs the observers of menus (begin tracking, a person's choices) and
// of a program's modal windows. Main thread, once GTK is initialised;
// idempotent.
void startMenuObservers();
// Installs the observers of text editing (GtkText.cpp); idempotent.
void startTextObservers();

}  // namespace jtk::gtk

// What a GTK widget can be asked by name through the platform's object
// runtime: its class name (the GType name), its name, its title and a few
// states a test reads. Every wrapper answers through these. Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <optional>
#include <string>

#include "JTK/platform/Value.h"

namespace jtk::gtk {

// The GType name ("GtkButton", an application's "CalcButton"). A type GTK
// keeps to itself (no exported get_type function, such as GtkModelButton)
// answers as its nearest public base type: a test can name only what GTK
// documents.
std::string gtkClassName(GObject* object);
// The text an application gives its widget for a selector ("hbViewName",
// "hbViewValue"), as Qt's dynamic and class properties do: a text the
// widget keeps under that key in its object data (g_object_set_data_full),
// else a readable string property of that name on its class.
std::optional<std::string> gtkApplicationText(GtkWidget* widget, const char* selector);
// The name the framework finds a widget by: the application's own
// (gtkApplicationText), else the buildable id an interface file gave it,
// else its widget name unless that is only its type name.
std::optional<std::string> gtkWidgetName(GtkWidget* widget);
// The text a person reads as the widget's title (a button's label without
// its mnemonic underscore, a window's title); none when it has none.
std::optional<std::string> gtkTitle(GtkWidget* widget);

// The selectors a widget answers besides the application's methods:
// "title", "hbViewName", "isEnabled", "toolTip", "hbViewValue" where the
// application gives one, and "isChecked" for a check button, toggle button
// or switch.
bool gtkRespondsToSelector(GtkWidget* widget, const std::string& selector);
platform::Value gtkPerformSelector(GtkWidget* widget, const std::string& selector);

// "_Save" → "Save", "Fish __ Chips" → "Fish _ Chips".
std::string withoutMnemonics(const std::string& text);

}  // namespace jtk::gtk

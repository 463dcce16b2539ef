// The platform objects that stand for Qt's objects. Each QWidget, QMenu or
// QAction met by the framework gets one wrapper, kept in a registry keyed by
// the Qt object and dropped when Qt destroys it: the framework holds
// wrappers weakly, so an element of a deleted widget finds its view gone,
// and a new widget at a reused address gets a new wrapper. Main thread only.
#pragma once

#include <memory>

#include "JTK/platform/Menu.h"
#include "JTK/platform/View.h"
#include "JTK/platform/Window.h"

class QAction;
class QComboBox;
class QMenu;
class QMenuBar;
class QObject;
class QWidget;

namespace jtk::qt {

// The view of a widget (null for null). A top-level widget is the content
// view of its window.
std::shared_ptr<platform::View> viewFor(QWidget* widget);
// The window of a top-level widget (null for null or a child widget).
std::shared_ptr<platform::Window> windowFor(QWidget* topLevel);
// The widget a view stands for; null for the frame view of a window, for a
// view of another platform, or when the widget is gone.
QWidget* widgetOf(const platform::View& view);
// The menu and menu item of a QMenu and of one of its actions.
std::shared_ptr<platform::Menu> menuFor(QMenu* menu);
std::shared_ptr<platform::MenuItem> menuItemFor(QAction* action);
// The menu a window's menu bar stands for (its items are the bar's menus);
// null for null. A QMenuBar is not a QMenu, so it has a function of its own.
std::shared_ptr<platform::Menu> menuBarFor(QMenuBar* menuBar);

// A combo box's pop-up list as a menu of its entries (null for null), and
// the combo box whose pop-up list a widget is (null for any other widget).
std::shared_ptr<platform::Menu> comboMenuFor(QComboBox* combo);
QComboBox* comboOfPopup(QObject* popup);

}  // namespace jtk::qt

// What the tests of the GTK backend's menus, alerts and text share: the main
// loop turned until something holds, and real input at a view's centre
// through the backend (XTest on the private X server the tests run on). The
// tests run on GTK's main thread.
#pragma once

#include <gtk/gtk.h>

#include <chrono>
#include <functional>
#include <thread>

#include "GtkWrappers.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Screen.h"

namespace gtkmenus {

using namespace std::chrono_literals;
namespace platform = jtk::platform;

// Turns GTK's main loop until the condition holds or the time runs out; the condition at the end.
inline bool turnUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = 3000ms) {
    for (auto end = std::chrono::steady_clock::now() + limit; !condition() && std::chrono::steady_clock::now() < end;)
        if (!g_main_context_iteration(nullptr, FALSE)) std::this_thread::sleep_for(1ms);
    return condition();
}

// Presses and releases the button at a widget's centre, or the key, as a person.
inline void click(GtkWidget* widget) {
    auto view = jtk::gtk::viewFor(widget);
    platform::Rect box = view->window()->convertRectToScreen(view->convertRectToWindow(view->bounds()));
    platform::Point location{box.midX(), platform::screens().front().frame.height() - box.midY()};
    auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
    for (auto type : {platform::EventType::leftMouseDown, platform::EventType::leftMouseUp})
        platform::postEvent(platform::EventTap::hid, *platform::createMouseEvent(source, type, location, platform::MouseButton::left));
    platform::settleInput();
    turnUntil([] { return false; }, 100ms);
}

inline void pressKey(uint16_t keyCode) {
    auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
    for (bool down : {true, false}) platform::postEvent(platform::EventTap::hid, *platform::createKeyboardEvent(source, keyCode, down));
    platform::settleInput();
    turnUntil([] { return false; }, 100ms);
}

// A shown window with this child, active as a window manager would make it.
inline GtkWidget* showWindow(GtkWidget* child, GtkApplication* application = nullptr) {
    GtkWidget* window = application ? gtk_application_window_new(application) : gtk_window_new();
    gtk_window_set_child(GTK_WINDOW(window), child);
    gtk_window_present(GTK_WINDOW(window));
    turnUntil([&] { return gtk_widget_get_mapped(window) && gtk_window_is_active(GTK_WINDOW(window)); });
    return window;
}

// The first mapped widget of this GType name (GTK's own types have no public
// getter) in the tree, whose "text" is the text given, if any.
inline GtkWidget* findMapped(GtkWidget* widget, const char* typeName, const char* text = nullptr) {
    if (!widget || !gtk_widget_get_mapped(widget)) return nullptr;
    if (g_str_equal(G_OBJECT_TYPE_NAME(widget), typeName)) {
        gchar* shown = nullptr;
        if (text) g_object_get(widget, "text", &shown, nullptr);
        bool matches = !text || (shown && g_str_equal(shown, text));
        g_free(shown);
        if (matches) return widget;
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        if (GtkWidget* found = findMapped(child, typeName, text)) return found;
    return nullptr;
}

}  // namespace gtkmenus

// What the tests of the GTK backend's menus, alerts, status item, text and
// interface files share: the main loop turned until something holds, and
// real input at a view's centre through the backend (XTest on the private X
// server the tests run on). The tests run on GTK's main thread.
#pragma once

#include <gtk/gtk.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "JTK/platform/Events.h"
#include "JTK/platform/Screen.h"
#include "JTK/platform/View.h"
#include "JTK/platform/Window.h"

namespace gtkmenus {

using namespace std::chrono_literals;

// Turns GTK's main loop until the condition holds or the time runs out; the condition at the end.
inline bool turnUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = 3000ms) {
    auto end = std::chrono::steady_clock::now() + limit;
    while (!condition() && std::chrono::steady_clock::now() < end) {
        if (!g_main_context_iteration(nullptr, FALSE)) std::this_thread::sleep_for(1ms);
    }
    return condition();
}

inline void turnFor(std::chrono::milliseconds time) {
    turnUntil([] { return false; }, time);
}

// A view's centre as an event location (global, y down from the top of the main screen).
inline jtk::platform::Point eventPointOf(const jtk::platform::View& view) {
    auto window = view.window();
    jtk::platform::Rect onScreen = window->convertRectToScreen(view.convertRectToWindow(view.bounds()));
    double height = jtk::platform::screens().front().frame.height();
    return {onScreen.midX(), height - onScreen.midY()};
}

inline void click(jtk::platform::Point location) {
    auto source = jtk::platform::createEventSource(jtk::platform::EventSourceState::hidSystemState);
    for (auto type : {jtk::platform::EventType::leftMouseDown, jtk::platform::EventType::leftMouseUp}) {
        auto event = jtk::platform::createMouseEvent(source, type, location, jtk::platform::MouseButton::left);
        jtk::platform::postEvent(jtk::platform::EventTap::hid, *event);
    }
    jtk::platform::settleInput();
    turnFor(100ms);
}

inline void pressKey(uint16_t keyCode) {
    auto source = jtk::platform::createEventSource(jtk::platform::EventSourceState::hidSystemState);
    for (bool down : {true, false})
        jtk::platform::postEvent(jtk::platform::EventTap::hid, *jtk::platform::createKeyboardEvent(source, keyCode, down));
    jtk::platform::settleInput();
    turnFor(100ms);
}

// A shown window with this child, made key (X focus) as a window manager would.
inline GtkWidget* showWindow(GtkWidget* child, GtkApplication* application = nullptr) {
    GtkWidget* window = application ? gtk_application_window_new(application) : gtk_window_new();
    gtk_window_set_child(GTK_WINDOW(window), child);
    gtk_window_set_default_size(GTK_WINDOW(window), 320, 200);
    gtk_window_present(GTK_WINDOW(window));
    turnUntil([&] { return gtk_widget_get_mapped(window) && gtk_window_is_active(GTK_WINDOW(window)); });
    return window;
}

// The first mapped descendant of this GType name (GTK's own types have no public getter).
inline GtkWidget* findMapped(GtkWidget* widget, const char* typeName, const std::string& text = {}) {
    if (!widget || !gtk_widget_get_mapped(widget)) return nullptr;
    if (std::string(G_OBJECT_TYPE_NAME(widget)) == typeName) {
        gchar* shown = nullptr;
        if (!text.empty()) g_object_get(widget, "text", &shown, nullptr);
        bool matches = text.empty() || (shown && text == shown);
        g_free(shown);
        if (matches) return widget;
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        if (GtkWidget* found = findMapped(child, typeName, text)) return found;
    return nullptr;
}

}  // namespace gtkmenus

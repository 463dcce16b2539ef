// Running GTK's main loop from a test's own code on the main thread: until
// nothing is pending, or until a window has been laid out and painted (GTK
// lays widgets out on its frame clock, not when they are added).
#pragma once

#include <gtk/gtk.h>

#include <chrono>

namespace gtktest {

inline void drainEvents() {
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
}

// Outside the main loop only (a test's set-up): inside it (work the main
// queue runs) it does nothing, as the test's own steps wait there.
inline void waitForLayout(GtkWidget* widget) {
    GdkFrameClock* clock = gtk_widget_get_frame_clock(widget);
    if (g_main_depth() > 0 || !clock) return;
    bool painted = false;
    gulong handler = g_signal_connect_swapped(clock, "after-paint", G_CALLBACK(+[](bool* flag) { *flag = true; }),
                                              &painted);
    gtk_widget_queue_resize(widget);
    gdk_frame_clock_request_phase(clock, GDK_FRAME_CLOCK_PHASE_LAYOUT);
    guint wake = g_timeout_add(5, +[](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!painted && std::chrono::steady_clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(wake);
    g_signal_handler_disconnect(clock, handler);
    drainEvents();
}

// Runs the loop for a while (for work GTK does on idle or after X events).
inline void runFor(std::chrono::milliseconds duration) {
    auto deadline = std::chrono::steady_clock::now() + duration;
    guint wake = g_timeout_add(5, +[](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (std::chrono::steady_clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(wake);
}

}  // namespace gtktest

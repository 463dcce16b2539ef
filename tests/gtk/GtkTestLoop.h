// Running GTK's main loop from a test's own code on the main thread: until
// nothing is pending, until a window has been laid out and painted (GTK
// lays widgets out on its frame clock, not when they are added), or while a
// body runs on a serial queue as a test run's does.
#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>

#include "JTK/platform/Dispatch.h"

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

// Runs the body on a serial queue while the main loop turns; returns when it
// has finished, and throws when it has not after 60 seconds.
inline void onQueue(const std::function<void()>& body) {
    std::atomic<bool> finished{false};
    auto queue = jtk::platform::makeSerialQueue("GtkTestQueue");
    queue->async([&] {
        body();
        finished = true;
    });
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    // Wakes the loop now and then to look at the flag.
    guint poll = g_timeout_add(5, +[](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (!finished && std::chrono::steady_clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(poll);
    if (!finished) throw std::runtime_error("the body on the queue did not finish within 60 s");
}

}  // namespace gtktest

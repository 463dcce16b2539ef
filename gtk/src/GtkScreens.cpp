#include "GtkScreens.h"

#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include <mutex>
#include <vector>

#include "JTK/platform/Screen.h"

namespace jtk::gtk {

namespace {

struct ScreenList {
    std::mutex mutex;
    std::vector<platform::Rect> globalFrames;  // y down, main screen first
};

ScreenList& screenList() {
    static auto* list = new ScreenList;  // never destroyed: any thread may read it while the process ends
    return *list;
}

platform::Rect geometryOf(GdkMonitor* monitor) {
    GdkRectangle area;
    gdk_monitor_get_geometry(monitor, &area);
    return {double(area.x), double(area.y), double(area.width), double(area.height)};
}

void readMonitors() {
    GdkDisplay* display = gdk_display_get_default();
    if (!display) return;
    std::vector<platform::Rect> frames;
    GdkMonitor* primary = GDK_IS_X11_DISPLAY(display) ? gdk_x11_display_get_primary_monitor(display) : nullptr;
    if (primary) frames.push_back(geometryOf(primary));
    GListModel* monitors = gdk_display_get_monitors(display);
    for (guint i = 0, n = g_list_model_get_n_items(monitors); i < n; ++i) {
        auto* monitor = GDK_MONITOR(g_list_model_get_item(monitors, i));
        if (monitor != primary) frames.push_back(geometryOf(monitor));
        g_object_unref(monitor);
    }
    auto& list = screenList();
    std::lock_guard lock(list.mutex);
    list.globalFrames = std::move(frames);
}

void monitorsChanged(GListModel*, guint, guint, guint, gpointer) { readMonitors(); }

}  // namespace

void refreshScreens() {
    static bool following = false;
    readMonitors();
    GdkDisplay* display = gdk_display_get_default();
    if (following || !display) return;
    following = true;
    g_signal_connect(gdk_display_get_monitors(display), "items-changed", G_CALLBACK(monitorsChanged), nullptr);
}

platform::Size mainScreenSize() {
    auto& list = screenList();
    std::lock_guard lock(list.mutex);
    return list.globalFrames.empty() ? platform::Size{} : list.globalFrames.front().size;
}

platform::Rect screenRectFromGlobal(const platform::Rect& global) {
    return {global.minX(), mainScreenSize().height - global.maxY(), global.width(), global.height()};
}

platform::Point screenPointFromGlobal(platform::Point global) {
    return {global.x, mainScreenSize().height - global.y};
}

}  // namespace jtk::gtk

namespace jtk::platform {

std::vector<Screen> screens() {
    auto& list = gtk::screenList();
    std::vector<platform::Rect> frames;
    {
        std::lock_guard lock(list.mutex);
        frames = list.globalFrames;
    }
    std::vector<Screen> screens;
    for (const auto& frame : frames) screens.push_back({gtk::screenRectFromGlobal(frame)});
    return screens;
}

}  // namespace jtk::platform

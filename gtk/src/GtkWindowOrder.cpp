#include "GtkWindowOrder.h"

#include <algorithm>
#include <unordered_set>

#include "GtkScreens.h"
#include "GtkViews.h"
#include "GtkX11.h"

namespace jtk::gtk {

namespace {

constexpr double cascadeStep = 24;
constexpr const char* frontOrderKey = "jtk-front-order";
constexpr const char* placementKey = "jtk-placement";  // a platform::Point* the program asked for
constexpr const char* placedKey = "jtk-placed";
constexpr const char* noFocusKey = "jtk-takes-no-focus";

uint64_t frontCounter = 0;

uint64_t frontOrderOf(GtkWidget* native) {
    return reinterpret_cast<uintptr_t>(g_object_get_data(G_OBJECT(native), frontOrderKey));
}

// The natives seen mapping, dropped as GTK disposes of them.
std::unordered_set<GtkWidget*>& knownNatives() {
    static auto* natives = new std::unordered_set<GtkWidget*>;
    return *natives;
}

void forgetNative(gpointer, GObject* object) { knownNatives().erase(reinterpret_cast<GtkWidget*>(object)); }

void remember(GtkWidget* native) {
    if (knownNatives().insert(native).second) g_object_weak_ref(G_OBJECT(native), forgetNative, nullptr);
}

bool byFrontOrder(GtkWidget* a, GtkWidget* b) { return frontOrderOf(a) > frontOrderOf(b); }

std::optional<platform::Point> cascadePosition(GtkWidget* window) {
    platform::Point next{0, 0};
    for (GtkWidget* other : orderedWindows()) {
        if (other == window || g_object_get_data(G_OBJECT(other), noFocusKey)) continue;
        if (auto position = rootPositionOf(other)) next = {position->x + cascadeStep, position->y + cascadeStep};
        break;
    }
    auto screen = mainScreenSize();
    auto size = surfaceSize(window);
    if (next.x + size.width > screen.width || next.y + size.height > screen.height) next = {0, 0};
    return next;
}

void centreOverParent(GtkWidget* window) {
    GtkWindow* parent = gtk_window_get_transient_for(GTK_WINDOW(window));
    auto parentPosition = parent ? rootPositionOf(GTK_WIDGET(parent)) : std::nullopt;
    if (!parentPosition) return;
    auto parentSize = surfaceSize(GTK_WIDGET(parent));
    auto size = surfaceSize(window);
    moveSurfaceTo(window, {std::max(0.0, parentPosition->x + (parentSize.width - size.width) / 2),
                           std::max(0.0, parentPosition->y + (parentSize.height - size.height) / 2)});
}

// A window waiting for its first frame, when its surface has its size;
// freed when the handler goes (after the frame, or with the clock).
struct FirstFrame {
    GtkWidget* window;  // a reference of its own
    GdkFrameClock* clock;
    gulong handler = 0;
};

void freeFirstFrame(gpointer data, GClosure*) {
    auto* frame = static_cast<FirstFrame*>(data);
    g_object_unref(frame->window);
    delete frame;
}

// After a GtkWindow's first frame (its size known): placed, raised, focused.
void settleMappedWindow(FirstFrame* frame) {
    auto* window = GTK_WIDGET(g_object_ref(frame->window));
    g_signal_handler_disconnect(frame->clock, frame->handler);  // frees the frame
    if (gtk_widget_get_mapped(window)) {
        // A place the program asked for is taken again: GDK's first resize of
        // a surface moves it back to where GDK last knew it.
        if (auto* wanted = static_cast<platform::Point*>(g_object_get_data(G_OBJECT(window), placementKey)))
            moveSurfaceTo(window, *wanted);
        if (!g_object_get_data(G_OBJECT(window), placedKey)) {
            g_object_set_data(G_OBJECT(window), placedKey, GINT_TO_POINTER(1));
            if (gtk_window_get_transient_for(GTK_WINDOW(window))) centreOverParent(window);
            else if (auto position = cascadePosition(window)) moveSurfaceTo(window, *position);
        }
        if (g_object_get_data(G_OBJECT(window), noFocusKey)) raiseSurface(window, false);
        else activateWindow(window);
    }
    g_object_unref(window);
}

// Every widget's "map": natives are noted as they open, in front.
gboolean nativeMapped(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    GtkWidget* widget = GTK_WIDGET(g_value_get_object(&parameters[0]));
    if (!GTK_IS_NATIVE(widget)) return TRUE;
    remember(widget);
    bringToFront(widget);
    if (GTK_IS_WINDOW(widget)) {
        // A place the program asked for is taken before the window shows.
        if (auto* wanted = static_cast<platform::Point*>(g_object_get_data(G_OBJECT(widget), placementKey))) {
            moveSurfaceTo(widget, *wanted);
            g_object_set_data(G_OBJECT(widget), placedKey, GINT_TO_POINTER(1));
        }
        if (GdkFrameClock* clock = gtk_widget_get_frame_clock(widget)) {
            auto* frame = new FirstFrame{GTK_WIDGET(g_object_ref(widget)), clock};
            frame->handler = g_signal_connect_data(clock, "after-paint", G_CALLBACK(settleMappedWindow), frame,
                                                   freeFirstFrame, G_CONNECT_SWAPPED);
        }
    }
    return TRUE;
}

gboolean activateFrontWindow(gpointer) {
    if (GtkWidget* front = frontVisibleWindow()) activateWindow(front);
    return G_SOURCE_REMOVE;
}

// Every widget's "unmap": when the active window goes (a dialog answered,
// a window the program hides), the front window becomes active, as a window
// manager makes it; without one the focus would go to the root window and
// keys nowhere. Once GTK has finished: it may show another window on the way.
gboolean nativeUnmapped(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    GtkWidget* widget = GTK_WIDGET(g_value_get_object(&parameters[0]));
    if (GTK_IS_WINDOW(widget) && gtk_window_is_active(GTK_WINDOW(widget)))
        g_idle_add_full(G_PRIORITY_DEFAULT, activateFrontWindow, nullptr, nullptr);
    return TRUE;
}

}  // namespace

void startWindowTracking() {
    static bool started = false;
    if (started) return;
    started = true;
    // GtkWidget's signals exist once its class is made.
    g_type_class_unref(g_type_class_ref(GTK_TYPE_WIDGET));
    g_signal_add_emission_hook(g_signal_lookup("map", GTK_TYPE_WIDGET), 0, nativeMapped, nullptr, nullptr);
    g_signal_add_emission_hook(g_signal_lookup("unmap", GTK_TYPE_WIDGET), 0, nativeUnmapped, nullptr, nullptr);
    // Windows mapped before the backend started, in GTK's list order.
    GListModel* toplevels = gtk_window_get_toplevels();
    for (guint i = g_list_model_get_n_items(toplevels); i-- > 0;) {
        auto* window = GTK_WIDGET(g_list_model_get_item(toplevels, i));
        if (gtk_widget_get_mapped(window)) {
            remember(window);
            bringToFront(window);
        }
        g_object_unref(window);
    }
}

std::vector<GtkWidget*> orderedWindows() {
    std::vector<GtkWidget*> windows;
    GListModel* toplevels = gtk_window_get_toplevels();
    for (guint i = 0, n = g_list_model_get_n_items(toplevels); i < n; ++i) {
        auto* window = GTK_WIDGET(g_list_model_get_item(toplevels, i));
        if (gtk_widget_get_mapped(window)) windows.push_back(window);
        g_object_unref(window);  // the list holds it
    }
    std::stable_sort(windows.begin(), windows.end(), byFrontOrder);
    return windows;
}

std::vector<GtkWidget*> openPopups() {
    std::vector<GtkWidget*> popups;
    for (GtkWidget* native : knownNatives())
        if (!GTK_IS_WINDOW(native) && gtk_widget_get_mapped(native)) popups.push_back(native);
    std::sort(popups.begin(), popups.end(), byFrontOrder);
    return popups;
}

std::vector<GtkWidget*> listedNatives() {
    auto natives = openPopups();
    for (GtkWidget* window : orderedWindows()) natives.push_back(window);
    return natives;
}

GtkWidget* frontVisibleWindow() {
    // A window kept from the focus (the status item's) is never the one to activate or cascade from.
    for (GtkWidget* window : orderedWindows())
        if (!g_object_get_data(G_OBJECT(window), noFocusKey)) return window;
    return nullptr;
}

void bringToFront(GtkWidget* native) {
    if (native) g_object_set_data(G_OBJECT(native), frontOrderKey, reinterpret_cast<gpointer>(++frontCounter));
}

void placeWindow(GtkWidget* window, platform::Point topLeft) {
    g_object_set_data_full(G_OBJECT(window), placementKey, new platform::Point(topLeft),
                           [](gpointer point) { delete static_cast<platform::Point*>(point); });
    if (gtk_widget_get_realized(window)) {
        g_object_set_data(G_OBJECT(window), placedKey, GINT_TO_POINTER(1));
        moveSurfaceTo(window, topLeft);
    }
}

void keepFromFocus(GtkWidget* window) { g_object_set_data(G_OBJECT(window), noFocusKey, GINT_TO_POINTER(1)); }

void activateWindow(GtkWidget* window) {
    if (!window) return;
    bringToFront(window);
    raiseSurface(window, gtk_widget_get_mapped(window));
}

}  // namespace jtk::gtk

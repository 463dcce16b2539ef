// The event observer: an emission hook on GdkSurface's "event" signal sees
// every event GDK hands to one of the process's surfaces, before GTK
// handles it (GTK 4 lets no one swallow or change it). Mouse, wheel and key
// events become platform events, with the location on the X root window
// (global, y down) and the click count GTK's click gestures will count.
#include <gtk/gtk.h>

#include <cmath>
#include <memory>
#include <vector>

#include "GtkEventObserver.h"
#include "GtkInput.h"
#include "GtkKeyMapping.h"
#include "GtkX11.h"

namespace jtk::gtk {

namespace {

using platform::EventType;

// A series of presses of one button on one spot, as GtkGestureClick counts
// them: the next press joins it within the double-click time of the last
// press and the double-click distance of the first.
struct ClickSeries {
    bool open = false;
    platform::MouseButton button = platform::MouseButton::left;
    platform::Point start;
    guint32 lastTime = 0;
    int64_t count = 0;
};

struct ObserverState {
    EventObserver observer;
    gulong hook = 0;
    std::shared_ptr<platform::Event> current;
    // Events whose delivery may still be under way; dropped once the main
    // context is back between dispatches.
    std::vector<std::shared_ptr<platform::Event>> retired;
    guint clearSource = 0;
    ClickSeries series;
};

ObserverState& state() {
    static auto* observer = new ObserverState;  // main thread only; never destroyed
    return *observer;
}

platform::Point globalLocation(GdkEvent* event, GdkSurface* surface, GtkWidget* native) {
    double x = 0, y = 0;
    // A wheel event on X11 has no position of its own: the pointer's, then.
    if (!gdk_event_get_position(event, &x, &y) || std::isnan(x) || std::isnan(y)) {
        GdkSeat* seat = gdk_display_get_default_seat(gdk_surface_get_display(surface));
        GdkDevice* pointer = seat ? gdk_seat_get_pointer(seat) : nullptr;
        if (!pointer || !gdk_surface_get_device_position(surface, pointer, &x, &y, nullptr)) x = y = 0;
    }
    // Surface coordinates are X pixels divided by the surface's scale.
    double scale = gdk_surface_get_scale_factor(surface);
    platform::Point origin = rootPositionOf(native).value_or(platform::Point{});
    return {origin.x + x * scale, origin.y + y * scale};
}

int64_t countPress(platform::MouseButton button, platform::Point location, guint32 time) {
    int doubleClickTime = 400, doubleClickDistance = 5;
    g_object_get(gtk_settings_get_default(), "gtk-double-click-time", &doubleClickTime, "gtk-double-click-distance",
                 &doubleClickDistance, nullptr);
    auto& series = state().series;
    bool joins = series.open && series.button == button && time - series.lastTime <= guint32(doubleClickTime) &&
                 std::abs(location.x - series.start.x) < doubleClickDistance &&
                 std::abs(location.y - series.start.y) < doubleClickDistance;
    if (!joins) series = ClickSeries{true, button, location, time, 0};
    series.lastTime = time;
    return ++series.count;
}

bool convertMouse(GdkEvent* event, GdkEventType type, GdkSurface* surface, GtkWidget* native,
                  platform::Event& converted) {
    converted.location = globalLocation(event, surface, native);
    if (type == GDK_MOTION_NOTIFY) {
        bool dragging = gdk_event_get_modifier_state(event) & GDK_BUTTON1_MASK;
        converted.type = dragging ? EventType::leftMouseDragged : EventType::mouseMoved;
        return true;
    }
    guint button = gdk_button_event_get_button(event);
    if (button != GDK_BUTTON_PRIMARY && button != GDK_BUTTON_SECONDARY) return false;
    bool left = button == GDK_BUTTON_PRIMARY, press = type == GDK_BUTTON_PRESS;
    converted.button = left ? platform::MouseButton::left : platform::MouseButton::right;
    converted.type = left ? (press ? EventType::leftMouseDown : EventType::leftMouseUp)
                          : (press ? EventType::rightMouseDown : EventType::rightMouseUp);
    // A release belongs to the press before it.
    converted.clickState = press ? countPress(converted.button, converted.location, gdk_event_get_time(event))
                                 : std::max<int64_t>(state().series.count, 1);
    return true;
}

bool convertScroll(GdkEvent* event, GdkSurface* surface, GtkWidget* native, platform::Event& converted) {
    double dx = 0, dy = 0;
    switch (gdk_scroll_event_get_direction(event)) {
        case GDK_SCROLL_UP:
            converted.scrollDeltaY = 1;
            break;
        case GDK_SCROLL_DOWN:
            converted.scrollDeltaY = -1;
            break;
        case GDK_SCROLL_SMOOTH:
            gdk_scroll_event_get_deltas(event, &dx, &dy);
            if (dy == 0) return false;
            converted.scrollDeltaY = -dy;
            break;
        default:
            return false;  // sideways: the platform's wheel has no such axis
    }
    converted.type = EventType::scrollWheel;
    converted.location = globalLocation(event, surface, native);
    return true;
}

void convertKey(GdkEvent* event, GdkEventType type, platform::Event& converted) {
    guint keyval = gdk_key_event_get_keyval(event);
    bool press = type == GDK_KEY_PRESS;
    if (uint64_t flag = flagOfModifierKeysym(keyval)) {
        // A modifier key changes the flags: the state after it.
        converted.type = EventType::flagsChanged;
        converted.keyCode = platform::noKeyCode;
        converted.flags = press ? converted.flags | flag : converted.flags & ~flag;
        return;
    }
    converted.type = press ? EventType::keyDown : EventType::keyUp;
    // The key is the platform's key of what it types without modifiers.
    guint plain = 0;
    gdk_display_translate_key(gdk_event_get_display(event), gdk_key_event_get_keycode(event), GdkModifierType(0),
                              static_cast<int>(gdk_key_event_get_layout(event)), &plain, nullptr, nullptr, nullptr);
    converted.keyCode = keyCodeForKeysym(plain ? plain : keyval);
    gunichar character = gdk_keyval_to_unicode(keyval);
    bool shortcut = converted.flags & (platform::eventFlags::command | platform::eventFlags::control);
    if (character && !shortcut) {
        char utf8[8] = {};
        g_unichar_to_utf8(character, utf8);
        converted.unicodeText = utf8;
    }
}

std::shared_ptr<platform::Event> convert(GdkEvent* event, GdkSurface* surface, GtkWidget* native) {
    auto converted = std::make_shared<platform::Event>();
    converted->flags = platformFlags(gdk_event_get_modifier_state(event));
    GdkEventType type = gdk_event_get_event_type(event);
    bool known = false;
    switch (type) {
        case GDK_BUTTON_PRESS:
        case GDK_BUTTON_RELEASE:
        case GDK_MOTION_NOTIFY:
            known = convertMouse(event, type, surface, native, *converted);
            break;
        case GDK_SCROLL:
            known = convertScroll(event, surface, native, *converted);
            break;
        case GDK_KEY_PRESS:
        case GDK_KEY_RELEASE:
            convertKey(event, type, *converted);
            known = true;
            break;
        default:
            break;
    }
    return known ? converted : nullptr;
}

gboolean clearCurrent(gpointer) {
    auto& observer = state();
    observer.current.reset();
    observer.retired.clear();
    observer.clearSource = 0;
    return G_SOURCE_REMOVE;
}

gboolean surfaceEventHook(GSignalInvocationHint*, guint count, const GValue* values, gpointer) {
    if (count < 2) return TRUE;
    auto* surface = GDK_SURFACE(g_value_get_object(&values[0]));
    auto* event = static_cast<GdkEvent*>(g_value_get_pointer(&values[1]));
    GtkNative* native = surface ? gtk_native_get_for_surface(surface) : nullptr;
    if (!event || !native) return TRUE;
    auto converted = convert(event, surface, GTK_WIDGET(native));
    if (!converted) return TRUE;
    auto& observer = state();
    if (observer.current) observer.retired.push_back(observer.current);
    observer.current = converted;
    // GTK delivers the event after this hook: the event stays current until
    // the main context is back between dispatches.
    if (!observer.clearSource) observer.clearSource = g_idle_add_full(G_PRIORITY_HIGH, clearCurrent, nullptr, nullptr);
    EventObserver callback = observer.observer;  // it may replace itself
    if (callback) callback(*converted, GTK_WIDGET(native));
    return TRUE;
}

}  // namespace

void installEventHook() {
    auto& observer = state();
    if (observer.hook) return;
    // The signal exists once the class does.
    auto* surfaceClass = g_type_class_ref(GDK_TYPE_SURFACE);
    guint signal = g_signal_lookup("event", GDK_TYPE_SURFACE);
    if (signal) observer.hook = g_signal_add_emission_hook(signal, 0, surfaceEventHook, nullptr, nullptr);
    g_type_class_unref(surfaceClass);
}

void observeEvents(EventObserver observer) { state().observer = std::move(observer); }

const platform::Event* eventBeingDelivered() { return state().current.get(); }

}  // namespace jtk::gtk

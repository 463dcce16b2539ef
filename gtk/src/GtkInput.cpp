// The platform's input over GTK: posted events update the shared HID state
// and go through XTest to the X server, which hands them to GTK as a
// person's; settling waits for them to come back and be handled.
//
// Click counts. GTK's click gestures count a press into the series of the
// press before when it comes within the double-click time (a timeout each
// gesture runs on the main context) and distance. The platform asks for
// them explicitly: a press with click state 1 is a single click, and both
// presses of a double click carry state 2. So a press that opens a click
// (state 1, or the first of a double click) near the last press waits until
// GTK's timeout for that press has run out; the press that closes a double
// click goes at once, and GTK counts it as the second.
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
#include <thread>

#include "GtkEventObserver.h"
#include "GtkInput.h"
#include "GtkKeyTyping.h"
#include "GtkMainQueue.h"
#include "GtkScreens.h"
#include "GtkXTest.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Process.h"
#include "JTK/services/HidState.h"

namespace jtk::gtk {

namespace {

using platform::EventType;
using Clock = std::chrono::steady_clock;

std::atomic<bool> inputStarted{false};
// GTK's settings, read on the main thread at every settle (a test may change them).
std::atomic<int> doubleClickTime{400}, doubleClickDistance{5};

// The last press posted, and when GTK had certainly handled it (the end of
// the first settle after it): its click gesture's timeout started before.
struct PressHistory {
    std::mutex mutex;
    bool any = false;
    unsigned button = 0;
    platform::Point location;
    uint64_t serial = 0;         // of the last press
    uint64_t handledSerial = 0;  // the last press a settle has seen through
    Clock::time_point handledAt;
    bool doubleClickOpen = false;  // the last press opened a double click
};

PressHistory& history() {
    static auto* presses = new PressHistory;
    return *presses;
}

// Runs the main context until it has nothing ready: the events GDK has
// read, and the work they caused right away. Bounded, in case something
// keeps making work ready (an animation's idle).
void drainMainContext() {
    if (GdkDisplay* display = gdk_display_get_default()) gdk_display_sync(display);
    int time = 400, distance = 5;
    g_object_get(gtk_settings_get_default(), "gtk-double-click-time", &time, "gtk-double-click-distance", &distance,
                 nullptr);
    doubleClickTime = time;
    doubleClickDistance = distance;
    auto deadline = Clock::now() + std::chrono::milliseconds(500);
    for (int turn = 0; turn < 10000 && Clock::now() < deadline; ++turn) {
        if (!g_main_context_pending(nullptr)) break;
        g_main_context_iteration(nullptr, FALSE);
    }
}

unsigned xButton(EventType type) {
    return type == EventType::rightMouseDown || type == EventType::rightMouseUp ? 3 : 1;
}

// Waits, when the press would join the series of the last press, until
// GTK's double-click timeout of that press has run.
void waitOutClickSeries(unsigned button, platform::Point location) {
    auto& presses = history();
    bool handled = false;
    {
        std::lock_guard lock(presses.mutex);
        double distance = doubleClickDistance;
        if (!presses.any || presses.button != button || std::abs(presses.location.x - location.x) > distance ||
            std::abs(presses.location.y - location.y) > distance)
            return;
        handled = presses.handledSerial >= presses.serial;
    }
    if (!handled) platform::settleInput();
    Clock::time_point deadline;
    {
        std::lock_guard lock(presses.mutex);
        deadline = presses.handledAt + std::chrono::milliseconds(doubleClickTime + 10);
    }
    if (Clock::now() >= deadline) return;
    if (onMainThread()) {
        while (Clock::now() < deadline) {
            g_main_context_iteration(nullptr, FALSE);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    } else {
        std::this_thread::sleep_until(deadline);
    }
    // The timeout, due now, runs.
    platform::settleInput();
}

void notePress(unsigned button, platform::Point location, int64_t clickState) {
    auto& presses = history();
    bool closesDoubleClick = false;
    {
        std::lock_guard lock(presses.mutex);
        closesDoubleClick = clickState >= 2 && presses.doubleClickOpen;
        presses.doubleClickOpen = clickState >= 2 && !closesDoubleClick;
    }
    if (!closesDoubleClick) waitOutClickSeries(button, location);
    std::lock_guard lock(presses.mutex);
    presses.any = true;
    presses.button = button;
    presses.location = location;
    ++presses.serial;
}

void postMouse(const platform::Event& event) {
    auto& connection = XTestConnection::shared();
    int x = static_cast<int>(std::lround(event.location.x)), y = static_cast<int>(std::lround(event.location.y));
    bool press = event.type == EventType::leftMouseDown || event.type == EventType::rightMouseDown;
    bool release = event.type == EventType::leftMouseUp || event.type == EventType::rightMouseUp;
    if (press) notePress(xButton(event.type), {double(x), double(y)}, event.clickState);
    connection.holdModifiers(event.flags);
    connection.movePointer(x, y);
    if (press || release) connection.button(xButton(event.type), press);
    if (event.type == EventType::scrollWheel && event.scrollDeltaY != 0) {
        // One wheel step per line: button 4 scrolls up, 5 down.
        long steps = std::max(1L, std::lround(std::abs(event.scrollDeltaY)));
        for (long step = 0; step < steps; ++step) {
            connection.button(event.scrollDeltaY > 0 ? 4 : 5, true);
            connection.button(event.scrollDeltaY > 0 ? 4 : 5, false);
        }
    }
    // The event's own modifiers last as long as its button does.
    if (release || event.type == EventType::scrollWheel)
        connection.holdModifiers(services::HidState::shared().modifierFlags());
}

void post(const platform::Event& event) {
    if (!inputStarted) {
        platform::systemLog("GTK input: input has not started; the event is dropped");
        return;
    }
    switch (event.type) {
        case EventType::keyDown:
        case EventType::keyUp:
            postKeyEvent(event);
            break;
        case EventType::flagsChanged:
            XTestConnection::shared().holdModifiers(event.flags);
            break;
        case EventType::null:
            break;
        default:
            postMouse(event);
            break;
    }
}

}  // namespace

void startInput() {
    if (inputStarted) return;
    GdkDisplay* display = gdk_display_get_default();
    if (!display || !GDK_IS_X11_DISPLAY(display)) {
        platform::systemLog("GTK input: the display is not an X11 display; input is not posted");
        return;
    }
    installEventHook();
    if (XTestConnection::shared().open(gdk_display_get_name(display))) inputStarted = true;
}

}  // namespace jtk::gtk

namespace jtk::platform {

void postEvent(EventTap, const Event& event) {
    auto& hid = services::HidState::shared();
    if (isMouseEvent(event.type) || event.type == EventType::scrollWheel) hid.setCursor(event.location);
    if (event.type == EventType::flagsChanged) hid.setModifierFlags(event.flags);
    gtk::post(event);
}

void postEventToPid(int pid, const Event& event) {
    if (pid != processIdentifier()) {
        systemLog("postEventToPid: process " + std::to_string(pid) + " is not this one; the event is dropped");
        return;
    }
    gtk::post(event);
}

bool postKeyStrokesToPid(int pid, const std::vector<KeyStroke>& strokes) {
    if (pid != processIdentifier()) {
        systemLog("postKeyStrokesToPid: process " + std::to_string(pid) + " is not this one; the strokes are dropped");
        return true;
    }
    if (!gtk::inputStarted) {
        systemLog("GTK input: input has not started; the strokes are dropped");
        return true;
    }
    gtk::typeKeyStrokes(strokes);
    return true;
}

void settleInput() {
    if (!gtk::inputStarted) return;
    auto& presses = gtk::history();
    uint64_t serial = 0;
    {
        std::lock_guard lock(presses.mutex);
        serial = presses.serial;
    }
    gtk::XTestConnection::shared().sync();
    dispatchSyncMain(gtk::drainMainContext);
    std::lock_guard lock(presses.mutex);
    if (presses.handledSerial < serial) {
        presses.handledSerial = serial;
        presses.handledAt = gtk::Clock::now();
    }
}

Point mouseLocation() { return gtk::screenPointFromGlobal(services::HidState::shared().cursor()); }

}  // namespace jtk::platform

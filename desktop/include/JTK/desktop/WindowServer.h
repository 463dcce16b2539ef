// The embedded window server: it takes posted events, updates the HID system
// state (the shared cursor and modifier flags, its own mouse buttons) and
// hands a copy of each event to the application's event queue on the main
// run loop.
// Safe to use from any thread. Keeps a log of posted events for tests.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "JTK/platform/Events.h"

namespace jtk::desktop {

class WindowServer {
public:
    enum class Target { hid, pid };

    // One posted event with where it was posted (pid is 0 for the HID tap).
    struct PostedEvent {
        platform::Event event;
        Target target = Target::hid;
        int pid = 0;
    };

    static WindowServer& shared();

    // The HID tap: mouse events move the cursor and set the buttons,
    // flags-changed events set the modifier state; every event reaches the app.
    void postToHid(const platform::Event& event);
    // Events for one process: queued to the application when pid is ours.
    void postToPid(int pid, const platform::Event& event);

    // Cursor in event coordinates (y down from the top of the main screen).
    platform::Point cursorLocation() const;
    void moveCursor(platform::Point eventPoint);
    uint64_t modifierFlags() const;
    bool isButtonDown(platform::MouseButton button) const;

    // Back to a cursor at the origin, no buttons and no modifiers (tests).
    void resetState();

    // Copies of every posted event, oldest first (bounded; the oldest go first).
    static std::vector<PostedEvent> eventLog();
    static void clearEventLog();

    // Conversions between event points (y down) and screen points (y up) on
    // the main screen. They are exact inverses of each other, so reading the
    // cursor and posting at the point read back lands on the same spot.
    static platform::Point screenPointFromEventPoint(platform::Point eventPoint);
    static platform::Point eventPointFromScreenPoint(platform::Point screenPoint);

private:
    WindowServer() = default;
    void record(const platform::Event& event, Target target, int pid);
    static void deliver(const platform::Event& event);

    mutable std::mutex mutex_;
    bool leftDown_ = false;
    bool rightDown_ = false;
    std::vector<PostedEvent> log_;
};

}  // namespace jtk::desktop

// Low-level input events as the window server takes them: event sources with
// the HID system state, mouse and keyboard events whose fields can be changed
// and posted again, posting to the HID tap or to one process, and the cursor.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "JTK/platform/Geometry.h"

namespace jtk::platform {

enum class EventType : uint32_t {
    null = 0,
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    mouseMoved = 5,
    leftMouseDragged = 6,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
    scrollWheel = 22,
};

// Presses, releases, moves and drags of either button (not the wheel).
constexpr bool isMouseEvent(EventType type) {
    switch (type) {
        case EventType::leftMouseDown:
        case EventType::leftMouseUp:
        case EventType::rightMouseDown:
        case EventType::rightMouseUp:
        case EventType::mouseMoved:
        case EventType::leftMouseDragged:
            return true;
        default:
            return false;
    }
}

// Event mask bit of a type, for monitors.
constexpr uint64_t eventMaskBit(EventType type) { return uint64_t{1} << static_cast<uint32_t>(type); }
constexpr uint64_t anyEventMask = ~uint64_t{0};

namespace eventFlags {
inline constexpr uint64_t shift = 0x20000;
inline constexpr uint64_t control = 0x40000;
inline constexpr uint64_t alternate = 0x80000;
inline constexpr uint64_t command = 0x100000;
inline constexpr uint64_t deviceIndependentMask = 0xffff0000;
}  // namespace eventFlags

enum class EventSourceState : int32_t { privateState = -1, combinedSessionState = 0, hidSystemState = 1 };
enum class EventTap : uint32_t { hid = 0, session = 1 };
enum class MouseButton : uint32_t { left = 0, right = 1 };
enum class EventField : uint32_t { mouseEventClickState = 1 };

// The key code of an event that has no key of its own: a modifier change, or
// a keyboard event that only carries the text it types.
inline constexpr uint16_t noKeyCode = 0xFFFF;

struct EventSource {
    EventSourceState state = EventSourceState::hidSystemState;
};

// A mutable event object. Location is global, y growing downwards from the
// top of the main screen. A keyboard event may carry the text it types.
struct Event {
    EventType type = EventType::null;
    Point location;
    MouseButton button = MouseButton::left;
    int64_t clickState = 0;
    uint64_t flags = 0;
    uint16_t keyCode = 0;
    std::string unicodeText;
    int64_t windowNumber = 0;  // set by delivery
    double scrollDeltaY = 0;

    void setIntegerField(EventField field, int64_t value) {
        if (field == EventField::mouseEventClickState) clickState = value;
    }
    int64_t integerField(EventField field) const {
        return field == EventField::mouseEventClickState ? clickState : 0;
    }
};

// The event's location in the coordinates of its window (origin bottom left
// of the window's frame, y up): the window under a press, the press's window
// for drags and releases. Screen coordinates when the event has no window.
// Main thread only.
Point locationInWindow(const Event& event);

// Creation may fail (null), as the platform's may.
std::shared_ptr<EventSource> createEventSource(EventSourceState state);
// A new event starts with the modifier flags the source's state holds now.
std::shared_ptr<Event> createMouseEvent(const std::shared_ptr<EventSource>& source, EventType type, Point location,
                                        MouseButton button);
std::shared_ptr<Event> createKeyboardEvent(const std::shared_ptr<EventSource>& source, uint16_t keyCode, bool keyDown);
// Sets the text a keyboard event types (for characters without a key of their own).
void keyboardEventSetUnicodeString(Event& event, const std::string& text);

// Mouse and flags-changed events posted here move the cursor and set the
// button and modifier state, then reach the application.
void postEvent(EventTap tap, const Event& event);
// Keyboard events posted to one process.
void postEventToPid(int pid, const Event& event);

// One key press and release: a key code with its modifier flags, or
// noKeyCode with the text the stroke types.
struct KeyStroke {
    uint16_t keyCode = noKeyCode;
    uint64_t flags = 0;
    // Empty for a character typed by its key; else the character itself.
    std::string unicodeText;
    bool operator==(const KeyStroke&) const = default;
};
// Types the strokes into one process as one batch, where the backend has a
// faster way than a key event at a time (one that must remap keys for text
// without a key of its own does it once for the whole batch). Returns false,
// having posted nothing, when it has none: the caller posts the strokes one
// by one. Any thread.
bool postKeyStrokesToPid(int pid, const std::vector<KeyStroke>& strokes);

// Returns once the input posted so far has reached the application and the
// main-thread work it caused right away has run. A backend whose input goes
// through a window server (X11) waits for it there; one that delivers on its
// own main queue has nothing to wait for. Any thread.
void settleInput();

uint32_t mainDisplayID();
// Moves the cursor to an event point; posts no event.
void moveCursorToPoint(uint32_t displayID, Point eventPoint);
// Cursor position in screen coordinates (origin bottom left of the main screen, y up).
Point mouseLocation();
// Modifier flags the HID system state holds now.
uint64_t currentModifierFlags();

}  // namespace jtk::platform

// The platform's input events over Qt: the HID state (cursor, buttons,
// modifier flags) under a mutex so that any thread may post, and delivery
// queued on the GUI thread in arrival order, behind the work queued before.
#include <QWidget>
#include <mutex>

#include "JTK/platform/Events.h"
#include "JTK/platform/Process.h"
#include "QtInputDelivery.h"
#include "QtMainQueue.h"
#include "QtScreens.h"
#include "QtWindowOrder.h"

namespace jtk::qt {

namespace {

struct HidState {
    std::mutex mutex;
    platform::Point cursor;  // Qt's global coordinates (event coordinates)
    uint64_t modifierFlags = 0;
};

HidState& hid() {
    static auto* state = new HidState;  // never destroyed: any thread may post while the process ends
    return *state;
}

void updateHidState(const platform::Event& event) {
    auto& state = hid();
    std::lock_guard lock(state.mutex);
    if (platform::isMouseEvent(event.type) || event.type == platform::EventType::scrollWheel)
        state.cursor = event.location;
    if (event.type == platform::EventType::flagsChanged)
        state.modifierFlags = event.flags & platform::eventFlags::deviceIndependentMask;
}

void queueDelivery(const platform::Event& event) {
    enqueueOnMain([event] { deliverEvent(event); });
}

uint64_t sourceFlags(const std::shared_ptr<platform::EventSource>& source) {
    if (source && source->state == platform::EventSourceState::privateState) return 0;
    return platform::currentModifierFlags();
}

}  // namespace

}  // namespace jtk::qt

namespace jtk::platform {

std::shared_ptr<EventSource> createEventSource(EventSourceState state) {
    auto source = std::make_shared<EventSource>();
    source->state = state;
    return source;
}

std::shared_ptr<Event> createMouseEvent(const std::shared_ptr<EventSource>& source, EventType type, Point location,
                                        MouseButton button) {
    auto event = std::make_shared<Event>();
    event->type = type;
    event->location = location;
    event->button = button;
    event->flags = qt::sourceFlags(source);
    if (type != EventType::mouseMoved) event->clickState = 1;
    return event;
}

std::shared_ptr<Event> createKeyboardEvent(const std::shared_ptr<EventSource>& source, uint16_t keyCode, bool keyDown) {
    auto event = std::make_shared<Event>();
    event->type = keyDown ? EventType::keyDown : EventType::keyUp;
    event->keyCode = keyCode;
    event->flags = qt::sourceFlags(source);
    return event;
}

void keyboardEventSetUnicodeString(Event& event, const std::string& text) { event.unicodeText = text; }

void postEvent(EventTap, const Event& event) {
    qt::updateHidState(event);
    qt::queueDelivery(event);
}

void postEventToPid(int pid, const Event& event) {
    if (pid != processIdentifier()) {
        systemLog("postEventToPid: process " + std::to_string(pid) + " is not this one; the event is dropped");
        return;
    }
    qt::queueDelivery(event);
}

uint32_t mainDisplayID() { return 1; }

void moveCursorToPoint(uint32_t, Point eventPoint) {
    auto& state = qt::hid();
    std::lock_guard lock(state.mutex);
    state.cursor = eventPoint;
}

Point mouseLocation() {
    Point cursor;
    {
        auto& state = qt::hid();
        std::lock_guard lock(state.mutex);
        cursor = state.cursor;
    }
    return qt::screenPointFromGlobal(cursor);
}

uint64_t currentModifierFlags() {
    auto& state = qt::hid();
    std::lock_guard lock(state.mutex);
    return state.modifierFlags;
}

Point locationInWindow(const Event& event) {
    bool grabbed = event.type == EventType::leftMouseDragged || event.type == EventType::leftMouseUp ||
                   event.type == EventType::rightMouseUp;
    QWidget* window = grabbed ? qt::pressWindow() : nullptr;
    if (!window) window = qt::topLevelWidgetAt(event.location.x, event.location.y);
    if (!window) return qt::screenPointFromGlobal(event.location);
    QRect frame = window->frameGeometry();
    return {event.location.x - frame.x(), frame.height() - (event.location.y - frame.y())};
}

}  // namespace jtk::platform

// The event factories, one for every backend: what a new event carries does
// not depend on the toolkit that will deliver it.
#include "JTK/platform/Events.h"
#include "JTK/services/HidState.h"

namespace jtk::platform {

namespace {

// A private source starts from no modifiers; the others see the HID state.
uint64_t initialFlags(const std::shared_ptr<EventSource>& source) {
    if (source && source->state == EventSourceState::privateState) return 0;
    return services::HidState::shared().modifierFlags();
}

// A press or release is one click until the poster says it is the second;
// moves and drags count no clicks.
bool countsClicks(EventType type) {
    return type == EventType::leftMouseDown || type == EventType::leftMouseUp || type == EventType::rightMouseDown ||
           type == EventType::rightMouseUp;
}

}  // namespace

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
    event->flags = initialFlags(source);
    event->clickState = countsClicks(type) ? 1 : 0;
    return event;
}

// A keyboard event happens where the cursor is, as the platform's do.
std::shared_ptr<Event> createKeyboardEvent(const std::shared_ptr<EventSource>& source, uint16_t keyCode, bool keyDown) {
    auto event = std::make_shared<Event>();
    event->type = keyDown ? EventType::keyDown : EventType::keyUp;
    event->keyCode = keyCode;
    event->flags = initialFlags(source);
    event->location = services::HidState::shared().cursor();
    return event;
}

void keyboardEventSetUnicodeString(Event& event, const std::string& text) { event.unicodeText = text; }

}  // namespace jtk::platform

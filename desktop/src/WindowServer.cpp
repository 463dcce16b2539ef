#include "JTK/desktop/WindowServer.h"

#include <unistd.h>

#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/Screen.h"

namespace jtk::desktop {

namespace {

// Long test runs post many events; the log keeps the most recent ones.
constexpr size_t maxLoggedEvents = 50000;

double mainScreenHeight() {
    auto all = platform::screens();
    return all.empty() ? 0 : all.front().frame.height();
}

}  // namespace

WindowServer& WindowServer::shared() {
    static WindowServer server;
    return server;
}

void WindowServer::postToHid(const platform::Event& posted) {
    using platform::EventType;
    platform::Event event = posted;
    {
        std::lock_guard lock(mutex_);
        if (platform::isMouseEvent(event.type)) cursor_ = event.location;
        switch (event.type) {
            case EventType::leftMouseDown: leftDown_ = true; break;
            case EventType::leftMouseUp: leftDown_ = false; break;
            case EventType::rightMouseDown: rightDown_ = true; break;
            case EventType::rightMouseUp: rightDown_ = false; break;
            case EventType::flagsChanged: modifierFlags_ = event.flags; break;
            // A wheel scrolls wherever the pointer is.
            case EventType::scrollWheel: event.location = cursor_; break;
            default: break;
        }
        record(event, Target::hid, 0);
    }
    deliver(event);
}

void WindowServer::postToPid(int pid, const platform::Event& event) {
    {
        std::lock_guard lock(mutex_);
        record(event, Target::pid, pid);
    }
    // Only this process has an event queue here; events for others are dropped.
    if (pid == static_cast<int>(::getpid())) deliver(event);
}

void WindowServer::deliver(const platform::Event& event) {
    RunLoop::main().enqueueEvent(std::make_shared<platform::Event>(event));
}

void WindowServer::record(const platform::Event& event, Target target, int pid) {
    if (log_.size() >= maxLoggedEvents) log_.erase(log_.begin(), log_.begin() + maxLoggedEvents / 2);
    log_.push_back(PostedEvent{event, target, pid});
}

platform::Point WindowServer::cursorLocation() const {
    std::lock_guard lock(mutex_);
    return cursor_;
}

void WindowServer::moveCursor(platform::Point eventPoint) {
    std::lock_guard lock(mutex_);
    cursor_ = eventPoint;
}

uint64_t WindowServer::modifierFlags() const {
    std::lock_guard lock(mutex_);
    return modifierFlags_;
}

bool WindowServer::isButtonDown(platform::MouseButton button) const {
    std::lock_guard lock(mutex_);
    return button == platform::MouseButton::left ? leftDown_ : rightDown_;
}

void WindowServer::resetState() {
    std::lock_guard lock(mutex_);
    cursor_ = {};
    modifierFlags_ = 0;
    leftDown_ = rightDown_ = false;
}

std::vector<WindowServer::PostedEvent> WindowServer::eventLog() {
    auto& server = shared();
    std::lock_guard lock(server.mutex_);
    return server.log_;
}

void WindowServer::clearEventLog() {
    auto& server = shared();
    std::lock_guard lock(server.mutex_);
    server.log_.clear();
}

platform::Point WindowServer::screenPointFromEventPoint(platform::Point eventPoint) {
    return {eventPoint.x, mainScreenHeight() - 1 - eventPoint.y};
}

platform::Point WindowServer::eventPointFromScreenPoint(platform::Point screenPoint) {
    return {screenPoint.x, mainScreenHeight() - 1 - screenPoint.y};
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::shared_ptr<EventSource> createEventSource(EventSourceState state) {
    auto source = std::make_shared<EventSource>();
    source->state = state;
    return source;
}

namespace {

// A private source starts from no modifiers; the others see the HID state.
uint64_t initialFlags(const std::shared_ptr<EventSource>& source) {
    if (source && source->state == EventSourceState::privateState) return 0;
    return desktop::WindowServer::shared().modifierFlags();
}

}  // namespace

std::shared_ptr<Event> createMouseEvent(const std::shared_ptr<EventSource>& source, EventType type, Point location,
                                        MouseButton button) {
    auto event = std::make_shared<Event>();
    event->type = type;
    event->location = location;
    event->button = button;
    event->flags = initialFlags(source);
    bool pressOrRelease = type == EventType::leftMouseDown || type == EventType::leftMouseUp ||
                          type == EventType::rightMouseDown || type == EventType::rightMouseUp;
    event->clickState = pressOrRelease ? 1 : 0;
    return event;
}

std::shared_ptr<Event> createKeyboardEvent(const std::shared_ptr<EventSource>& source, uint16_t keyCode, bool keyDown) {
    auto event = std::make_shared<Event>();
    event->type = keyDown ? EventType::keyDown : EventType::keyUp;
    event->keyCode = keyCode;
    event->flags = initialFlags(source);
    event->location = desktop::WindowServer::shared().cursorLocation();
    return event;
}

void keyboardEventSetUnicodeString(Event& event, const std::string& text) { event.unicodeText = text; }

void postEvent(EventTap, const Event& event) { desktop::WindowServer::shared().postToHid(event); }

void postEventToPid(int pid, const Event& event) { desktop::WindowServer::shared().postToPid(pid, event); }

uint32_t mainDisplayID() { return 1; }

void moveCursorToPoint(uint32_t, Point eventPoint) { desktop::WindowServer::shared().moveCursor(eventPoint); }

Point mouseLocation() {
    return desktop::WindowServer::screenPointFromEventPoint(desktop::WindowServer::shared().cursorLocation());
}

uint64_t currentModifierFlags() { return desktop::WindowServer::shared().modifierFlags(); }

}  // namespace jtk::platform

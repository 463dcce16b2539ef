#include "JTK/desktop/WindowServer.h"

#include <unistd.h>

#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/Screen.h"
#include "JTK/services/HidState.h"

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
    auto& hid = services::HidState::shared();
    platform::Event event = posted;
    {
        std::lock_guard lock(mutex_);
        if (platform::isMouseEvent(event.type)) hid.setCursor(event.location);
        switch (event.type) {
            case EventType::leftMouseDown: leftDown_ = true; break;
            case EventType::leftMouseUp: leftDown_ = false; break;
            case EventType::rightMouseDown: rightDown_ = true; break;
            case EventType::rightMouseUp: rightDown_ = false; break;
            case EventType::flagsChanged: hid.setModifierFlags(event.flags); break;
            // A wheel scrolls wherever the pointer is.
            case EventType::scrollWheel: event.location = hid.cursor(); break;
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

platform::Point WindowServer::cursorLocation() const { return services::HidState::shared().cursor(); }

void WindowServer::moveCursor(platform::Point eventPoint) { services::HidState::shared().setCursor(eventPoint); }

uint64_t WindowServer::modifierFlags() const { return services::HidState::shared().modifierFlags(); }

bool WindowServer::isButtonDown(platform::MouseButton button) const {
    std::lock_guard lock(mutex_);
    return button == platform::MouseButton::left ? leftDown_ : rightDown_;
}

void WindowServer::resetState() {
    std::lock_guard lock(mutex_);
    services::HidState::shared().reset();
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

void postEvent(EventTap, const Event& event) { desktop::WindowServer::shared().postToHid(event); }

void postEventToPid(int pid, const Event& event) { desktop::WindowServer::shared().postToPid(pid, event); }

// Events go to the application's own queue in order: no faster batch, and
// nothing to wait for outside the process.
bool postKeyStrokesToPid(int, const std::vector<KeyStroke>&) { return false; }
void settleInput() {}

Point mouseLocation() {
    return desktop::WindowServer::screenPointFromEventPoint(desktop::WindowServer::shared().cursorLocation());
}

}  // namespace jtk::platform

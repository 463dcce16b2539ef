// A person's gestures as window-server events: presses at screen points with
// their click state and flags, keys with the text they type, typed text as
// the framework types it, and a wait until all of them have been handled.
#pragma once

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "input/JTKKeyboard.h"

namespace testsupport {

// Posts a mouse event at a screen point to the HID tap; it keeps the held flags unless flags are given.
inline void postMouseAt(jtk::platform::EventType type, jtk::platform::Point screenPoint, int64_t clickState = 1,
                        std::optional<uint64_t> flags = {}) {
    auto source = jtk::platform::createEventSource(jtk::platform::EventSourceState::hidSystemState);
    auto event = jtk::platform::createMouseEvent(source, type, jtk::desktop::WindowServer::eventPointFromScreenPoint(screenPoint),
                                                 jtk::platform::MouseButton::left);
    event->clickState = clickState;
    if (flags) event->flags = *flags;
    jtk::platform::postEvent(jtk::platform::EventTap::hid, *event);
}
inline void pressAt(jtk::platform::Point screenPoint, int64_t clickState = 1, std::optional<uint64_t> flags = {}) {
    postMouseAt(jtk::platform::EventType::leftMouseDown, screenPoint, clickState, flags);
    postMouseAt(jtk::platform::EventType::leftMouseUp, screenPoint, clickState, flags);
}
// Posts a key press and release to this process; noKeyCode without text posts a change of the held modifiers.
inline void pressKey(uint16_t code, uint64_t flags = 0, const std::string& text = {}) {
    auto source = jtk::platform::createEventSource(jtk::platform::EventSourceState::hidSystemState);
    for (bool down : {true, false}) {
        auto event = jtk::platform::createKeyboardEvent(source, code, down);
        event->flags = flags;
        event->unicodeText = text;
        if (code != jtk::platform::noKeyCode || !text.empty()) {
            jtk::platform::postEventToPid(::getpid(), *event);
        } else if (down) {
            event->type = jtk::platform::EventType::flagsChanged;
            jtk::platform::postEvent(jtk::platform::EventTap::hid, *event);
        }
    }
}
inline void typeCharacters(const std::string& text) {
    for (const auto& character : jtk::jtkCharacters(text)) {
        auto stroke = jtk::jtkKeyStrokeForCharacter(character);
        pressKey(stroke.keyCode, stroke.flags, stroke.unicodeText);
    }
}

// Waits until every event posted so far has been handled, servicing the main
// run loop meanwhile when called on the main thread: a marker key follows the
// events and a monitor swallows it. False when that takes more than 10 seconds.
inline bool settleEvents() {
    constexpr uint16_t markerKey = 0xFFFE;
    std::atomic<bool> seen{false};
    auto application = jtk::desktop::Application::shared();
    auto token = application->addLocalMonitorForEvents(jtk::platform::eventMaskBit(jtk::platform::EventType::keyUp),
                                                       [&](auto event) {
                                                           if (event->keyCode != markerKey) return event;
                                                           seen = true;
                                                           return std::shared_ptr<jtk::platform::Event>{};
                                                       });
    auto source = jtk::platform::createEventSource(jtk::platform::EventSourceState::privateState);
    jtk::platform::postEventToPid(::getpid(), *jtk::platform::createKeyboardEvent(source, markerKey, false));
    for (int i = 0; i < 1000 && !seen; ++i) {
        if (jtk::platform::isMainThread()) jtk::desktop::RunLoop::main().runFor(0.01);
        else std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    application->removeMonitor(token);
    return seen;
}

}  // namespace testsupport

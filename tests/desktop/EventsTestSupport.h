// Helpers for tests that drive the desktop with real posted events: the test
// body runs on a queue (as a test run does) and posts through the window
// server, while the main thread runs the loop that dispatches the events.
#pragma once

#include "tests/support/DesktopFixtures.h"
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include <unistd.h>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

namespace eventstest {

using platform::EventType;
using platform::Point;

// Runs work on the main thread and returns its result (from the test queue).
template <class Work>
auto onMain(Work&& work) {
    using Result = decltype(work());
    if constexpr (std::is_void_v<Result>) {
        platform::dispatchSyncMain([&] { work(); });
    } else {
        Result result{};
        platform::dispatchSyncMain([&] { result = work(); });
        return result;
    }
}

// Waits until every event posted so far has been dispatched: a marker key
// event goes through the queue behind them and a monitor swallows it.
inline void drainEvents() {
    constexpr uint16_t markerKey = 0xFFFE;
    std::atomic<bool> seen{false};
    auto app = desktop::Application::shared();
    auto token = app->addLocalMonitorForEvents(platform::eventMaskBit(EventType::keyUp), [&](auto event) {
        if (event->keyCode != markerKey) return event;
        seen = true;
        return std::shared_ptr<platform::Event>{};
    });
    auto marker = platform::createKeyboardEvent(platform::createEventSource(platform::EventSourceState::privateState),
                                                markerKey, false);
    platform::postEventToPid(::getpid(), *marker);
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!seen && std::chrono::steady_clock::now() < deadline) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    app->removeMonitor(token);
    EXPECT_TRUE(seen.load()) << "posted events were not dispatched";
}

// Polls a condition on the main thread until it holds (or time runs out).
inline bool eventually(const std::function<bool()>& condition, double seconds = 10) {
    auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < deadline) {
        if (onMain([&] { return condition(); })) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

inline Point eventPoint(Point screenPoint) { return desktop::WindowServer::eventPointFromScreenPoint(screenPoint); }

// Posts a mouse event at a screen point to the HID tap; the event keeps the
// flags it started with unless flags are given.
inline void postMouse(EventType type, Point screenPoint, int64_t clickState = 1, std::optional<uint64_t> flags = {}) {
    auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
    auto event = platform::createMouseEvent(source, type, eventPoint(screenPoint), platform::MouseButton::left);
    event->clickState = clickState;
    if (flags) event->flags = *flags;
    platform::postEvent(platform::EventTap::hid, *event);
}

inline void click(Point screenPoint, uint64_t flags = 0) {
    postMouse(EventType::leftMouseDown, screenPoint, 1, flags);
    postMouse(EventType::leftMouseUp, screenPoint, 1, flags);
}

// Posts a key press and release to this process.
inline void typeKey(uint16_t keyCode, uint64_t flags = 0, const std::string& text = {}) {
    auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
    for (bool down : {true, false}) {
        auto event = platform::createKeyboardEvent(source, keyCode, down);
        event->flags = flags;
        if (!text.empty()) platform::keyboardEventSetUnicodeString(*event, text);
        platform::postEventToPid(::getpid(), *event);
    }
}

inline void postFlags(uint64_t flags) {
    auto event = platform::createKeyboardEvent(platform::createEventSource(platform::EventSourceState::hidSystemState),
                                               platform::noKeyCode, true);
    event->type = EventType::flagsChanged;
    event->flags = flags;
    platform::postEvent(platform::EventTap::hid, *event);
}

// The centre of a view on screen (main thread).
inline Point centerOnScreen(const desktop::View& view) {
    auto window = view.desktopWindow();
    auto rect = window->convertRectToScreen(view.convertRectToWindow(view.bounds()));
    return {rect.midX(), rect.midY()};
}

// A fixture with the test thread as main thread and no windows left over.
class EventsTest : public ::testing::Test {
protected:
    void SetUp() override {
        desktop::RunLoop::main().adoptCurrentThreadAsMain();
        desktop::WindowServer::shared().resetState();
        closeAllWindows();
    }
    void TearDown() override {
        testsupport::pumpMainLoop(0.02);
        closeAllWindows();
        desktop::Application::shared()->setMainMenu(nullptr);
        desktop::WindowServer::shared().resetState();
    }
    static void closeAllWindows() { testsupport::closeAllWindows(); }
    static std::shared_ptr<desktop::Window> shownWindow(const platform::Rect& contentRect, const std::string& title = "W") {
        return testsupport::makeWindow(contentRect, title);
    }
};

}  // namespace eventstest

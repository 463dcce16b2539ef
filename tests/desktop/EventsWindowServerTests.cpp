// The window server's HID state: modifier flags, cursor and buttons, as
// events posted from a test queue change them and new events read them.
#include <gtest/gtest.h>

#include <unistd.h>

#include "JTK/desktop/WindowServer.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Screen.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

using desktop::WindowServer;
using platform::EventType;

namespace {

class WindowServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        WindowServer::shared().resetState();
        WindowServer::clearEventLog();
    }
    void TearDown() override {
        // Leave no held modifiers or pressed buttons behind for other tests,
        // and drain what reached the application's queue.
        WindowServer::shared().resetState();
        testsupport::pumpMainLoop(0.05);
    }

    static void postFlags(uint64_t flags) {
        auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
        auto event = platform::createKeyboardEvent(source, platform::noKeyCode, true);
        event->flags = flags;
        event->type = EventType::flagsChanged;
        platform::postEvent(platform::EventTap::hid, *event);
    }

    static double mainScreenHeight() { return platform::screens().at(0).frame.height(); }
};

TEST_F(WindowServerTest, AFlagsChangedEventSetsTheModifiersThatNewEventsStartWith) {
    using namespace platform::eventFlags;
    testsupport::runOnTestQueue([&] {
        postFlags(command | shift);
        EXPECT_EQ(platform::currentModifierFlags(), command | shift);

        auto hid = platform::createEventSource(platform::EventSourceState::hidSystemState);
        auto press = platform::createMouseEvent(hid, EventType::leftMouseDown, {10, 10}, platform::MouseButton::left);
        ASSERT_TRUE(press);
        EXPECT_EQ(press->flags, command | shift);
        EXPECT_EQ(press->clickState, 1);
        auto key = platform::createKeyboardEvent(hid, 0, true);
        EXPECT_EQ(key->flags, command | shift);
        // A private source does not see the HID state.
        auto privateSource = platform::createEventSource(platform::EventSourceState::privateState);
        EXPECT_EQ(platform::createKeyboardEvent(privateSource, 0, true)->flags, 0u);

        postFlags(0);
        EXPECT_EQ(platform::createMouseEvent(hid, EventType::leftMouseDown, {}, platform::MouseButton::left)->flags, 0u);
    });
}

TEST_F(WindowServerTest, PostedMouseEventsMoveTheCursorAndSetTheButton) {
    testsupport::runOnTestQueue([&] {
        auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
        auto event = platform::createMouseEvent(source, EventType::leftMouseDown, {100, 200}, platform::MouseButton::left);
        platform::postEvent(platform::EventTap::hid, *event);
        EXPECT_TRUE(WindowServer::shared().isButtonDown(platform::MouseButton::left));
        EXPECT_EQ(WindowServer::shared().cursorLocation(), (platform::Point{100, 200}));
        // Screen coordinates grow upwards from the bottom of the main screen.
        EXPECT_EQ(platform::mouseLocation(), (platform::Point{100, mainScreenHeight() - 1 - 200}));

        event->type = EventType::leftMouseDragged;
        event->location = {120, 230};
        platform::postEvent(platform::EventTap::hid, *event);
        event->type = EventType::leftMouseUp;
        platform::postEvent(platform::EventTap::hid, *event);
        EXPECT_FALSE(WindowServer::shared().isButtonDown(platform::MouseButton::left));
        EXPECT_EQ(WindowServer::shared().cursorLocation(), (platform::Point{120, 230}));
    });
    auto log = WindowServer::eventLog();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[0].event.type, EventType::leftMouseDown);
    EXPECT_EQ(log[1].event.type, EventType::leftMouseDragged);
    EXPECT_EQ(log[2].event.location, (platform::Point{120, 230}));
    EXPECT_EQ(log[2].target, WindowServer::Target::hid);
}

TEST_F(WindowServerTest, MovingTheCursorPostsNoEventAndReadsBackAtTheSamePoint) {
    testsupport::runOnTestQueue([&] {
        platform::moveCursorToPoint(platform::mainDisplayID(), {5, 7});
        auto screenPoint = platform::mouseLocation();
        EXPECT_EQ(screenPoint, (platform::Point{5, mainScreenHeight() - 8}));
        // Posting at the point read back lands where the cursor is.
        EXPECT_EQ(WindowServer::eventPointFromScreenPoint(screenPoint), (platform::Point{5, 7}));
    });
    EXPECT_TRUE(WindowServer::eventLog().empty());
    // The bottom row of the screen is the last event row.
    EXPECT_EQ(WindowServer::eventPointFromScreenPoint({0, 0}).y, mainScreenHeight() - 1);
}

TEST_F(WindowServerTest, KeyEventsPostedToAProcessAreLoggedWithTheirTarget) {
    auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
    auto key = platform::createKeyboardEvent(source, 0, true);
    platform::keyboardEventSetUnicodeString(*key, "é");
    platform::postEventToPid(::getpid(), *key);
    platform::postEventToPid(::getpid() + 100000, *key);
    auto log = WindowServer::eventLog();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].target, WindowServer::Target::pid);
    EXPECT_EQ(log[0].pid, ::getpid());
    EXPECT_EQ(log[0].event.unicodeText, "é");
    EXPECT_EQ(log[1].pid, ::getpid() + 100000);
    // Key events do not move the cursor or change the modifiers.
    EXPECT_EQ(platform::currentModifierFlags(), 0u);
}

}  // namespace

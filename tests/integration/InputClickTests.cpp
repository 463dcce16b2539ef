// Clicks through the real window server and event routing: the posted
// streams (order, click states, flags), their locations, the content-view
// branch, and what the clicked view receives.
#include <chrono>

#include "InputFixture.h"
#include "input/JTKEventPosting.h"

using namespace jtk;

namespace {

using platform::EventType;
using platform::Point;

class InputClickTest : public InputFixture {
protected:
    // A window at (100, 100) on screen with a recording view whose centre is
    // (200, 170) on screen.
    void SetUp() override {
        InputFixture::SetUp();
        window = makeWindow(100, 100, 400, 300);
        target = add<RecordingView>(window->desktopContentView(), platform::Rect{50, 50, 100, 40});
    }
    std::vector<platform::Event> received() {
        return jtkOnMainThread([&] { return target->received; });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<RecordingView> target;
};

TEST_F(InputClickTest, SingleClickPressesAndReleasesAtTheCentreAndPauses) {
    Point expected = JTKEventPosting::eventPoint({200, 170});
    EXPECT_EQ(expected, (Point{200, 900 - 170 - 1}));
    JTKElement* returned = nullptr;
    double seconds = 0;
    onQueue([&] {
        JTKElement element = elementOf(target);
        auto start = std::chrono::steady_clock::now();
        returned = &element.click();
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        EXPECT_EQ(returned, &element);
    });
    EXPECT_GE(seconds, 0.25);
    auto events = mouseEvents();
    ASSERT_EQ(typesOf(events), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp}));
    for (auto& entry : events) {
        EXPECT_EQ(entry.target, desktop::WindowServer::Target::hid);
        EXPECT_EQ(entry.event.location, expected);
        EXPECT_EQ(entry.event.clickState, 1);
        EXPECT_EQ(entry.event.flags, 0u);
    }
    EXPECT_EQ(platform::mouseLocation(), (Point{200, 170}));
    auto got = received();
    ASSERT_EQ(got.size(), 2u);
    EXPECT_EQ(got[0].type, EventType::leftMouseDown);
    EXPECT_EQ(got[1].type, EventType::leftMouseUp);
}

TEST_F(InputClickTest, FirstPressCarriesTheHeldModifiersAndTheRestTheGivenFlags) {
    onQueue([&] {
        auto hold = JTKTestSuite::beginModifierKeyHold(shift);
        elementOf(target).click({0, 0}, command, false, true);
        elementOf(target).click({0, 0}, command | alternate, true, true);
        JTKTestSuite::releaseModifierKeys(hold);
    });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 6u);
    EXPECT_EQ(events[0].event.flags, shift);
    EXPECT_EQ(events[1].event.flags, command);
    EXPECT_EQ(events[2].event.flags, shift);
    for (size_t i = 3; i < 6; ++i) EXPECT_EQ(events[i].event.flags, command | alternate) << i;
    auto got = received();
    ASSERT_EQ(got.size(), 6u);
    EXPECT_EQ(got[0].flags, shift) << "the view sees the held modifier on the press";
    EXPECT_EQ(got[1].flags, command);
}

TEST_F(InputClickTest, DoubleClickPostsFourEventsAllWithClickStateTwo) {
    onQueue([&] { elementOf(target).click({0, 0}, true); });
    auto events = mouseEvents();
    ASSERT_EQ(typesOf(events), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp, EventType::leftMouseDown,
                                            EventType::leftMouseUp}));
    for (auto& entry : events) EXPECT_EQ(entry.event.clickState, 2);
    auto got = received();
    ASSERT_EQ(got.size(), 4u) << "every event of the double click reaches the view";
    for (auto& event : got) EXPECT_EQ(event.clickState, 2);
    EXPECT_FALSE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
}

TEST_F(InputClickTest, PressWithoutReleaseLeavesTheButtonDown) {
    onQueue([&] { elementOf(target).click({0, 0}, 0, true, false); });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].event.type, EventType::leftMouseDown);
    EXPECT_EQ(events[0].event.clickState, 2);
    EXPECT_TRUE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
    ASSERT_EQ(received().size(), 1u);
}

TEST_F(InputClickTest, OffsetIsInScreenUnitsSoPositiveYMovesTheEventUp) {
    onQueue([&] {
        elementOf(target).click();
        elementOf(target).click({7, 10});
    });
    auto presses = posted({EventType::leftMouseDown});
    ASSERT_EQ(presses.size(), 2u);
    EXPECT_EQ(presses[1].event.location.x, presses[0].event.location.x + 7);
    EXPECT_EQ(presses[1].event.location.y, presses[0].event.location.y - 10);
}

TEST_F(InputClickTest, ContentViewClickGoesToTheWindowsTopCentreWhateverTheOffset) {
    auto other = makeWindow(700, 100, 200, 200, "Other");
    ASSERT_TRUE(other->isKeyWindow());
    onQueue([&] { elementOf(window->contentView()).click({40, -30}); });
    EXPECT_TRUE(window->isKeyWindow()) << "brought to the front and made key";
    // Content frame on screen: (100, 100, 400, 300); top centre 10 points down.
    Point expected = JTKEventPosting::eventPoint({300, 390});
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].event.location, expected);
    EXPECT_EQ(events[1].event.location, expected);
    EXPECT_TRUE(received().empty()) << "the press went to the content view, not the view inside it";
}

TEST_F(InputClickTest, OnASecondScreenTheLocationFlipsAgainstThatScreensHeight) {
    desktop::setScreens({{0, 0, 1440, 900}, {1440, 0, 800, 600}});
    jtkOnMainThread([&] { window->setFrameOrigin({1600, 100}); });
    Point centre = jtkOnMainThread([&] { return elementOf(target).frameCenterOnScreen(); });
    ASSERT_GE(centre.x, 1440);
    onQueue([&] { elementOf(target).click(); });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].event.location, (Point{centre.x, 600 - centre.y - 1}));
    EXPECT_EQ(desktop::WindowServer::shared().cursorLocation(), (Point{centre.x, 600 - centre.y - 1}));
}

}  // namespace

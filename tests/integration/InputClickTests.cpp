// Clicks through the real window server and event routing: the posted
// streams (order, click states, flags), their locations, the content-view
// branch, and what the clicked view receives.
#include "input/JTKEventPosting.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class InputClick : public DesktopTest {
protected:
    // A window at (100, 100) on screen with a recording view whose centre is (200, 170).
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        target = add<RecordingView>(window->desktopContentView(), Rect{50, 50, 100, 40});
    }
    std::vector<platform::Event> received() {
        return onMain([&] { return target->received; });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<RecordingView> target;
};

TEST_F(InputClick, aClickPressesAndReleasesAtTheCentreThenPauses) {
    double seconds = 0;
    onQueue([&] {
        JTKElement element(target);
        auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(&element.click(), &element);
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    });
    EXPECT_GE(seconds, 0.25);
    auto events = mouseEvents();
    ASSERT_EQ(typesOf(events), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp}));
    for (auto& entry : events) {
        EXPECT_EQ(entry.target, desktop::WindowServer::Target::hid);
        EXPECT_EQ(entry.event.location, (Point{200, 900 - 170 - 1}));
        EXPECT_EQ(entry.event.clickState, 1);
        EXPECT_EQ(entry.event.flags, 0u);
    }
    EXPECT_EQ(platform::mouseLocation(), (Point{200, 170}));
    EXPECT_EQ(received().size(), 2u);
}

TEST_F(InputClick, theFirstPressCarriesTheHeldModifiersAndTheRestTheGivenFlags) {
    onQueue([&] {
        auto hold = JTKTestSuite::beginModifierKeyHold(shift);
        JTKElement(target).click({0, 0}, command, false, true);
        JTKElement(target).click({0, 0}, command | alternate, true, true);
        JTKTestSuite::releaseModifierKeys(hold);
    });
    std::vector<uint64_t> flags;
    for (auto& entry : mouseEvents()) flags.push_back(entry.event.flags);
    auto both = command | alternate;
    EXPECT_EQ(flags, (std::vector<uint64_t>{shift, command, shift, both, both, both}));
    auto got = received();
    ASSERT_EQ(got.size(), 6u);
    EXPECT_EQ(got[0].flags, shift) << "the view sees the held modifier on the press";
}

TEST_F(InputClick, aDoubleClickPostsFourEventsWithClickStateTwoAndAPressAloneKeepsTheButtonDown) {
    onQueue([&] { JTKElement(target).click({0, 0}, 0, true, true); });
    auto events = mouseEvents();
    ASSERT_EQ(typesOf(events), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp, EventType::leftMouseDown,
                                            EventType::leftMouseUp}));
    for (auto& entry : events) EXPECT_EQ(entry.event.clickState, 2);
    for (auto& event : received()) EXPECT_EQ(event.clickState, 2);
    EXPECT_EQ(received().size(), 4u);
    EXPECT_FALSE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));

    desktop::WindowServer::clearEventLog();
    onQueue([&] { JTKElement(target).click({0, 0}, 0, false, false); });
    EXPECT_EQ(typesOf(mouseEvents()), std::vector{EventType::leftMouseDown});
    EXPECT_TRUE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
}

TEST_F(InputClick, theOffsetIsInScreenUnitsSoPositiveYMovesTheEventUp) {
    onQueue([&] { JTKElement(target).click({7, 10}); });
    auto presses = posted({EventType::leftMouseDown});
    ASSERT_EQ(presses.size(), 1u);
    EXPECT_EQ(presses[0].event.location, (Point{207, 900 - 180 - 1}));
}

TEST_F(InputClick, aContentViewIsClickedAtItsWindowsTopCentreWhateverTheOffset) {
    auto other = makeWindow({700, 100, 200, 200}, "Other");
    onQueue([&] { JTKElement(window->contentView()).click({40, -30}); });
    EXPECT_TRUE(window->isKeyWindow()) << "brought to the front and made key";
    // Content frame on screen: (100, 100, 400, 300); top centre 10 points down.
    for (auto& entry : mouseEvents()) EXPECT_EQ(entry.event.location, JTKEventPosting::eventPoint({300, 390}));
    EXPECT_EQ(mouseEvents().size(), 2u);
    EXPECT_TRUE(received().empty()) << "the press went to the content view, not the view inside it";
}

TEST_F(InputClick, onASecondScreenTheLocationFlipsAgainstThatScreensHeight) {
    desktop::setScreens({{0, 0, 1440, 900}, {1440, 0, 800, 600}});
    window->setFrameOrigin({1600, 100});
    Point centre = JTKElement(target).frameCenterOnScreen();
    ASSERT_GE(centre.x, 1440);
    onQueue([&] { JTKElement(target).click(); });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].event.location, (Point{centre.x, 600 - centre.y - 1}));
    EXPECT_EQ(desktop::WindowServer::shared().cursorLocation(), events[0].event.location);
}

}  // namespace

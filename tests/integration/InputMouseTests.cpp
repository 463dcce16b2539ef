// Clicks and drags through the real window server and event routing: the
// posted streams (order, click states, flags, locations), the content-view
// branch, what the pressed view receives, and a slider that follows a drag.
#include "input/JTKEventPosting.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

// A view that keeps a copy of every mouse event routing gives it (main thread).
class RecordingView : public desktop::View {
public:
    using desktop::View::View;
    void mouseDown(const platform::Event& event, Point) override { received.push_back(event); }
    void mouseDragged(const platform::Event& event, Point) override { received.push_back(event); }
    void mouseUp(const platform::Event& event, Point) override { received.push_back(event); }
    std::vector<platform::Event> received;
};

class InputMouse : public DesktopTest {
protected:
    // A window at (100, 100) on screen with a recording view whose centre is (200, 170).
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        target = add<RecordingView>(window->desktopContentView(), Rect{50, 50, 100, 40});
    }
    size_t received() { return onMain([&] { return target->received.size(); }); }
    std::vector<int64_t> clickStates() {
        std::vector<int64_t> states;
        for (auto& entry : mouseEvents()) states.push_back(entry.event.clickState);
        return states;
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<RecordingView> target;
    const Point center = JTKEventPosting::eventPoint({200, 170});
};

TEST_F(InputMouse, aClickPressesAndReleasesAtTheCentrePlusTheOffsetInScreenUnitsThenPauses) {
    double seconds = 0;
    onQueue([&] {
        JTKElement element(target);
        auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(&element.click(), &element);
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        element.click({7, 10});
    });
    EXPECT_GE(seconds, 0.25);
    auto events = mouseEvents();
    ASSERT_EQ(typesOf(events), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp, EventType::leftMouseDown,
                                            EventType::leftMouseUp}));
    EXPECT_EQ(center, (Point{200, 900 - 170 - 1}));
    for (auto& entry : events) {
        EXPECT_EQ(entry.target, desktop::WindowServer::Target::hid);
        EXPECT_EQ(entry.event.flags, 0u);
    }
    EXPECT_EQ(events[1].event.location, center);
    EXPECT_EQ(events[2].event.location, (Point{207, center.y - 10})) << "a positive y offset moves the event up";
    EXPECT_EQ(clickStates(), (std::vector<int64_t>{1, 1, 1, 1}));
    EXPECT_EQ(platform::mouseLocation(), (Point{207, 180}));
    EXPECT_EQ(received(), 4u);
}

TEST_F(InputMouse, theFirstPressCarriesTheHeldModifiersAndTheRestTheGivenFlagsAndClickState) {
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
    EXPECT_EQ(clickStates(), (std::vector<int64_t>{1, 1, 2, 2, 2, 2})) << "a double click: four events with state 2";
    EXPECT_EQ(onMain([&] { return target->received.at(0).flags; }), shift) << "the view sees the held modifier";
    EXPECT_EQ(received(), 6u);
    EXPECT_FALSE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
}

TEST_F(InputMouse, aContentViewIsClickedAtItsWindowsTopCentreWhateverTheOffset) {
    makeWindow({700, 100, 200, 200}, "Other");
    onQueue([&] { JTKElement(window->contentView()).click({40, -30}); });
    EXPECT_TRUE(window->isKeyWindow()) << "brought to the front and made key";
    // Content frame on screen: (100, 100, 400, 300); top centre 10 points down.
    for (auto& entry : mouseEvents()) EXPECT_EQ(entry.event.location, JTKEventPosting::eventPoint({300, 390}));
    EXPECT_EQ(mouseEvents().size(), 2u);
    EXPECT_EQ(received(), 0u) << "the press went to the content view, not the view inside it";
}

TEST_F(InputMouse, aDragByThreeAndTenGoesDiagonallyThenStraightWithOneMoreAtTheTarget) {
    onQueue([&] {
        JTKElement(target).click({0, 0}, 0, false, false);  // a press alone keeps the button down
        EXPECT_TRUE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
        JTKElement(target).drag({3, 10});
    });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 1u + 1u + 11u + 1u);
    std::vector<Point> dragged, expected;
    for (size_t i = 2; i + 1 < events.size(); ++i) {
        EXPECT_EQ(events[i].event.type, EventType::leftMouseDragged);
        dragged.push_back(events[i].event.location);
    }
    for (int i = 0; i < 10; ++i) expected.push_back({center.x + std::min(i + 1, 3), center.y - i - 1});
    expected.push_back(expected.back());
    EXPECT_EQ(dragged, expected);
    EXPECT_EQ(typesOf({events.back()}), std::vector{EventType::leftMouseUp});
    EXPECT_EQ(events.back().event.location, expected.back());
    EXPECT_EQ(received(), events.size()) << "the pressed view took the whole drag";
}

TEST_F(InputMouse, aDragStartsWhereTheCursorIsAndAHundredPointsPostAHundredAndOneDraggedEvents) {
    onQueue([&] {
        JTKEventPosting::moveCursor(JTKEventPosting::eventPoint({120, 130}));
        JTKElement(target).drag({-100, 0});
    });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 1u + 101u + 1u);
    EXPECT_EQ(events.front().event.location, JTKEventPosting::eventPoint({120, 130}));
    EXPECT_EQ(events.back().event.location, JTKEventPosting::eventPoint({20, 130}));
    desktop::WindowServer::clearEventLog();
    onQueue([&] { JTKElement(target).drag({0, 0}); });
    EXPECT_EQ(typesOf(mouseEvents()), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp}));
}

TEST_F(InputMouse, aSliderFollowsTheDrag) {
    // Width 200 from x = 100 in the window (200 on screen), range 0 to 100.
    auto slider = add<desktop::Slider>(window->desktopContentView(), Rect{100, 260, 200, 20}, 0, 100, 0);
    int changes = 0;
    slider->setOnChange([&](desktop::Slider&) { ++changes; });
    double atCentre = 0;
    onQueue([&] {
        JTKElement(slider).click({0, 0}, 0, false, false);
        atCentre = onMain([&] { return slider->doubleValue(); });
        JTKElement(slider).drag({60, 0});
    });
    EXPECT_NEAR(atCentre, 50, 5);
    EXPECT_NEAR(slider->doubleValue(), 80, 5) << "60 of 200 points is 30 more";
    EXPECT_GT(changes, 10) << "the slider changed along the way, not only at the end";
}

}  // namespace

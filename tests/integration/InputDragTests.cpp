// Drags through the real window server and routing: the stream of dragged
// events point by point, its ends, and a slider that follows it.
#include "input/JTKEventPosting.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class InputDrag : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        target = add<RecordingView>(window->desktopContentView(), Rect{50, 50, 200, 200});
    }
    // Presses (without release) at the target's centre, then drags by offset;
    // the drag's own events.
    std::vector<Posted> pressAndDrag(Point offset) {
        onQueue([&] {
            JTKElement element(target);
            element.click({0, 0}, 0, false, false);
            desktop::WindowServer::clearEventLog();
            element.drag(offset);
        });
        return mouseEvents();
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<RecordingView> target;
};

TEST_F(InputDrag, threeByTenGoesDiagonallyThenStraightUpWithOneMoreAtTheTarget) {
    Point start = JTKEventPosting::eventPoint({250, 250});  // the target's centre
    auto events = pressAndDrag({3, 10});
    ASSERT_EQ(events.size(), 13u);
    EXPECT_EQ(events.front().event.type, EventType::leftMouseDown);
    EXPECT_EQ(events.front().event.location, start);
    std::vector<Point> dragged, expected;
    for (size_t i = 1; i + 1 < events.size(); ++i) {
        EXPECT_EQ(events[i].event.type, EventType::leftMouseDragged);
        dragged.push_back(events[i].event.location);
    }
    for (int i = 0; i < 10; ++i) expected.push_back({start.x + std::min(i + 1, 3), start.y - i - 1});
    expected.push_back(expected.back());
    EXPECT_EQ(dragged, expected);
    EXPECT_EQ(events.back().event.type, EventType::leftMouseUp);
    EXPECT_EQ(events.back().event.location, expected.back());
    EXPECT_EQ(events.back().event.clickState, 1);
    EXPECT_EQ(platform::mouseLocation(), (Point{253, 260}));
    EXPECT_EQ(onMain([&] { return target->received.size(); }), 1u + 13u) << "the pressed view took the whole drag";
}

TEST_F(InputDrag, noOffsetPostsOnlyPressAndReleaseAndAHundredPointsAHundredAndOneDraggedEvents) {
    auto still = pressAndDrag({0, 0});
    EXPECT_EQ(typesOf(still), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp}));
    auto events = pressAndDrag({-100, 0});
    auto dragged = posted({EventType::leftMouseDragged});
    ASSERT_EQ(dragged.size(), 101u);
    EXPECT_EQ(dragged.back().event.location.x, events.front().event.location.x - 100);
}

TEST_F(InputDrag, aDragStartsWhereTheCursorIsNotAtTheElement) {
    onQueue([&] {
        JTKEventPosting::moveCursor(JTKEventPosting::eventPoint({120, 130}));
        JTKElement(target).drag({0, 5});
    });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 1u + 6u + 1u);
    EXPECT_EQ(events.front().event.location, JTKEventPosting::eventPoint({120, 130}));
    EXPECT_EQ(events.back().event.location, JTKEventPosting::eventPoint({120, 135}));
}

TEST_F(InputDrag, aSliderFollowsTheDrag) {
    // Width 200 from x = 100 in the window (200 on screen), range 0 to 100.
    auto slider = add<desktop::Slider>(window->desktopContentView(), Rect{100, 260, 200, 20}, 0, 100, 0);
    int changes = 0;
    slider->setOnChange([&](desktop::Slider&) { ++changes; });
    double atCentre = 0, afterDrag = 0;
    onQueue([&] {
        JTKElement element(slider);
        element.click({0, 0}, 0, false, false);
        atCentre = onMain([&] { return slider->doubleValue(); });
        element.drag({60, 0});
        afterDrag = onMain([&] { return slider->doubleValue(); });
    });
    EXPECT_NEAR(atCentre, 50, 5);
    EXPECT_NEAR(afterDrag, 80, 5) << "60 of 200 points is 30 more";
    EXPECT_GT(changes, 10) << "the slider changed along the way, not only at the end";
}

}  // namespace

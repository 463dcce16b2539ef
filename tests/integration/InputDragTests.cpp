// Drags through the real window server and routing: the stream of dragged
// events point by point, its ends, and a slider that follows it.
#include "InputFixture.h"
#include "input/JTKEventPosting.h"
#include "JTK/desktop/controls/Slider.h"

using namespace jtk;

namespace {

using platform::EventType;
using platform::Point;

class InputDragTest : public InputFixture {
protected:
    void SetUp() override {
        InputFixture::SetUp();
        window = makeWindow(100, 100, 400, 300);
        target = add<RecordingView>(window->desktopContentView(), platform::Rect{50, 50, 200, 200});
    }

    // Presses (without release) at the target's centre, then drags by offset.
    // Returns the events the drag posted.
    std::vector<Posted> pressAndDrag(Point offset) {
        onQueue([&] {
            JTKElement element = elementOf(target);
            element.click({0, 0}, 0, false, false);
            desktop::WindowServer::clearEventLog();
            element.drag(offset);
        });
        return mouseEvents();
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<RecordingView> target;
};

TEST_F(InputDragTest, ThreeByTenGoesDiagonallyThenStraightUpWithOneMoreAtTheTarget) {
    // Target centre on screen: (250, 250); event point (250, 649).
    Point start = JTKEventPosting::eventPoint({250, 250});
    auto events = pressAndDrag({3, 10});
    ASSERT_EQ(events.size(), 13u);
    EXPECT_EQ(events.front().event.type, EventType::leftMouseDown);
    EXPECT_EQ(events.front().event.location, start);
    std::vector<Point> dragged;
    for (size_t i = 1; i + 1 < events.size(); ++i) {
        EXPECT_EQ(events[i].event.type, EventType::leftMouseDragged);
        dragged.push_back(events[i].event.location);
    }
    ASSERT_EQ(dragged.size(), 11u);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(dragged[i], (Point{start.x + i + 1, start.y - i - 1})) << i;
    for (int i = 3; i < 10; ++i) EXPECT_EQ(dragged[i], (Point{start.x + 3, start.y - i - 1})) << i;
    EXPECT_EQ(dragged[10], dragged[9]) << "one more at the target";
    const auto& release = events.back().event;
    EXPECT_EQ(release.type, EventType::leftMouseUp);
    EXPECT_EQ(release.location, (Point{start.x + 3, start.y - 10}));
    EXPECT_EQ(release.clickState, 1);
    EXPECT_EQ(platform::mouseLocation(), (Point{253, 260}));
    // The view that took the press took the whole drag.
    auto got = jtkOnMainThread([&] { return target->received; });
    EXPECT_EQ(got.size(), 1u + 13u);
}

TEST_F(InputDragTest, ZeroOffsetPostsOnlyPressAndRelease) {
    auto events = pressAndDrag({0, 0});
    ASSERT_EQ(typesOf(events), (std::vector{EventType::leftMouseDown, EventType::leftMouseUp}));
    EXPECT_EQ(events[0].event.location, events[1].event.location);
}

TEST_F(InputDragTest, HundredPointsPostsHundredAndOneDraggedEvents) {
    auto events = pressAndDrag({-100, 0});
    auto dragged = posted({EventType::leftMouseDragged});
    ASSERT_EQ(dragged.size(), 101u);
    EXPECT_EQ(dragged.front().event.location.x, events.front().event.location.x - 1);
    EXPECT_EQ(dragged.back().event.location.x, events.front().event.location.x - 100);
    EXPECT_EQ(events.back().event.type, EventType::leftMouseUp);
}

TEST_F(InputDragTest, DragStartsWhereTheCursorIsNotAtTheElement) {
    onQueue([&] {
        JTKEventPosting::moveCursor(JTKEventPosting::eventPoint({120, 130}));
        elementOf(target).drag({0, 5});
    });
    auto events = mouseEvents();
    ASSERT_EQ(events.size(), 1u + 6u + 1u);
    EXPECT_EQ(events.front().event.location, JTKEventPosting::eventPoint({120, 130}));
    EXPECT_EQ(events.back().event.location, JTKEventPosting::eventPoint({120, 135}));
}

TEST_F(InputDragTest, ASliderFollowsTheDrag) {
    // Width 200 from x = 100 in the window (200 on screen), range 0 to 100.
    auto slider = jtkOnMainThread([&] {
        return add<desktop::Slider>(window->desktopContentView(), platform::Rect{100, 260, 200, 20}, 0, 100, 0);
    });
    int changes = 0;
    jtkOnMainThread([&] { slider->setOnChange([&](desktop::Slider&) { ++changes; }); });
    double atCentre = 0, afterDrag = 0;
    onQueue([&] {
        JTKElement element = elementOf(slider);
        element.click({0, 0}, 0, false, false);
        atCentre = jtkOnMainThread([&] { return slider->doubleValue(); });
        element.drag({60, 0});
        afterDrag = jtkOnMainThread([&] { return slider->doubleValue(); });
    });
    EXPECT_NEAR(atCentre, 50, 5);
    EXPECT_NEAR(afterDrag, 80, 5) << "60 of 200 points is 30 more";
    EXPECT_GT(changes, 10) << "the slider changed along the way, not only at the end";
}

}  // namespace

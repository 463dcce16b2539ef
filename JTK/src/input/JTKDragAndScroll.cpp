// JTKElement's drag from the cursor's position through every point on the
// way, and scrolling an element into view through its scroll view's
// hbScrollToViewAnimated:.
#include <cmath>

#include "JTK/JTKElement.h"
#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "input/JTKEventPosting.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace {

double distance(platform::Point a, platform::Point b) { return std::hypot(b.x - a.x, b.y - a.y); }

double stepToward(double current, double target) {
    if (target > current) return 1;
    if (target < current) return -1;
    return 0;
}

// Moves the pressed button from one screen point to another in one-point
// steps per axis (diagonally until one axis is reached), one dragged event
// per step and one more at the target. At most 1.5 x the distance steps, so
// a target that is never met exactly still ends the movement. The pause per
// step is short while the cursor is far from the target and longer near it.
void dragMouse(platform::Point from, platform::Point to) {
    platform::Point a = JTKEventPosting::eventPoint(from);
    platform::Point b = JTKEventPosting::eventPoint(to);
    auto source = JTKEventPosting::makeEventSource();
    double limit = a == b ? 0 : 1.5 * distance(a, b);
    if (limit > 0) {
        platform::Point current = a;
        for (int i = 0;;) {
            double dx = stepToward(current.x, b.x);
            double dy = stepToward(current.y, b.y);
            current = {current.x + dx, current.y + dy};
            auto dragged = platform::createMouseEvent(source, platform::EventType::leftMouseDragged, current,
                                                      platform::MouseButton::left);
            if (dragged) platform::postEvent(platform::EventTap::hid, *dragged);
            bool near = distance(platform::mouseLocation(), to) < JTKPacing::dragNearDistance;
            JTKEventPosting::pause(near ? JTKPacing::dragStepNear : JTKPacing::dragStepFar);
            if (dx == 0 && dy == 0) break;
            if (++i >= limit) break;
        }
    }
    JTKEventPosting::pause(JTKPacing::afterDragMovement);
}

}  // namespace

void JTKElement::drag(platform::Point offset) {
    using platform::EventType;
    if (JTKEventPosting::handOverToRecorder(this, "drag(offset:)", {offset}, true)) return;

    // The drag starts wherever the cursor is, normally where a press left it.
    auto pressSource = JTKEventPosting::makeEventSource();
    auto press = platform::createMouseEvent(pressSource, EventType::leftMouseDown,
                                            JTKEventPosting::eventPoint(platform::mouseLocation()),
                                            platform::MouseButton::left);
    if (press) platform::postEvent(platform::EventTap::hid, *press);
    press.reset();
    pressSource.reset();

    platform::Point start = platform::mouseLocation();
    platform::Point end{start.x + offset.x, start.y + offset.y};
    dragMouse(platform::mouseLocation(), end);

    auto releaseSource = JTKEventPosting::makeEventSource();
    auto release = platform::createMouseEvent(releaseSource, EventType::leftMouseUp, JTKEventPosting::eventPoint(end),
                                              platform::MouseButton::left);
    if (release) {
        release->setIntegerField(platform::EventField::mouseEventClickState, 1);
        platform::postEvent(platform::EventTap::hid, *release);
    }
    JTKEventPosting::pause(JTKPacing::afterDrag);
}

void JTKElement::scrollTo() {
    bool needed = false;
    bool scrolled = false;
    jtkOnMainThread([&] {
        auto view = requireView("scrollTo");
        auto window = view->window();
        platform::Rect inWindow = frameInWindow();
        // Without a window there is nothing to measure against: not visible.
        platform::Rect windowFrame = window ? window->frame() : platform::Rect{};
        platform::Rect visible = view->visibleRect();
        platform::Rect frame = view->frame();
        platform::Rect windowBounds{0, 0, windowFrame.width(), windowFrame.height()};
        bool unclipped = visible.width() == frame.width() && visible.height() == frame.height();
        if (unclipped && platform::pointInRect({inWindow.maxX(), inWindow.maxY()}, windowBounds) &&
            platform::pointInRect({inWindow.minX(), inWindow.minY()}, windowBounds)) {
            return;
        }
        needed = true;
        for (const auto& candidate : JTKTestSuite::appElements()) {
            auto scrollView = candidate.view();
            if (!scrollView || !scrollView->isScrollView()) continue;
            bool contains = false;
            for (const auto& inside : candidate.subElementsWithType(std::nullopt)) {
                if (inside.isEqual(this)) {
                    contains = true;
                    break;
                }
            }
            if (!contains) continue;
            if (scrollView->respondsToSelector("hbScrollToViewAnimated:")) {
                scrolled = true;
                scrollView->performSelector("hbScrollToViewAnimated:", platform::Value(view));
            }
            break;
        }
    });
    if (needed && scrolled) JTKEventPosting::pause(JTKPacing::afterScroll);
}

}  // namespace jtk

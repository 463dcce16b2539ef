// The mouse actions of JTKElement: the click family, scrolling an element
// into view, and drags.
#include <cmath>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Window.h"
#include "input/JTKEventPosting.h"
#include "run/JTKMainThread.h"

namespace jtk {

// The click family of JTKElement: every variant ends in the four-argument
// click, which presses (and releases) the left button on the element's view.

JTKElement& JTKElement::click() { return click(platform::Point{0, 0}, 0, false, true); }

JTKElement& JTKElement::click(platform::Point offset) { return click(offset, 0, false, true); }

JTKElement& JTKElement::click(platform::Point offset, bool doubleClick) { return click(offset, 0, doubleClick, true); }

JTKElement& JTKElement::click(platform::Point offset, uint64_t modifierFlags, bool doubleClick, bool mouseUp) {
    using platform::EventType;
    if (JTKEventPosting::handOverToRecorder(this, "click(offset:modifierFlags:doubleClick:mouseUp:)",
                                            {offset, JTKEventFlags{modifierFlags}, doubleClick}, false)) {
        return *this;
    }
    // A click on a view that has gone stops the run before anything is posted.
    jtkOnMainThread([&] { requireView("click"); });

    JTKEventPosting::activateApplicationIfNeeded();
    scrollTo();
    caputureMenuIfOneOpens();
    platform::Point target = frameCenterOnScreen();

    jtkOnMainThread([&] {
        auto view = this->view();
        auto window = view ? view->window() : nullptr;
        auto contentView = window ? window->contentView() : nullptr;
        if (view && contentView && view == contentView) {
            // A click on a content view goes to its window: to the front, and
            // pressed near the top centre, where the window itself takes it.
            window->makeKeyAndOrderFront();
            platform::Rect frame = frameOnScreen();
            platform::Point top{frame.minX() + frame.width() * 0.5, frame.maxY() - 10.0};
            JTKEventPosting::moveCursor(JTKEventPosting::eventPoint(top));
            target = platform::mouseLocation();
        } else {
            target = {target.x + offset.x, target.y + offset.y};
        }
    });

    platform::Point location = JTKEventPosting::eventPoint(target);
    JTKEventPosting::moveCursor(location);
    auto source = JTKEventPosting::makeEventSource();
    auto event = platform::createMouseEvent(source, EventType::leftMouseDown, location, platform::MouseButton::left);
    if (event) {
        event->setIntegerField(platform::EventField::mouseEventClickState, doubleClick ? 2 : 1);
        // The first press keeps the flags it got from the source (held
        // modifiers included); everything after it carries modifierFlags.
        platform::postEvent(platform::EventTap::hid, *event);
        event->flags = modifierFlags;
        if (mouseUp) {
            event->type = EventType::leftMouseUp;
            platform::postEvent(platform::EventTap::hid, *event);
        }
        if (mouseUp && doubleClick) {
            event->setIntegerField(platform::EventField::mouseEventClickState, 2);
            event->type = EventType::leftMouseDown;
            platform::postEvent(platform::EventTap::hid, *event);
            event->type = EventType::leftMouseUp;
            platform::postEvent(platform::EventTap::hid, *event);
        }
    }
    JTKEventPosting::pause(JTKPacing::afterClick);
    return *this;
}

// JTKElement's drag from the cursor's position through every point on the
// way, and scrolling an element into view through its scroll view's
// hbScrollToViewAnimated:.

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

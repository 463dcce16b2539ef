// The click family of JTKElement: every variant ends in the four-argument
// click, which presses (and releases) the left button on the element's view.
#include "JTK/JTKElement.h"
#include "run/JTKMainThread.h"
#include "input/JTKEventPosting.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Window.h"

namespace jtk {

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

}  // namespace jtk

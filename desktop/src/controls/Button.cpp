#include "JTK/desktop/controls/Button.h"

namespace jtk::desktop {

Button::Button(const platform::Rect& frame, std::string title, Type type)
    : View(frame), title_(std::move(title)), type_(type) {
    addMethod("title", [](Object& self, const platform::Value&) -> platform::Value {
        return static_cast<Button&>(self).title();
    });
}

void Button::performClick() {
    if (!enabled_) return;
    // The action may remove the button from its window: keep it alive meanwhile.
    auto protector = weak_from_this().lock();
    if (type_ == Type::checkbox) state_ = state_ == onState ? offState : onState;
    if (auto action = action_) action(*this);  // the action may replace itself
}

bool Button::containsWindowPoint(platform::Point pointInWindow) const {
    return platform::pointInRect(convertPointFromWindow(pointInWindow), bounds());
}

void Button::mouseDown(const platform::Event& event, platform::Point pointInWindow) {
    tracking_ = enabled_;
    highlighted_ = tracking_ && containsWindowPoint(pointInWindow);
    lastEventFlags_ = event.flags;
}

void Button::mouseDragged(const platform::Event&, platform::Point pointInWindow) {
    if (tracking_) highlighted_ = containsWindowPoint(pointInWindow);
}

void Button::mouseUp(const platform::Event& event, platform::Point pointInWindow) {
    bool wasTracking = tracking_;
    tracking_ = highlighted_ = false;
    if (!wasTracking || !enabled_ || !containsWindowPoint(pointInWindow)) return;
    clickCount_ = event.clickState;
    lastEventFlags_ = event.flags;
    // A double click is two clicks whose second carries click state 2. Both
    // releases of a synthesised double click may carry 2; the clicks pair up
    // all the same, so each double click completes exactly once.
    bool completesDouble = event.clickState >= 2 && !lastClickCompletedDouble_;
    lastClickCompletedDouble_ = completesDouble;
    auto protector = weak_from_this().lock();
    performClick();
    if (completesDouble && enabled_)
        if (auto doubleAction = doubleAction_) doubleAction(*this);
}

platform::Value Button::accessibilityValue() const {
    // Text, so that an element's value shows it (numbers read as no text there).
    if (type_ == Type::checkbox) return state_ == onState ? "1" : "0";
    return {};
}

}  // namespace jtk::desktop

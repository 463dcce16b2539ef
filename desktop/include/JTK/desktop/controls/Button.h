// A button: a push button that performs its action when clicked, or a
// checkbox whose click toggles its state first. It answers the runtime
// method "title"; a checkbox's accessibility value, and so its element's
// value, is its state as text ("0" or "1").
// A click is a press and a release inside the button; the action can read
// the release's click count and modifier flags, and a double click also
// sends the double action, once.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class Button : public View {
public:
    enum class Type { push, checkbox };
    enum State : int { offState = 0, onState = 1 };
    using Action = std::function<void(Button&)>;

    explicit Button(const platform::Rect& frame = {}, std::string title = {}, Type type = Type::push);

    virtual std::string title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    Type buttonType() const { return type_; }
    void setButtonType(Type type) { type_ = type; }
    int state() const { return state_; }
    void setState(int state) { state_ = state ? onState : offState; }
    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    // The key that presses the button in its window ("\r" for a default button).
    const std::string& keyEquivalent() const { return keyEquivalent_; }
    void setKeyEquivalent(std::string key) { keyEquivalent_ = std::move(key); }

    void setAction(Action action) { action_ = std::move(action); }
    // What a click does: a checkbox toggles, then the action runs. Does
    // nothing while the button is disabled.
    virtual void performClick();

    // Sent once per double click, after the action of the click that completes it.
    void setDoubleAction(Action action) { doubleAction_ = std::move(action); }
    // Of the release that performed the last click: its click state (1 for a
    // single click, 2 within a double click) and its modifier flags.
    int64_t clickCount() const { return clickCount_; }
    uint64_t lastEventFlags() const { return lastEventFlags_; }
    // Shown pressed: the mouse went down in the button and is still inside.
    bool isHighlighted() const { return highlighted_; }

    void mouseDown(const platform::Event& event, platform::Point pointInWindow) override;
    void mouseDragged(const platform::Event& event, platform::Point pointInWindow) override;
    void mouseUp(const platform::Event& event, platform::Point pointInWindow) override;

    platform::Value accessibilityValue() const override;

    // The bezel and title of a push button (pressed, default and disabled
    // looks), or the box, mark and title of a checkbox.
    void draw(DrawContext& context) const override;

private:
    bool containsWindowPoint(platform::Point pointInWindow) const;

    std::string title_;
    Type type_;
    int state_ = offState;
    bool enabled_ = true;
    std::string keyEquivalent_;
    Action action_;
    Action doubleAction_;
    bool tracking_ = false;
    bool highlighted_ = false;
    int64_t clickCount_ = 0;
    uint64_t lastEventFlags_ = 0;
    // The last click completed a double click: the next one starts a new one.
    bool lastClickCompletedDouble_ = false;
};

}  // namespace jtk::desktop

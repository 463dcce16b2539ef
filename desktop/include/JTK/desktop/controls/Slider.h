// A slider: a double value between a minimum and a maximum. Its
// accessibility value is the value as a number. The change callback reports
// changes made with the mouse or keyboard, not values set by the program.
// The mouse sets the value from its x position along the slider (left end
// minimum, right end maximum) at the press and while it drags.
#pragma once

#include <functional>

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class Slider : public View {
public:
    using ChangeHandler = std::function<void(Slider&)>;

    explicit Slider(const platform::Rect& frame = {}, double minValue = 0, double maxValue = 1, double value = 0);

    double minValue() const { return min_; }
    double maxValue() const { return max_; }
    // The limits may come in either order; the value is pulled inside them.
    // Limits that are not finite numbers are ignored.
    void setRange(double minValue, double maxValue);
    double doubleValue() const { return value_; }
    // Clamped to the range; a value that is not a number is ignored.
    void setDoubleValue(double value);
    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }

    void setOnChange(ChangeHandler handler) { onChange_ = std::move(handler); }
    // Runs the change callback; mouse and key handling call it after a change.
    void didChange();

    platform::Value accessibilityValue() const override { return value_; }

    void mouseDown(const platform::Event& event, platform::Point pointInWindow) override;
    void mouseDragged(const platform::Event& event, platform::Point pointInWindow) override;
    void mouseUp(const platform::Event& event, platform::Point pointInWindow) override;

    // The track, filled up to the knob, and the round knob at the value.
    void draw(DrawContext& context) const override;

private:
    void trackMouse(platform::Point pointInWindow);

    double min_;
    double max_;
    double value_ = 0;
    bool enabled_ = true;
    bool tracking_ = false;
    ChangeHandler onChange_;
};

}  // namespace jtk::desktop

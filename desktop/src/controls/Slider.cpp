#include "JTK/desktop/controls/Slider.h"

#include <algorithm>
#include <cmath>

namespace jtk::desktop {

Slider::Slider(const platform::Rect& frame, double minValue, double maxValue, double value)
    : View(frame), min_(0), max_(1) {
    setRange(minValue, maxValue);
    setDoubleValue(value);
}

void Slider::setRange(double minValue, double maxValue) {
    if (!std::isfinite(minValue) || !std::isfinite(maxValue)) return;
    min_ = std::min(minValue, maxValue);
    max_ = std::max(minValue, maxValue);
    value_ = std::clamp(value_, min_, max_);
}

void Slider::setDoubleValue(double value) {
    if (std::isnan(value)) return;
    value_ = std::clamp(value, min_, max_);
}

void Slider::didChange() {
    auto protector = weak_from_this().lock();  // the callback may remove the slider
    if (auto handler = onChange_) handler(*this);
}

void Slider::trackMouse(platform::Point pointInWindow) {
    double width = bounds().width();
    if (width <= 0) return;
    double fraction = std::clamp((convertPointFromWindow(pointInWindow).x - bounds().minX()) / width, 0.0, 1.0);
    double before = value_;
    setDoubleValue(min_ + fraction * (max_ - min_));
    if (value_ != before) didChange();
}

void Slider::mouseDown(const platform::Event&, platform::Point pointInWindow) {
    tracking_ = enabled_;
    if (tracking_) trackMouse(pointInWindow);
}

void Slider::mouseDragged(const platform::Event&, platform::Point pointInWindow) {
    if (tracking_) trackMouse(pointInWindow);
}

void Slider::mouseUp(const platform::Event&, platform::Point pointInWindow) {
    if (tracking_) trackMouse(pointInWindow);
    tracking_ = false;
}

}  // namespace jtk::desktop

#include "QtPart.h"

#include <algorithm>

#include "QtObjectRuntime.h"
#include "QtWrappers.h"

namespace jtk::qt {

bool QtPart::respondsToSelector(const std::string& selector) const {
    if (selector == "title" || selector == "isEnabled" || selector == "isSelected" || selector == "toolTip") return true;
    if (selector == "isChecked") return exists() && checked().has_value();
    return View::respondsToSelector(selector);
}

platform::Value QtPart::performSelector(const std::string& selector, const platform::Value& argument) {
    if (selector == "title") return toStdString(exists() ? text() : QString());
    if (selector == "isEnabled") return exists() && enabled();
    if (selector == "isSelected") return exists() && selected();
    if (selector == "toolTip") return toStdString(exists() ? toolTipText() : QString());
    if (selector == "isChecked") {
        auto state = exists() ? checked() : std::nullopt;
        return state ? platform::Value(*state) : platform::Value();
    }
    return View::performSelector(selector, argument);
}

std::shared_ptr<platform::View> QtPart::superview() const { return owner_ ? viewFor(owner_) : nullptr; }

std::shared_ptr<platform::Window> QtPart::window() const {
    auto owner = superview();
    return owner ? owner->window() : nullptr;
}

platform::Rect QtPart::frame() const {
    if (!exists()) return {};
    QRect rect = rectInOwner();
    return {double(rect.x()), double(owner_->height() - (rect.y() + rect.height())), double(rect.width()),
            double(rect.height())};
}

platform::Rect QtPart::bounds() const {
    platform::Rect f = frame();
    return {0, 0, f.width(), f.height()};
}

platform::Rect QtPart::visibleRect() const {
    auto owner = superview();
    if (!owner || !exists()) return {};
    platform::Rect f = frame();
    platform::Rect clip = owner->visibleRect();
    double minX = std::max(f.minX(), clip.minX()), maxX = std::min(f.maxX(), clip.maxX());
    double minY = std::max(f.minY(), clip.minY()), maxY = std::min(f.maxY(), clip.maxY());
    if (maxX <= minX || maxY <= minY) return {};
    return {minX - f.minX(), minY - f.minY(), maxX - minX, maxY - minY};
}

platform::Rect QtPart::convertRectToWindow(const platform::Rect& rect) const {
    auto owner = superview();
    if (!owner) return rect;
    platform::Rect f = frame();
    return owner->convertRectToWindow({rect.minX() + f.minX(), rect.minY() + f.minY(), rect.width(), rect.height()});
}

platform::Value QtPart::accessibilityValue() const { return toStdString(exists() ? text() : QString()); }

}  // namespace jtk::qt

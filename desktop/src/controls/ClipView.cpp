#include "JTK/desktop/controls/ClipView.h"

#include <algorithm>
#include <cmath>

namespace jtk::desktop {

std::shared_ptr<View> ClipView::documentView() const {
    const auto& children = desktopSubviews();
    return children.empty() ? nullptr : children.front();
}

void ClipView::setDocumentView(const std::shared_ptr<View>& view) {
    std::shared_ptr<View> document = view;  // may point into the tree we change
    if (document == documentView()) return;
    while (!desktopSubviews().empty()) desktopSubviews().front()->removeFromSuperview();
    if (document) addSubview(document);
    setBoundsOrigin({0, 0});
}

void ClipView::scrollToPoint(platform::Point point) {
    auto document = documentView();
    if (!document || !std::isfinite(point.x) || !std::isfinite(point.y)) return;
    platform::Rect area = document->frame();
    platform::Size size = bounds().size;
    // A document smaller than the clip view stays at its own origin.
    double x = std::clamp(point.x, area.minX(), std::max(area.minX(), area.maxX() - size.width));
    double y = std::clamp(point.y, area.minY(), std::max(area.minY(), area.maxY() - size.height));
    setBoundsOrigin({x, y});
}

}  // namespace jtk::desktop

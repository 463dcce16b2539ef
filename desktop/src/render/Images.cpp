// The platform's picture operations on the embedded desktop's views.
#include "JTK/platform/Images.h"

#include "JTK/desktop/View.h"
#include "JTK/desktop/render/Rendering.h"

namespace jtk::platform {

std::optional<imaging::Image> bitmapForCachingDisplay(const View& view) {
    const auto* desktopView = dynamic_cast<const desktop::View*>(&view);
    if (!desktopView) return std::nullopt;  // a view of another platform
    return desktop::bitmapForView(*desktopView);
}

bool cacheDisplayInBitmap(const View& view, imaging::Image& bitmap) {
    const auto* desktopView = dynamic_cast<const desktop::View*>(&view);
    if (!desktopView || bitmap.width == 0 || bitmap.height == 0) return false;
    desktop::drawViewIntoBitmap(*desktopView, bitmap);
    return true;
}

}  // namespace jtk::platform

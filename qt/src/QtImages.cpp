// Pictures of widgets: QWidget::grab() in 8-bit straight RGBA. The frame
// view of a window draws its top-level widget.
#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <cstring>

#include "JTK/platform/Images.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

constexpr double largestSide = 16384;

QWidget* drawnWidget(const platform::View& view) {
    if (QWidget* widget = widgetOf(view)) return widget;
    auto window = view.window();
    auto content = window ? window->contentView() : nullptr;
    return content ? widgetOf(*content) : nullptr;
}

}  // namespace

}  // namespace jtk::qt

namespace jtk::platform {

std::optional<imaging::Image> bitmapForCachingDisplay(const View& view) {
    Rect bounds = view.bounds();
    if (!qt::drawnWidget(view) || bounds.isEmpty() || bounds.width() > qt::largestSide ||
        bounds.height() > qt::largestSide)
        return std::nullopt;
    return imaging::Image(static_cast<uint32_t>(bounds.width()), static_cast<uint32_t>(bounds.height()));
}

bool cacheDisplayInBitmap(const View& view, imaging::Image& bitmap) {
    QWidget* widget = qt::drawnWidget(view);
    if (!widget || bitmap.width == 0 || bitmap.height == 0) return false;
    QImage picture = widget->grab().toImage().convertToFormat(QImage::Format_RGBA8888);
    if (picture.isNull()) return false;
    // One pixel a point: a picture drawn at another device pixel ratio is scaled back.
    if (picture.width() != int(bitmap.width) || picture.height() != int(bitmap.height))
        picture = picture.scaled(int(bitmap.width), int(bitmap.height), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // A frame view larger than its widget keeps the rest transparent.
    uint32_t width = std::min<uint32_t>(bitmap.width, picture.width());
    uint32_t height = std::min<uint32_t>(bitmap.height, picture.height());
    for (uint32_t y = 0; y < height; ++y)
        std::memcpy(bitmap.pixel(0, y), picture.constScanLine(int(y)), size_t{width} * 4);
    return true;
}

}  // namespace jtk::platform

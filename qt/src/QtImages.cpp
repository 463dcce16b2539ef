// Pictures of widgets: QWidget::grab() in 8-bit straight RGBA. The frame
// view of a window draws its top-level widget.
#include <QImage>
#include <QPixmap>
#include <QRgb>
#include <QWidget>
#include <cstring>

#include "JTK/platform/Images.h"
#include "QtParts.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

constexpr double largestSide = 16384;

QWidget* drawnWidget(const platform::View& view) {
    if (QWidget* widget = widgetOf(view)) return widget;
    if (QWidget* owner = ownerOfPart(view)) return owner;
    auto window = view.window();
    auto content = window ? window->contentView() : nullptr;
    return content ? widgetOf(*content) : nullptr;
}

// Copies the picture's pixels as 8-bit straight RGBA. The raster engine's
// formats are converted here, pixel by pixel: QImage::convertToFormat splits
// a large picture over Qt's thread pool, whose hand-overs a race detector
// cannot see in a Qt not built for it.
void copyStraightRGBA(QImage& picture, imaging::Image& bitmap, uint32_t width, uint32_t height) {
    QImage::Format format = picture.format();
    bool packed = format == QImage::Format_ARGB32_Premultiplied || format == QImage::Format_ARGB32 ||
                  format == QImage::Format_RGB32;
    if (!packed) {
        picture = picture.convertToFormat(QImage::Format_RGBA8888);
        for (uint32_t y = 0; y < height; ++y)
            std::memcpy(bitmap.pixel(0, y), picture.constScanLine(int(y)), size_t{width} * 4);
        return;
    }
    bool premultiplied = format == QImage::Format_ARGB32_Premultiplied;
    for (uint32_t y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(int(y)));
        uint8_t* out = bitmap.pixel(0, y);
        for (uint32_t x = 0; x < width; ++x, out += 4) {
            QRgb pixel = premultiplied ? qUnpremultiply(row[x]) : row[x];
            out[0] = uint8_t(qRed(pixel));
            out[1] = uint8_t(qGreen(pixel));
            out[2] = uint8_t(qBlue(pixel));
            out[3] = format == QImage::Format_RGB32 ? 255 : uint8_t(qAlpha(pixel));
        }
    }
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
    // A part (a tab, an item) is the piece of its widget it covers; one
    // scrolled out of its widget has no picture.
    QRect region(QPoint(0, 0), QSize(-1, -1));  // the whole widget
    if (!qt::widgetOf(view) && qt::ownerOfPart(view)) {
        platform::Rect frame = view.frame();
        region = QRect(int(frame.minX()), int(widget->height() - frame.maxY()), int(frame.width()), int(frame.height()));
        if (!widget->rect().contains(region)) return false;
    }
    QImage picture = widget->grab(region).toImage();
    if (picture.isNull()) return false;
    // One pixel a point: a picture drawn at another device pixel ratio is scaled back.
    if (picture.width() != int(bitmap.width) || picture.height() != int(bitmap.height))
        picture = picture.scaled(int(bitmap.width), int(bitmap.height), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // A frame view larger than its widget keeps the rest transparent.
    uint32_t width = std::min<uint32_t>(bitmap.width, picture.width());
    uint32_t height = std::min<uint32_t>(bitmap.height, picture.height());
    qt::copyStraightRGBA(picture, bitmap, width, height);
    return true;
}

}  // namespace jtk::platform

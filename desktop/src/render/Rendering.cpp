// Views into bitmaps: the walk that draws a view tree, and the bitmaps of a
// view and of a window. Cairo draws into premultiplied pixels; the bitmaps
// handed out are straight RGBA, rows top to bottom.
#include "JTK/desktop/render/Rendering.h"

#include <cairo.h>

#include <cmath>

#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "render/Surface.h"

namespace jtk::desktop {

using platform::Rect;

void drawViewTree(DrawContext& context, const View& view) {
    if (view.isHidden()) return;
    context.save();
    context.clipToRect(view.bounds());
    view.draw(context);
    for (const auto& subview : view.desktopSubviews()) {
        if (subview->isHidden()) continue;
        // A subview's point p lies at p - its bounds origin + its frame origin here.
        Rect frame = subview->frame(), bounds = subview->bounds();
        context.save();
        context.translate(frame.minX() - bounds.minX(), frame.minY() - bounds.minY());
        drawViewTree(context, *subview);
        context.restore();
    }
    view.drawOverSubviews(context);
    context.restore();
}

std::optional<imaging::Image> bitmapForView(const View& view) {
    auto size = bitmapSize(view.bounds().size);
    if (!size) return std::nullopt;
    return imaging::Image(size->first, size->second);
}

void drawViewIntoBitmap(const View& view, imaging::Image& bitmap) {
    Surface surface(bitmap);
    if (!surface.isValid()) return;
    {
        DrawContext context(surface.cairo(), bitmap.height);
        Rect bounds = view.bounds();
        context.translate(-bounds.minX(), -bounds.minY());
        drawViewTree(context, view);
    }
    surface.copyInto(bitmap);
}

std::optional<imaging::Image> renderView(const View& view) {
    auto bitmap = bitmapForView(view);
    if (bitmap) drawViewIntoBitmap(view, *bitmap);
    return bitmap;
}

std::optional<imaging::Image> renderWindow(const Window& window) {
    auto frameView = window.desktopFrameView();
    if (!frameView) return std::nullopt;
    return renderView(*frameView);
}

}  // namespace jtk::desktop

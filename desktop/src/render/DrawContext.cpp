#include "JTK/desktop/render/DrawContext.h"

#include <cairo.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "render/FontSystem.h"
#include "render/Surface.h"

namespace jtk::desktop {

using platform::Point;
using platform::Rect;
using platform::Size;

namespace {

struct LayoutDeleter {
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
};
using LayoutPointer = std::unique_ptr<PangoLayout, LayoutDeleter>;

LayoutPointer makeLayout(const std::string& text, const Font& font, double wrapWidth) {
    LayoutPointer layout(pango_layout_new(fontContext()));
    PangoFontDescription* description = newFontDescription(font);
    pango_layout_set_font_description(layout.get(), description);
    pango_font_description_free(description);
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    if (wrapWidth > 0) {
        pango_layout_set_width(layout.get(), static_cast<int>(std::lround(wrapWidth * PANGO_SCALE)));
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    }
    return layout;
}

Size logicalSize(PangoLayout* layout) {
    PangoRectangle logical;
    pango_layout_get_extents(layout, nullptr, &logical);
    return {static_cast<double>(logical.width) / PANGO_SCALE, static_cast<double>(logical.height) / PANGO_SCALE};
}

void setColor(cairo_t* cairo, const Color& color) {
    cairo_set_source_rgba(cairo, color.red, color.green, color.blue, color.alpha);
}

void roundedRectPath(cairo_t* cairo, const Rect& rect, double radius) {
    radius = std::clamp(radius, 0.0, std::min(rect.width(), rect.height()) / 2);
    if (radius <= 0) {
        cairo_rectangle(cairo, rect.minX(), rect.minY(), rect.width(), rect.height());
        return;
    }
    double x0 = rect.minX(), y0 = rect.minY(), x1 = rect.maxX(), y1 = rect.maxY();
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, x1 - radius, y0 + radius, radius, -M_PI / 2, 0);
    cairo_arc(cairo, x1 - radius, y1 - radius, radius, 0, M_PI / 2);
    cairo_arc(cairo, x0 + radius, y1 - radius, radius, M_PI / 2, M_PI);
    cairo_arc(cairo, x0 + radius, y0 + radius, radius, M_PI, 3 * M_PI / 2);
    cairo_close_path(cairo);
}

// A user-space point moved to the nearest device pixel corner, so that text
// starts on whole pixels wherever the view sits.
Point snappedToPixel(cairo_t* cairo, Point point) {
    double x = point.x, y = point.y;
    cairo_user_to_device(cairo, &x, &y);
    x = std::round(x);
    y = std::round(y);
    cairo_device_to_user(cairo, &x, &y);
    return {x, y};
}

}  // namespace

DrawContext::DrawContext(cairo_t* cairo, double imageHeight) : cairo_(cairo) {
    cairo_translate(cairo_, 0, imageHeight);
    cairo_scale(cairo_, 1, -1);
}

void DrawContext::save() { cairo_save(cairo_); }
void DrawContext::restore() { cairo_restore(cairo_); }
void DrawContext::translate(double dx, double dy) { cairo_translate(cairo_, dx, dy); }

void DrawContext::clipToRect(const Rect& rect) {
    cairo_rectangle(cairo_, rect.minX(), rect.minY(), std::max(0.0, rect.width()), std::max(0.0, rect.height()));
    cairo_clip(cairo_);
}

void DrawContext::fillRect(const Rect& rect, const Color& color) {
    setColor(cairo_, color);
    cairo_rectangle(cairo_, rect.minX(), rect.minY(), rect.width(), rect.height());
    cairo_fill(cairo_);
}

void DrawContext::fillRoundedRect(const Rect& rect, double radius, const Color& color) {
    setColor(cairo_, color);
    roundedRectPath(cairo_, rect, radius);
    cairo_fill(cairo_);
}

void DrawContext::strokeRoundedRect(const Rect& rect, double radius, const Color& color, double lineWidth) {
    setColor(cairo_, color);
    cairo_set_line_width(cairo_, lineWidth);
    roundedRectPath(cairo_, rect, radius);
    cairo_stroke(cairo_);
}

void DrawContext::fillRoundedRectGradient(const Rect& rect, double radius, const Color& top, const Color& bottom) {
    cairo_pattern_t* gradient = cairo_pattern_create_linear(0, rect.maxY(), 0, rect.minY());
    cairo_pattern_add_color_stop_rgba(gradient, 0, top.red, top.green, top.blue, top.alpha);
    cairo_pattern_add_color_stop_rgba(gradient, 1, bottom.red, bottom.green, bottom.blue, bottom.alpha);
    cairo_set_source(cairo_, gradient);
    roundedRectPath(cairo_, rect, radius);
    cairo_fill(cairo_);
    cairo_pattern_destroy(gradient);
}

void DrawContext::fillEllipse(const Rect& rect, const Color& color) {
    if (rect.isEmpty()) return;
    cairo_save(cairo_);
    cairo_translate(cairo_, rect.midX(), rect.midY());
    cairo_scale(cairo_, rect.width() / 2, rect.height() / 2);
    cairo_arc(cairo_, 0, 0, 1, 0, 2 * M_PI);
    cairo_restore(cairo_);
    setColor(cairo_, color);
    cairo_fill(cairo_);
}

void DrawContext::strokeEllipse(const Rect& rect, const Color& color, double lineWidth) {
    if (rect.isEmpty()) return;
    cairo_save(cairo_);
    cairo_translate(cairo_, rect.midX(), rect.midY());
    cairo_scale(cairo_, rect.width() / 2, rect.height() / 2);
    cairo_arc(cairo_, 0, 0, 1, 0, 2 * M_PI);
    cairo_restore(cairo_);  // the pen is round in user space, not stretched with the circle
    setColor(cairo_, color);
    cairo_set_line_width(cairo_, lineWidth);
    cairo_stroke(cairo_);
}

void DrawContext::strokeLine(Point from, Point to, const Color& color, double lineWidth) {
    setColor(cairo_, color);
    cairo_set_line_width(cairo_, lineWidth);
    cairo_set_line_cap(cairo_, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(cairo_, from.x, from.y);
    cairo_line_to(cairo_, to.x, to.y);
    cairo_stroke(cairo_);
    cairo_set_line_cap(cairo_, CAIRO_LINE_CAP_BUTT);
}

void DrawContext::dropShadow(const Rect& rect, double radius, double spread) {
    // Layers of faint rounded rectangles, each a little larger and lower,
    // make a soft edge without a blur filter.
    int layers = std::max(1, static_cast<int>(std::ceil(spread)));
    for (int i = layers; i >= 1; --i) {
        double grow = spread * i / layers;
        Rect layer{rect.minX() - grow, rect.minY() - grow - spread / 2, rect.width() + 2 * grow,
                   rect.height() + 2 * grow};
        fillRoundedRect(layer, radius + grow, palette::shadow.withAlpha(palette::shadow.alpha / layers));
    }
}

Size DrawContext::measureText(const std::string& text, const Font& font, double width) const {
    return textSize(text, font, width);
}

Size DrawContext::textSize(const std::string& text, const Font& font, double width) {
    auto layout = makeLayout(text, font, width);
    return logicalSize(layout.get());
}

double DrawContext::textOffset(const std::string& text, const Font& font, size_t byteIndex) const {
    auto layout = makeLayout(text, font, 0);
    PangoRectangle position;
    pango_layout_index_to_pos(layout.get(), static_cast<int>(std::min(byteIndex, text.size())), &position);
    return static_cast<double>(position.x) / PANGO_SCALE;
}

void DrawContext::drawText(const std::string& text, const Rect& rect, const TextStyle& style) {
    if (text.empty() || rect.isEmpty()) return;
    auto layout = makeLayout(text, style.font, style.wraps ? rect.width() : 0);
    Size size = logicalSize(layout.get());
    double x = rect.minX();
    if (style.alignment == TextAlignment::center) x = rect.midX() - size.width / 2;
    if (style.alignment == TextAlignment::right) x = rect.maxX() - size.width;
    if (style.wraps) {
        auto alignment = style.alignment == TextAlignment::center  ? PANGO_ALIGN_CENTER
                         : style.alignment == TextAlignment::right ? PANGO_ALIGN_RIGHT
                                                                   : PANGO_ALIGN_LEFT;
        pango_layout_set_alignment(layout.get(), alignment);
        x = rect.minX();
    }
    double top = style.wraps ? rect.maxY() : rect.midY() + size.height / 2;
    Point origin = snappedToPixel(cairo_, {x, top});

    cairo_save(cairo_);
    cairo_translate(cairo_, origin.x, origin.y);
    cairo_scale(cairo_, 1, -1);  // pango lays out rows downwards from the top
    setColor(cairo_, style.color);
    cairo_move_to(cairo_, 0, 0);
    pango_cairo_show_layout(cairo_, layout.get());
    cairo_restore(cairo_);
}

namespace {

// Draws the picture scaled proportionally into the rectangle, centred.
bool drawPictureScaled(cairo_t* cairo, cairo_surface_t* picture, const Rect& rect, bool sharpWhenEnlarged) {
    if (cairo_surface_status(picture) != CAIRO_STATUS_SUCCESS) return false;
    double width = cairo_image_surface_get_width(picture), height = cairo_image_surface_get_height(picture);
    if (width <= 0 || height <= 0) return false;
    double scale = std::min(rect.width() / width, rect.height() / height);
    double shownWidth = width * scale, shownHeight = height * scale;
    cairo_save(cairo);
    cairo_translate(cairo, rect.midX() - shownWidth / 2, rect.midY() + shownHeight / 2);
    cairo_scale(cairo, scale, -scale);  // picture rows run downwards
    cairo_set_source_surface(cairo, picture, 0, 0);
    bool nearest = sharpWhenEnlarged && scale >= 1;
    cairo_pattern_set_filter(cairo_get_source(cairo), nearest ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_rectangle(cairo, 0, 0, width, height);
    cairo_fill(cairo);
    cairo_restore(cairo);
    return true;
}

}  // namespace

bool DrawContext::drawImageFile(const std::filesystem::path& file, const Rect& rect) {
    if (file.empty() || rect.isEmpty()) return false;
    cairo_surface_t* picture = cairo_image_surface_create_from_png(file.c_str());
    bool drawn = drawPictureScaled(cairo_, picture, rect, false);
    cairo_surface_destroy(picture);
    return drawn;
}

bool DrawContext::drawImage(const imaging::Image& image, const Rect& rect) {
    if (rect.isEmpty()) return false;
    Surface picture(image);
    return picture.isValid() && drawPictureScaled(cairo_, picture.surface(), rect, true);
}

}  // namespace jtk::desktop

// What a view draws with: shapes, gradients, text and pictures in the view's
// own coordinates (points, origin at the bottom left, y up, as views are
// never flipped). The context flips to image rows once, underneath, so no
// view deals with rows. Text comes from the desktop's own fonts (Font.h).
// Main thread only, like all drawing.
#pragma once

#include "JTK/imaging/Image.h"

#include <filesystem>
#include <string>

#include "JTK/desktop/render/Color.h"
#include "JTK/desktop/render/Font.h"
#include "JTK/platform/Geometry.h"

struct _cairo;

namespace jtk::desktop {

enum class TextAlignment { left, center, right };

struct TextStyle {
    Font font = Font::system();
    Color color = palette::text;
    TextAlignment alignment = TextAlignment::left;
    // Word-wrapped to the rectangle's width from its top edge; otherwise one
    // line, centred vertically in the rectangle.
    bool wraps = false;
};

class DrawContext {
public:
    // Wraps a cairo context whose user space is the image's (rows down) with
    // the image height given; the context then draws y up.
    DrawContext(_cairo* cairo, double imageHeight);
    DrawContext(const DrawContext&) = delete;
    DrawContext& operator=(const DrawContext&) = delete;

    // The underlying cairo context, in y-up coordinates, for drawing the
    // helpers below do not cover.
    _cairo* cairo() const { return cairo_; }

    // State: nested save and restore, moving the origin, clipping.
    void save();
    void restore();
    void translate(double dx, double dy);
    void clipToRect(const platform::Rect& rect);

    // Shapes. A stroke of width w lies centred on the path: inset rectangles
    // by w / 2 to keep the line inside.
    void fillRect(const platform::Rect& rect, const Color& color);
    void fillRoundedRect(const platform::Rect& rect, double radius, const Color& color);
    void strokeRoundedRect(const platform::Rect& rect, double radius, const Color& color, double lineWidth = 1);
    // A vertical gradient from the top colour to the bottom colour.
    void fillRoundedRectGradient(const platform::Rect& rect, double radius, const Color& top, const Color& bottom);
    void fillEllipse(const platform::Rect& rect, const Color& color);
    void strokeEllipse(const platform::Rect& rect, const Color& color, double lineWidth = 1);
    void strokeLine(platform::Point from, platform::Point to, const Color& color, double lineWidth = 1);
    // A soft shadow under a rounded rectangle, drawn outside and below it.
    void dropShadow(const platform::Rect& rect, double radius, double spread);

    // Text. Logical size of a text in one line (or wrapped to width when
    // width > 0).
    platform::Size measureText(const std::string& text, const Font& font, double width = 0) const;
    // The same size without a context: the layout depends on the font only.
    static platform::Size textSize(const std::string& text, const Font& font, double width = 0);
    // The x offset of the byte index in a one-line text.
    double textOffset(const std::string& text, const Font& font, size_t byteIndex) const;
    void drawText(const std::string& text, const platform::Rect& rect, const TextStyle& style);

    // The PNG file scaled proportionally into the rectangle, centred; false
    // (nothing drawn) when the file cannot be read as a picture.
    bool drawImageFile(const std::filesystem::path& file, const platform::Rect& rect);
    // The same for a bitmap; a picture enlarged to fit keeps its pixels sharp.
    bool drawImage(const imaging::Image& image, const platform::Rect& rect);

private:
    _cairo* cairo_;
};

}  // namespace jtk::desktop

// Views that hold others: plain views (a window's content view paints the
// window background), boxes, clip views, scroll views with their scrollers,
// and image views.
#include <algorithm>

#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/ClipView.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "JTK/desktop/render/DrawContext.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

constexpr double boxTitleHeight = 16;
constexpr double scrollerWidth = 7;
constexpr double scrollerInset = 3;
constexpr double smallestKnob = 20;

// The knob of one scroller along a track: where the shown part lies in the
// document, as (start, length) along the track.
std::pair<double, double> knobSpan(double trackLength, double shownStart, double shownLength, double documentStart,
                                   double documentLength) {
    double length = std::clamp(trackLength * shownLength / documentLength, std::min(smallestKnob, trackLength), trackLength);
    double range = documentLength - shownLength;
    double fraction = range > 0 ? std::clamp((shownStart - documentStart) / range, 0.0, 1.0) : 0;
    return {fraction * (trackLength - length), length};
}

}  // namespace

void View::draw(DrawContext& context) const {
    auto window = desktopWindow();
    if (window && window->desktopContentView().get() == this) context.fillRect(bounds(), palette::windowBackground);
}

void Box::draw(DrawContext& context) const {
    Rect all = bounds();
    Rect body = all;
    if (!title_.empty()) {
        body.size.height = std::max(0.0, all.height() - boxTitleHeight);
        context.drawText(title_, {all.minX() + 6, body.maxY(), all.width() - 12, boxTitleHeight},
                         {Font::small(), palette::secondaryText});
    }
    Rect inset{body.minX() + 0.5, body.minY() + 0.5, body.width() - 1, body.height() - 1};
    context.fillRoundedRect(inset, 5, Color::grey(0, 0.035));
    context.strokeRoundedRect(inset, 5, Color::grey(0, 0.13));
}

void ClipView::draw(DrawContext& context) const { context.fillRect(bounds(), palette::textBackground); }

void ScrollView::drawOverSubviews(DrawContext& context) const {
    Rect all = bounds();
    auto document = documentView();
    if (document) {
        Rect shown = clipView_->bounds(), area = document->frame();
        bool vertical = area.height() > shown.height(), horizontal = area.width() > shown.width();
        if (vertical) {
            double trackBottom = scrollerInset + (horizontal ? scrollerWidth + scrollerInset : 0);
            double track = all.height() - scrollerInset - trackBottom;
            // The top of the document is at its maximum y: measure from there.
            auto [offset, length] = knobSpan(track, area.maxY() - shown.maxY(), shown.height(), 0, area.height());
            Rect knob{all.maxX() - scrollerInset - scrollerWidth, all.maxY() - scrollerInset - offset - length,
                      scrollerWidth, length};
            context.fillRoundedRect(knob, scrollerWidth / 2, Color::grey(0, 0.38));
        }
        if (horizontal) {
            double trackRight = scrollerInset + (vertical ? scrollerWidth + scrollerInset : 0);
            double track = all.width() - scrollerInset - trackRight;
            auto [offset, length] = knobSpan(track, shown.minX(), shown.width(), area.minX(), area.width());
            Rect knob{all.minX() + scrollerInset + offset, all.minY() + scrollerInset, length, scrollerWidth};
            context.fillRoundedRect(knob, scrollerWidth / 2, Color::grey(0, 0.38));
        }
    }
    context.strokeRoundedRect({all.minX() + 0.5, all.minY() + 0.5, all.width() - 1, all.height() - 1}, 0,
                              palette::controlBorder);
}

void ImageView::draw(DrawContext& context) const {
    Rect all = bounds();
    if (image_ ? context.drawImage(*image_, all) : context.drawImageFile(imageFile_, all)) return;
    // No picture: a quiet frame with a cross, as an empty image well shows.
    Rect inset{all.minX() + 0.5, all.minY() + 0.5, all.width() - 1, all.height() - 1};
    context.fillRoundedRect(inset, 4, Color::grey(0.94));
    context.strokeRoundedRect(inset, 4, palette::separator);
    context.strokeLine({all.minX() + 6, all.minY() + 6}, {all.maxX() - 6, all.maxY() - 6}, palette::separator);
    context.strokeLine({all.minX() + 6, all.maxY() - 6}, {all.maxX() - 6, all.minY() + 6}, palette::separator);
}

}  // namespace jtk::desktop

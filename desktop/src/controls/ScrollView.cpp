#include "JTK/desktop/controls/ScrollView.h"

namespace jtk::desktop {

using platform::Rect;

ScrollView::ScrollView(const Rect& frame) : View(frame), clipView_(std::make_shared<ClipView>()) {
    clipView_->setFrame({0, 0, frame.width(), frame.height()});
    addSubview(clipView_);
}

void ScrollView::setFrame(const Rect& frame) {
    View::setFrame(frame);
    clipView_->setFrame({0, 0, frame.width(), frame.height()});
}

Rect ScrollView::documentVisibleRect() const {
    auto document = documentView();
    if (!document) return {};
    Rect visible = clipView_->bounds();
    visible.origin = {visible.minX() - document->frame().minX(), visible.minY() - document->frame().minY()};
    return platform::intersection(visible, document->bounds());
}

bool ScrollView::scrollToVisible(const View& view) {
    auto document = documentView();
    if (!document || (&view != document.get() && !view.isDescendantOf(*document))) return false;
    // Both conversions end at the same root, so this is the view's bounds in
    // the clip view's coordinates whether or not we are in a window.
    Rect target = clipView_->convertRectFromWindow(view.convertRectToWindow(view.bounds()));
    Rect shown = clipView_->bounds();
    auto scrollAxis = [](double origin, double length, double targetMin, double targetMax) {
        if (targetMin < origin || targetMax - targetMin > length) return targetMin;
        if (targetMax > origin + length) return targetMax - length;
        return origin;
    };
    platform::Point before = shown.origin;
    scroll({scrollAxis(shown.minX(), shown.width(), target.minX(), target.maxX()),
            scrollAxis(shown.minY(), shown.height(), target.minY(), target.maxY())});
    return clipView_->bounds().origin != before;
}

void ScrollView::scrollWheel(const platform::Event& event) {
    // Views are not flipped: the top of the document is at its maximum y.
    Rect shown = clipView_->bounds();
    scroll({shown.minX(), shown.minY() + event.scrollDeltaY});
}

}  // namespace jtk::desktop

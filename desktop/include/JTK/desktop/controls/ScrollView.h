// A scroll view: a frame around a clip view that shows part of a document
// view. Scrolling moves the clip view's bounds origin, so the document's
// place in the window shifts while its frame stays where it is. The scroll
// wheel scrolls it: a positive delta moves towards the top of the document.
// An application's "hbScrollToViewAnimated:" method can call scrollToVisible.
#pragma once

#include <memory>

#include "JTK/desktop/View.h"
#include "JTK/desktop/controls/ClipView.h"

namespace jtk::desktop {

class ScrollView : public View {
public:
    explicit ScrollView(const platform::Rect& frame = {});

    bool isScrollView() const override { return true; }
    void setFrame(const platform::Rect& frame) override;

    std::shared_ptr<ClipView> contentView() const { return clipView_; }
    std::shared_ptr<View> documentView() const { return clipView_->documentView(); }
    void setDocumentView(const std::shared_ptr<View>& view) { clipView_->setDocumentView(view); }
    // The size of the area that shows the document.
    platform::Size contentSize() const { return clipView_->frame().size; }
    // The part of the document in view, in the document's coordinates.
    platform::Rect documentVisibleRect() const;

    // Scrolls so that the clip view's bounds origin is at the point (kept
    // inside the document).
    void scroll(platform::Point point) { clipView_->scrollToPoint(point); }
    // Scrolls as little as needed to bring a view inside the document into
    // view. False when the view is not in the document or nothing moved.
    bool scrollToVisible(const View& view);

    void scrollWheel(const platform::Event& event) override;

    // The border and, where the document is larger than the clip view, the
    // scrollers, over the document.
    void drawOverSubviews(DrawContext& context) const override;

private:
    std::shared_ptr<ClipView> clipView_;
};

}  // namespace jtk::desktop

// The clip view of a scroll view: it shows part of its document view (its
// one subview) and scrolls it by moving its own bounds origin.
#pragma once

#include <memory>

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class ClipView : public View {
public:
    using View::View;

    std::shared_ptr<View> documentView() const;
    void setDocumentView(const std::shared_ptr<View>& view);
    // Moves the bounds origin to the point, kept inside the document so
    // that no space shows past its edges; nothing moves without a document.
    void scrollToPoint(platform::Point point);

    bool clipsSubviews() const override { return true; }
    // The document area's white background.
    void draw(DrawContext& context) const override;
};

}  // namespace jtk::desktop

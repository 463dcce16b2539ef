// The root view of a window: it covers the whole window frame (title bar
// included), has no superview, and its only subview is the content view.
#pragma once

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class FrameView : public View {
public:
    using View::View;

    // The window's background and its title bar with title and buttons.
    void draw(DrawContext& context) const override;
    // The outline around the whole window.
    void drawOverSubviews(DrawContext& context) const override;

private:
    friend class Window;
    using View::setHostWindow;
};

}  // namespace jtk::desktop

// The root view of a window: it covers the whole window frame (title bar
// included), has no superview, and its only subview is the content view.
#pragma once

#include "JTK/desktop/View.h"

namespace jtk::desktop {

class FrameView : public View {
public:
    using View::View;

private:
    friend class Window;
    using View::setHostWindow;
};

}  // namespace jtk::desktop

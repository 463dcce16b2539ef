// What the framework reads of a view: its place in the hierarchy, geometry
// (origin bottom left, y up, never flipped), visibility and accessibility value.
#pragma once

#include <memory>
#include <vector>

#include "JTK/platform/Geometry.h"
#include "JTK/platform/Object.h"

namespace jtk::platform {

class Window;

class View : public Object {
public:
    virtual std::shared_ptr<View> superview() const = 0;
    virtual std::vector<std::shared_ptr<View>> subviews() const = 0;
    virtual std::shared_ptr<Window> window() const = 0;
    virtual bool isHidden() const = 0;
    // Frame in the superview's coordinates; bounds in the view's own.
    virtual Rect frame() const = 0;
    virtual Rect bounds() const = 0;
    // The part of the bounds not clipped by enclosing clip views and the window.
    virtual Rect visibleRect() const = 0;
    // A rectangle in the view's coordinates converted to its window's coordinates.
    virtual Rect convertRectToWindow(const Rect& rect) const = 0;
    // Text for text fields and labels, a checkbox's state as "0" or "1", a
    // number for sliders, none otherwise.
    virtual Value accessibilityValue() const = 0;
    virtual bool isScrollView() const { return false; }
};

}  // namespace jtk::platform

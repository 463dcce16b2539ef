// The desktop's view: a rectangle in its superview that owns an ordered list
// of subviews. Geometry has its origin at the bottom left with y growing
// upwards (views are never flipped); a view's bounds origin is (0, 0) unless a
// clip view scrolls it. Event hooks are virtual so that controls can react to
// the mouse and the keyboard. Views live in shared pointers (std::make_shared).
// Main thread only, like all UI state.
#pragma once

#include <memory>
#include <vector>

#include "JTK/platform/Events.h"
#include "JTK/platform/View.h"

namespace jtk::desktop {

class DrawContext;
class Window;

class View : public platform::View {
public:
    explicit View(platform::Rect frame = {});
    ~View() override;

    // Hierarchy. A view has one superview: adding it elsewhere takes it out of
    // its old one first. Returns false (and changes nothing) for a null view,
    // the view itself, or one of its ancestors, which would make a cycle.
    bool addSubview(const std::shared_ptr<View>& view);
    void removeFromSuperview();
    std::shared_ptr<platform::View> superview() const override { return desktopSuperview(); }
    std::shared_ptr<View> desktopSuperview() const;
    std::vector<std::shared_ptr<platform::View>> subviews() const override;
    const std::vector<std::shared_ptr<View>>& desktopSubviews() const { return subviews_; }
    bool isDescendantOf(const View& ancestor) const;

    // The window whose frame view is the root of this view's tree, if any.
    std::shared_ptr<platform::Window> window() const override;
    std::shared_ptr<Window> desktopWindow() const;

    // Geometry.
    platform::Rect frame() const override { return frame_; }
    virtual void setFrame(const platform::Rect& frame) { frame_ = frame; }
    void setFrameOrigin(platform::Point origin) { setFrame({origin.x, origin.y, frame_.width(), frame_.height()}); }
    void setFrameSize(platform::Size size) { setFrame({frame_.minX(), frame_.minY(), size.width, size.height}); }
    platform::Rect bounds() const override { return {boundsOrigin_.x, boundsOrigin_.y, frame_.width(), frame_.height()}; }
    void setBoundsOrigin(platform::Point origin) { boundsOrigin_ = origin; }

    bool isHidden() const override { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }
    // True when this view or one of its ancestors is hidden.
    bool isHiddenOrHasHiddenAncestor() const;

    // Conversions between this view's coordinates and its window's (the
    // coordinates of the root of its tree when it is in no window).
    platform::Point convertPointToWindow(platform::Point point) const;
    platform::Point convertPointFromWindow(platform::Point point) const;
    platform::Rect convertRectToWindow(const platform::Rect& rect) const override;
    platform::Rect convertRectFromWindow(const platform::Rect& rect) const;
    // The bounds clipped by every enclosing clip view and by the window's
    // content area; the zero rectangle when nothing shows or the view is in no window.
    platform::Rect visibleRect() const override;
    // Clip views cut what their subviews show down to their own bounds.
    virtual bool clipsSubviews() const { return false; }

    platform::Value accessibilityValue() const override { return {}; }

    // Drawing, in the view's own coordinates and clipped to its bounds (see
    // render/Rendering.h): draw() paints under the subviews, drawOverSubviews()
    // on top of them. A plain view is transparent, except a window's content
    // view, which paints the window's background.
    virtual void draw(DrawContext& context) const;
    virtual void drawOverSubviews(DrawContext& /*context*/) const {}

    // The deepest visible view that contains the point (in the superview's
    // coordinates), the last subview first; null when the point misses.
    virtual View* hitTest(platform::Point pointInSuperview);

    // Event hooks, called on the main thread as events are delivered.
    virtual void mouseDown(const platform::Event& /*event*/, platform::Point /*pointInWindow*/) {}
    virtual void mouseDragged(const platform::Event& /*event*/, platform::Point /*pointInWindow*/) {}
    virtual void mouseUp(const platform::Event& /*event*/, platform::Point /*pointInWindow*/) {}
    virtual void keyDown(const platform::Event& /*event*/) {}
    virtual void scrollWheel(const platform::Event& /*event*/) {}

    // Keyboard focus. A window asks before it makes a view its first responder.
    virtual bool acceptsFirstResponder() const { return false; }
    virtual bool becomeFirstResponder() { return true; }
    virtual bool resignFirstResponder() { return true; }
    std::shared_ptr<View> nextKeyView() const { return nextKeyView_.lock(); }
    void setNextKeyView(std::shared_ptr<View> view) { nextKeyView_ = view; }

    std::shared_ptr<View> sharedView() { return std::static_pointer_cast<View>(shared_from_this()); }

protected:
    // Set on a window's frame view only: the root of a tree that is in a window.
    void setHostWindow(const std::shared_ptr<Window>& window) { hostWindow_ = window; }

private:
    friend class Window;
    platform::Point toSuperview(platform::Point point) const;
    platform::Point fromSuperview(platform::Point point) const;

    platform::Rect frame_;
    platform::Point boundsOrigin_;
    bool hidden_ = false;
    // A back link that the superview clears when it lets go of this view or
    // is destroyed, so it never dangles; it lets a view build its subviews in
    // its constructor. superview() hands it out as a shared pointer.
    View* superview_ = nullptr;
    std::vector<std::shared_ptr<View>> subviews_;
    std::weak_ptr<View> nextKeyView_;
    std::weak_ptr<Window> hostWindow_;
};

}  // namespace jtk::desktop

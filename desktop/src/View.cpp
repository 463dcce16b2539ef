#include "JTK/desktop/View.h"

#include <algorithm>

#include "JTK/desktop/Window.h"

namespace jtk::desktop {

using platform::Point;
using platform::Rect;

View::View(Rect frame) : frame_(frame) {}

View::~View() {
    // Children that live on elsewhere must not point back at us.
    for (auto& child : subviews_) child->superview_ = nullptr;
}

bool View::addSubview(const std::shared_ptr<View>& view) {
    // The argument may be the very pointer the old superview holds: keep our own.
    std::shared_ptr<View> child = view;
    if (!child || child.get() == this || isDescendantOf(*child)) return false;
    child->removeFromSuperview();
    subviews_.push_back(child);
    child->superview_ = this;
    return true;
}

void View::removeFromSuperview() {
    View* parent = superview_;
    if (!parent) return;
    // The superview may hold the only reference: stay alive until we are done.
    auto protector = weak_from_this().lock();
    if (auto window = desktopWindow()) window->viewWillLeave(*this);
    auto& siblings = parent->subviews_;
    superview_ = nullptr;
    auto it = std::find_if(siblings.begin(), siblings.end(), [&](const auto& v) { return v.get() == this; });
    if (it != siblings.end()) siblings.erase(it);
}

std::shared_ptr<View> View::desktopSuperview() const {
    // Empty while the superview is being destroyed, as a weak link would be.
    return superview_ ? std::static_pointer_cast<View>(superview_->weak_from_this().lock()) : nullptr;
}

std::vector<std::shared_ptr<platform::View>> View::subviews() const { return {subviews_.begin(), subviews_.end()}; }

bool View::isDescendantOf(const View& ancestor) const {
    for (const View* v = superview_; v; v = v->superview_)
        if (v == &ancestor) return true;
    return false;
}

std::shared_ptr<Window> View::desktopWindow() const {
    const View* root = this;
    while (root->superview_) root = root->superview_;
    return root->hostWindow_.lock();
}

std::shared_ptr<platform::Window> View::window() const { return desktopWindow(); }

bool View::isHiddenOrHasHiddenAncestor() const {
    for (const View* v = this; v; v = v->superview_)
        if (v->hidden_) return true;
    return false;
}

// A point in this view's coordinates seen from the superview: undo the
// scrolling of our own bounds, then place it at our frame.
Point View::toSuperview(Point point) const {
    return {point.x - boundsOrigin_.x + frame_.minX(), point.y - boundsOrigin_.y + frame_.minY()};
}

Point View::fromSuperview(Point point) const {
    return {point.x - frame_.minX() + boundsOrigin_.x, point.y - frame_.minY() + boundsOrigin_.y};
}

Point View::convertPointToWindow(Point point) const {
    for (const View* v = this; v; v = v->superview_) point = v->toSuperview(point);
    return point;
}

Point View::convertPointFromWindow(Point point) const {
    std::vector<const View*> chain;  // this view first, the root last
    for (const View* v = this; v; v = v->superview_) chain.push_back(v);
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) point = (*it)->fromSuperview(point);
    return point;
}

Rect View::convertRectToWindow(const Rect& rect) const {
    Point origin = convertPointToWindow(rect.origin);
    return {origin.x, origin.y, rect.width(), rect.height()};
}

Rect View::convertRectFromWindow(const Rect& rect) const {
    Point origin = convertPointFromWindow(rect.origin);
    return {origin.x, origin.y, rect.width(), rect.height()};
}

Rect View::visibleRect() const {
    auto window = desktopWindow();
    if (!window) return {};
    // Carry the bounds up the tree, cutting at every clip view on the way,
    // then cut at the window's content area and bring what is left back.
    Rect rect = bounds();
    for (const View* view = this; view; view = view->superview_) {
        if (view->clipsSubviews()) rect = platform::intersection(rect, view->bounds());
        if (rect.isEmpty()) return {};
        if (view->superview_) rect.origin = view->toSuperview(rect.origin);
    }
    rect = platform::intersection(rect, window->contentRectInWindow());
    if (rect.isEmpty()) return {};
    return convertRectFromWindow(rect);
}

View* View::hitTest(Point pointInSuperview) {
    if (hidden_ || !platform::pointInRect(pointInSuperview, frame_)) return nullptr;
    Point local = fromSuperview(pointInSuperview);
    for (auto it = subviews_.rbegin(); it != subviews_.rend(); ++it)
        if (View* hit = (*it)->hitTest(local)) return hit;
    return this;
}

}  // namespace jtk::desktop

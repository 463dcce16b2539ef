#include "JTK/desktop/Window.h"

#include <atomic>

#include "JTK/desktop/Application.h"
#include "JTK/platform/Notifications.h"

namespace jtk::desktop {

using platform::Point;
using platform::Rect;

namespace {

int nextWindowNumber() {
    static std::atomic<int> next{1};
    return next++;
}

}  // namespace

Window::Window(const Rect& contentRect, std::string title)
    : contentRect_(contentRect),
      title_(std::move(title)),
      frameView_(std::make_shared<FrameView>()),
      contentView_(std::make_shared<View>()),
      windowNumber_(nextWindowNumber()) {}

void Window::didCreate() {
    frameView_->setHostWindow(sharedWindow());
    frameView_->addSubview(contentView_);
    layOutRootViews();
    Application::shared()->addWindow(sharedWindow());
}

void Window::layOutRootViews() {
    frameView_->setFrame({0, 0, contentRect_.width(), contentRect_.height() + titleBarHeight});
    if (contentView_) contentView_->setFrame(contentRectInWindow());
}

std::shared_ptr<platform::View> Window::contentView() const { return contentView_; }

void Window::setContentView(const std::shared_ptr<View>& view) {
    std::shared_ptr<View> content = view;  // may be a reference into a view tree we are about to change
    if (!content || content == contentView_) return;
    if (contentView_) contentView_->removeFromSuperview();
    contentView_ = content;
    frameView_->addSubview(contentView_);
    contentView_->setFrame(contentRectInWindow());
}

Rect Window::frame() const {
    return {contentRect_.minX(), contentRect_.minY(), contentRect_.width(), contentRect_.height() + titleBarHeight};
}

void Window::setContentRect(const Rect& contentRect) {
    contentRect_ = contentRect;
    layOutRootViews();
}

void Window::setFrameOrigin(Point origin) {
    contentRect_.origin = origin;  // the content area starts at the bottom of the frame
}

Rect Window::convertRectToScreen(const Rect& rect) const {
    return platform::offsetRect(rect, contentRect_.minX(), contentRect_.minY());
}

Rect Window::convertRectFromScreen(const Rect& rect) const {
    return platform::offsetRect(rect, -contentRect_.minX(), -contentRect_.minY());
}

Point Window::convertPointToScreen(Point point) const { return {point.x + contentRect_.minX(), point.y + contentRect_.minY()}; }

Point Window::convertPointFromScreen(Point point) const {
    return {point.x - contentRect_.minX(), point.y - contentRect_.minY()};
}

void Window::makeKeyAndOrderFront() {
    orderFront();
    if (canBecomeKey_) Application::shared()->setKeyWindow(sharedWindow());
}

void Window::orderFront() {
    auto app = Application::shared();
    app->addWindow(sharedWindow());  // a closed window that is shown again is listed again
    visible_ = true;
    app->bringToFront(*this);
}

void Window::orderOut() {
    if (!visible_) return;
    visible_ = false;
    Application::shared()->windowDidHide(*this);
}

void Window::close() {
    auto protector = sharedWindow();  // the list may hold the last reference
    platform::defaultNotificationCenter().post(platform::windowWillCloseNotification, platform::Value(protector));
    visible_ = false;
    auto app = Application::shared();
    app->removeWindow(*this);
    app->windowDidHide(*this);
}

bool Window::isKeyWindow() const { return Application::shared()->desktopKeyWindow().get() == this; }

std::shared_ptr<View> Window::firstResponder() const {
    auto responder = firstResponder_.lock();
    if (responder && responder->desktopWindow().get() == this) return responder;
    // A responder that left the window has lost the keys for good, as if the
    // window had taken them back when the view was removed.
    firstResponder_.reset();
    return nullptr;
}

void Window::viewWillLeave(const View& view) {
    auto responder = firstResponder_.lock();
    if (!responder || (responder.get() != &view && !responder->isDescendantOf(view))) return;
    firstResponder_.reset();
    responder->resignFirstResponder();  // it goes whatever it answers
}

bool Window::makeFirstResponder(const std::shared_ptr<View>& view) {
    std::shared_ptr<View> target = view;
    auto current = firstResponder();
    if (target == current) return true;
    if (target && (target->desktopWindow().get() != this || !target->acceptsFirstResponder())) return false;
    if (current && !current->resignFirstResponder()) return false;
    firstResponder_.reset();
    if (target && !target->becomeFirstResponder()) return false;
    firstResponder_ = target;
    return true;
}

}  // namespace jtk::desktop

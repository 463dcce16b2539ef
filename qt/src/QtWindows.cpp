#include "QtWindows.h"

#include <QApplication>

#include "JTK/platform/Notifications.h"
#include "QtObjectRuntime.h"
#include "QtScreens.h"
#include "QtViews.h"
#include "QtWindowOrder.h"
#include "QtWrappers.h"

namespace jtk::qt {

void activateTopLevel(QWidget* topLevel) {
    if (!topLevel) return;
    bringToFront(topLevel);
    topLevel->raise();
    // A window that takes no focus (a status item) comes to the front only.
    if (topLevel->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus)) return;
    topLevel->activateWindow();
    // A headless screen may not pass the request on; the widget layer then
    // learns the active window directly.
    if (QApplication::activeWindow() != topLevel) QApplication::setActiveWindow(topLevel);
}

QtWindow::QtWindow(QWidget* topLevel) : topLevel_(topLevel), frameView_(std::make_shared<QtFrameView>(topLevel)) {}

std::string QtWindow::className() const { return topLevel_ ? qtClassName(topLevel_) : "QWidget"; }

bool QtWindow::respondsToSelector(const std::string& selector) const {
    return Window::respondsToSelector(selector) || qtRespondsToSelector(topLevel_, selector);
}

platform::Value QtWindow::performSelector(const std::string& selector, const platform::Value& argument) {
    if (Window::respondsToSelector(selector)) return Window::performSelector(selector, argument);
    return qtPerformSelector(topLevel_, selector);
}

std::shared_ptr<platform::View> QtWindow::contentView() const { return viewFor(topLevel_); }

std::shared_ptr<platform::View> QtWindow::frameView() const { return topLevel_ ? frameView_ : nullptr; }

std::string QtWindow::title() const { return qtTitle(topLevel_).value_or(std::string()); }

platform::Rect QtWindow::frame() const {
    return topLevel_ ? screenRectFromGlobal(QRectF(topLevel_->frameGeometry())) : platform::Rect{};
}

platform::Rect QtWindow::convertRectToScreen(const platform::Rect& rect) const {
    platform::Rect windowFrame = frame();
    return offsetRect(rect, windowFrame.minX(), windowFrame.minY());
}

void QtWindow::makeKeyAndOrderFront() {
    if (!topLevel_) return;
    setClosed(topLevel_, false);
    topLevel_->show();
    activateTopLevel(topLevel_);
}

void QtWindow::close() {
    if (!topLevel_) return;
    // Keeps this wrapper (and so the notification's object) alive when the
    // widget deletes itself on close.
    auto self = shared_from_this();
    platform::defaultNotificationCenter().post(platform::windowWillCloseNotification, self);
    setClosed(topLevel_, true);
    if (topLevel_) topLevel_->close();
}

bool QtWindow::isVisible() const { return topLevel_ && topLevel_->isVisible(); }

bool QtWindow::isKeyWindow() const { return topLevel_ && QApplication::activeWindow() == topLevel_; }

std::shared_ptr<platform::Object> QtWindow::firstResponderObject() const {
    if (!topLevel_) return nullptr;
    QWidget* focus = topLevel_->focusWidget();
    if (!focus || focus == topLevel_) return nullptr;
    return viewFor(focus);
}

}  // namespace jtk::qt

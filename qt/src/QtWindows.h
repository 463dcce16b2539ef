// The window of a top-level widget. Its content view is the widget's view;
// its frame view is synthetic. Main thread only.
#pragma once

#include <QPointer>
#include <QWidget>

#include "JTK/platform/Window.h"

namespace jtk::qt {

class QtFrameView;

class QtWindow : public platform::Window {
public:
    explicit QtWindow(QWidget* topLevel);
    QWidget* widget() const { return topLevel_.data(); }

    std::string className() const override;
    bool respondsToSelector(const std::string& selector) const override;
    platform::Value performSelector(const std::string& selector, const platform::Value& argument = {}) override;

    std::shared_ptr<platform::View> contentView() const override;
    std::shared_ptr<platform::View> frameView() const override;
    std::string title() const override;
    platform::Rect frame() const override;
    platform::Rect convertRectToScreen(const platform::Rect& rect) const override;
    void makeKeyAndOrderFront() override;
    void close() override;
    bool isVisible() const override;
    bool isKeyWindow() const override;
    std::shared_ptr<platform::Object> firstResponderObject() const override;

private:
    QPointer<QWidget> topLevel_;
    std::shared_ptr<QtFrameView> frameView_;
};

// Makes the widget's window the active one, as a click on it would.
void activateTopLevel(QWidget* topLevel);

}  // namespace jtk::qt

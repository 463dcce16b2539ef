// The views of Qt widgets. A child widget's frame is in its parent's
// coordinates with y up; a top-level widget is the content view of its
// window, whose synthetic frame view (no widget) is the root of the tree.
// Main thread only.
#pragma once

#include <QPointer>
#include <QWidget>

#include "JTK/imaging/Image.h"
#include "JTK/platform/View.h"

namespace jtk::qt {

class QtView : public platform::View {
public:
    explicit QtView(QWidget* widget) : widget_(widget) {}
    QWidget* widget() const { return widget_.data(); }

    std::string className() const override;
    bool respondsToSelector(const std::string& selector) const override;
    platform::Value performSelector(const std::string& selector, const platform::Value& argument = {}) override;

    std::shared_ptr<platform::View> superview() const override;
    std::vector<std::shared_ptr<platform::View>> subviews() const override;
    std::shared_ptr<platform::Window> window() const override;
    bool isHidden() const override;
    platform::Rect frame() const override;
    platform::Rect bounds() const override;
    platform::Rect visibleRect() const override;
    platform::Rect convertRectToWindow(const platform::Rect& rect) const override;
    platform::Value accessibilityValue() const override;
    bool isScrollView() const override;

    // The picture set on an image view (a QLabel), as it was set.
    std::shared_ptr<const imaging::Image> shownImage() const { return shownImage_; }
    void setShownImage(std::shared_ptr<const imaging::Image> image) { shownImage_ = std::move(image); }

private:
    QPointer<QWidget> widget_;
    std::shared_ptr<const imaging::Image> shownImage_;
};

// The frame of a window: no widget of its own, the window's frame size,
// the content view its only subview.
class QtFrameView : public platform::View {
public:
    explicit QtFrameView(QWidget* topLevel) : topLevel_(topLevel) {}

    std::string className() const override { return "FrameView"; }
    std::shared_ptr<platform::View> superview() const override { return nullptr; }
    std::vector<std::shared_ptr<platform::View>> subviews() const override;
    std::shared_ptr<platform::Window> window() const override;
    bool isHidden() const override { return false; }
    platform::Rect frame() const override { return bounds(); }
    platform::Rect bounds() const override;
    platform::Rect visibleRect() const override { return bounds(); }
    platform::Rect convertRectToWindow(const platform::Rect& rect) const override { return rect; }
    platform::Value accessibilityValue() const override { return {}; }

private:
    QPointer<QWidget> topLevel_;
};

// The widget's top-left corner in its window's frame, y down (Qt's way).
QPoint widgetOriginInFrame(const QWidget* widget);

}  // namespace jtk::qt

// The views of GTK widgets, and the geometry they share with the windows.
// A window (a GtkWindow, or an open GtkPopover or other native surface) has
// a synthetic frame view the size of its surface, whose subviews are the
// content view (the window's or popover's child) and then the window's other
// children (a header bar set as titlebar). A child view's frame is in its
// superview's coordinates with y up. Popovers and other native widgets are
// windows of their own, never subviews. Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <memory>

#include "GtkWrapperRegistry.h"
#include "JTK/imaging/Image.h"
#include "JTK/platform/View.h"

namespace jtk::gtk {

class WidgetView : public platform::View {
public:
    explicit WidgetView(std::shared_ptr<WidgetHandle> handle) : handle_(std::move(handle)) {}
    GtkWidget* widget() const { return handle_->widget(); }

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

    // The picture set on an image view (a GtkPicture or GtkImage), as it was set.
    std::shared_ptr<const imaging::Image> shownImage() const { return shownImage_; }
    void setShownImage(std::shared_ptr<const imaging::Image> image) { shownImage_ = std::move(image); }

private:
    std::shared_ptr<WidgetHandle> handle_;
    std::shared_ptr<const imaging::Image> shownImage_;
};

// The frame of a window: no widget of its own, the surface's size.
class FrameView : public platform::View {
public:
    explicit FrameView(std::shared_ptr<WidgetHandle> native) : native_(std::move(native)) {}

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
    std::shared_ptr<WidgetHandle> native_;
};

// The widget standing for a native's content: a window's or popover's
// child, else the native itself (a tooltip, an empty window).
GtkWidget* contentWidgetOf(GtkWidget* native);
// The native widget (window, popover) whose surface the widget draws on.
GtkWidget* nativeWidgetOf(GtkWidget* widget);
// The size of a native's surface (its window frame), in points.
platform::Size surfaceSize(GtkWidget* native);
// The widget's bounds as a rectangle in its surface, y down; empty when the
// widget is not in a realized native.
platform::Rect rectOnSurface(GtkWidget* widget);

}  // namespace jtk::gtk

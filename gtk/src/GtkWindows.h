// The window of a native widget: a GtkWindow, or an open GtkPopover, popover
// menu or tooltip (GTK makes each a surface of its own). Its frame is its
// surface on the root window: the X11 window's position and the surface's
// size, shadows of client-side decorations included. Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <memory>

#include "GtkWrapperRegistry.h"
#include "JTK/platform/Window.h"

namespace jtk::gtk {

class FrameView;

class NativeWindow : public platform::Window {
public:
    explicit NativeWindow(std::shared_ptr<WidgetHandle> native);
    GtkWidget* native() const { return native_->widget(); }

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
    std::shared_ptr<WidgetHandle> native_;
    std::shared_ptr<FrameView> frameView_;
};

// The window's frame on screen (y up); empty for a native without surface.
platform::Rect screenFrameOf(GtkWidget* native);

}  // namespace jtk::gtk

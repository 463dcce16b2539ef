// A window: a frame view whose only subview is the content view.
#pragma once

#include <memory>
#include <string>

#include "JTK/platform/Geometry.h"
#include "JTK/platform/Object.h"

namespace jtk::platform {

class View;

// Posted with the window as object just before it closes.
inline constexpr const char* windowWillCloseNotification = "WindowWillCloseNotification";

class Window : public Object {
public:
    virtual std::shared_ptr<View> contentView() const = 0;
    virtual std::shared_ptr<View> frameView() const = 0;
    virtual std::string title() const = 0;
    // Frame on screen (origin bottom left of the main screen, y up).
    virtual Rect frame() const = 0;
    virtual Rect convertRectToScreen(const Rect& rect) const = 0;
    virtual void makeKeyAndOrderFront() = 0;
    // Hides the window and takes it out of the application's window list; it
    // can be shown again.
    virtual void close() = 0;
    virtual bool isVisible() const = 0;
    virtual bool isKeyWindow() const = 0;
    // The object that receives the window's key events; none when the window itself does.
    virtual std::shared_ptr<Object> firstResponderObject() const = 0;
};

}  // namespace jtk::platform

// A window on the embedded desktop. It is placed by its content rectangle on
// screen; its frame adds a title bar of titleBarHeight points on top of the
// content. Window coordinates have their origin at the bottom left of the
// frame, so the content view sits at (0, 0) and the title bar above it.
// A window belongs to the application's window list from creation until it
// is closed; ordering out only hides it. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "JTK/desktop/FrameView.h"
#include "JTK/desktop/View.h"
#include "JTK/platform/Window.h"

namespace jtk::desktop {

class Window : public platform::Window {
public:
    static constexpr double titleBarHeight = 22;
    // Window levels: higher levels stay in front of lower ones.
    static constexpr int normalLevel = 0;
    static constexpr int floatingLevel = 3;
    static constexpr int statusLevel = 25;

    // Creates a window (of class W) and adds it to the application's window
    // list. It starts hidden; makeKeyAndOrderFront() shows it.
    template <class W = Window, class... Args>
    static std::shared_ptr<W> make(Args&&... args) {
        auto window = std::make_shared<W>(std::forward<Args>(args)...);
        window->didCreate();
        return window;
    }

    // Use make(): a window needs to be in a shared pointer before it can be listed.
    Window(const platform::Rect& contentRect, std::string title);

    std::shared_ptr<platform::View> contentView() const override;
    std::shared_ptr<View> desktopContentView() const { return contentView_; }
    // Replaces the content view; the new one is sized to the content area.
    void setContentView(const std::shared_ptr<View>& view);
    std::shared_ptr<platform::View> frameView() const override { return frameView_; }
    std::shared_ptr<FrameView> desktopFrameView() const { return frameView_; }

    std::string title() const override { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    // Frame on screen: the content rectangle plus the title bar.
    platform::Rect frame() const override;
    platform::Rect contentRect() const { return contentRect_; }
    // The content area in window coordinates: (0, 0, content width, content height).
    platform::Rect contentRectInWindow() const { return {0, 0, contentRect_.width(), contentRect_.height()}; }
    void setContentRect(const platform::Rect& contentRect);
    void setFrameOrigin(platform::Point origin);

    platform::Rect convertRectToScreen(const platform::Rect& rect) const override;
    platform::Rect convertRectFromScreen(const platform::Rect& rect) const;
    platform::Point convertPointToScreen(platform::Point point) const;
    platform::Point convertPointFromScreen(platform::Point point) const;

    // Shows the window in front of the others of its level and makes it key.
    void makeKeyAndOrderFront() override;
    void orderFront();
    // Hides the window; it stays in the window list.
    void orderOut();
    // Posts the will-close notification, hides the window and takes it out
    // of the window list.
    void close() override;
    bool isVisible() const override { return visible_; }
    bool isKeyWindow() const override;
    bool canBecomeKeyWindow() const { return canBecomeKey_; }
    void setCanBecomeKeyWindow(bool flag) { canBecomeKey_ = flag; }
    int level() const { return level_; }
    void setLevel(int level) { level_ = level; }

    // The view that receives key events: null when the window itself has
    // them, or when the responder has left the window.
    std::shared_ptr<View> firstResponder() const;
    std::shared_ptr<platform::Object> firstResponderObject() const override { return firstResponder(); }
    // A view in this window that accepts (and whose current responder lets
    // go) becomes first responder; null hands the keys back to the window.
    bool makeFirstResponder(const std::shared_ptr<View>& view);

    // Unique among the windows of this process, from 1 up.
    int windowNumber() const { return windowNumber_; }
    // Higher is nearer the front among windows of the same level.
    uint64_t orderStamp() const { return orderStamp_; }

    std::shared_ptr<Window> sharedWindow() { return std::static_pointer_cast<Window>(shared_from_this()); }

private:
    friend class Application;
    friend class View;
    void didCreate();
    // A view is leaving the window: a first responder inside it resigns.
    void viewWillLeave(const View& view);
    void layOutRootViews();

    platform::Rect contentRect_;
    std::string title_;
    std::shared_ptr<FrameView> frameView_;
    std::shared_ptr<View> contentView_;
    mutable std::weak_ptr<View> firstResponder_;  // cleared when found outside the window
    bool visible_ = false;
    bool canBecomeKey_ = true;
    int level_ = normalLevel;
    int windowNumber_;
    uint64_t orderStamp_ = 0;
};

}  // namespace jtk::desktop

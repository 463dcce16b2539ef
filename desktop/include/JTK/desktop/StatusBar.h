// The system status bar of the embedded desktop. Each item is a borderless
// status-level window in the menu bar, at its right end (the first item
// rightmost), whose content view is the item's button. The window is in the
// application's window list like any other; it never becomes key.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/platform/StatusBar.h"

namespace jtk::desktop {

// A status item's button: its title on the menu bar, highlighted while pressed.
class StatusBarButton : public Button {
public:
    using Button::Button;
    void draw(DrawContext& context) const override;
};

class StatusItem : public platform::StatusItem {
public:
    explicit StatusItem(double length);
    std::string title() const override;
    // Shows the item's window (again, after the window list was cleared).
    void setTitle(const std::string& title) override;
    void setAction(std::function<void()> action) override { action_ = std::move(action); }
    std::shared_ptr<platform::View> button() const override { return button_; }
    const std::shared_ptr<Window>& window() const { return window_; }
    // The width on the menu bar: the fixed length, or one that fits the title.
    double width() const;

private:
    friend class StatusBar;
    double length_;
    std::shared_ptr<StatusBarButton> button_;
    std::shared_ptr<Window> window_;
    std::function<void()> action_;
};

class StatusBar {
public:
    static StatusBar& system();
    std::shared_ptr<StatusItem> statusItemWithLength(double length);
    // Places every item's window at the right end of the menu bar.
    void layOut();

private:
    std::vector<std::shared_ptr<StatusItem>> items_;
};

}  // namespace jtk::desktop

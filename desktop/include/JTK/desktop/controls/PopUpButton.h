// A pop-up button: a button that shows one item of its menu, the selected
// one, and opens the menu to choose another. Its title is the selected
// item's title. A press opens the menu below the button and tracks it; an
// item of the menu that performs its action (chosen with the mouse or
// performed by the program) becomes the selected item, and the pop-up button
// then sends its own action.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "JTK/desktop/controls/Button.h"
#include "JTK/platform/Menu.h"

namespace jtk::desktop {

class PopUpButton : public Button {
public:
    explicit PopUpButton(const platform::Rect& frame = {}, std::shared_ptr<platform::Menu> menu = {});
    ~PopUpButton() override;

    std::shared_ptr<platform::Menu> menu() const { return menu_; }
    void setMenu(std::shared_ptr<platform::Menu> menu);
    // Appends an item to the menu (made on first use); the first item added
    // to an empty pop-up button becomes the selected one.
    void addItemWithTitle(const std::string& title);

    std::string title() const override { return selectedItemTitle_; }
    const std::string& titleOfSelectedItem() const { return selectedItemTitle_; }
    // Selects the item of that title; the empty title selects nothing.
    void selectItemWithTitle(std::string title);
    // Index of the selected item in the menu; -1 when there is none.
    int indexOfSelectedItem() const;

    void mouseDown(const platform::Event& event, platform::Point pointInWindow) override;
    void mouseDragged(const platform::Event&, platform::Point) override {}
    void mouseUp(const platform::Event&, platform::Point) override {}

    // A bezel with the selected item's title and the up-and-down arrows.
    void draw(DrawContext& context) const override;

private:
    void observeMenu();

    std::shared_ptr<platform::Menu> menu_;
    std::string selectedItemTitle_;
    uint64_t menuObserver_ = 0;
};

}  // namespace jtk::desktop

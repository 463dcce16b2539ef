// A menu: an ordered list of items that it owns. A menu pops up as a column
// of 20-point rows on screen and tracks in a nested run loop (event-tracking
// mode, which still serves the main queue) until an item is chosen by a
// click, a click lands outside, Escape is pressed or cancelTracking() is
// called. While it tracks it is the tracking menu that receives the
// application's mouse and key events.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/desktop/MenuBar.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Geometry.h"
#include "JTK/platform/Menu.h"
#include "JTK/platform/View.h"

namespace jtk::desktop {

// Posted after a menu's tracking loop has ended, with the menu as object.
inline constexpr const char* menuDidEndTrackingNotification = "MenuDidEndTrackingNotification";

class Menu : public platform::Menu {
public:
    static constexpr double rowHeight = 20;

    explicit Menu(std::string title = {});
    static std::shared_ptr<Menu> make(std::string title = {});

    std::string title() const override { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    std::vector<std::shared_ptr<platform::MenuItem>> itemArray() const override;
    const std::vector<std::shared_ptr<MenuItem>>& items() const { return items_; }
    int numberOfItems() const { return static_cast<int>(items_.size()); }
    std::shared_ptr<MenuItem> itemAtIndex(int index) const;
    std::shared_ptr<MenuItem> itemWithTitle(const std::string& title) const;
    int indexOfItem(const std::shared_ptr<platform::MenuItem>& item) const override;
    int indexOfItemWithTitle(const std::string& title) const;

    // An item belongs to one menu: adding it here takes it out of its old one.
    void addItem(const std::shared_ptr<MenuItem>& item);
    // Index past the end appends; a negative index inserts at the front.
    void insertItem(const std::shared_ptr<MenuItem>& item, int index);
    void removeItem(const std::shared_ptr<MenuItem>& item);
    void removeItemAtIndex(int index);
    void removeAllItems();
    // The item whose submenu this is, if any.
    std::shared_ptr<MenuItem> parentItem() const { return parentItem_.lock(); }

    // Runs the item's action (enabled items only) and posts
    // menuDidSendActionNotification with the item under "MenuItem".
    void performActionForItemAtIndex(int index) override;
    // Performs the item of this menu or its submenus whose key equivalent the
    // key-down matches; true when one was performed.
    bool performKeyEquivalent(const platform::Event& keyDown);

    // Shows the menu with its top left corner at a screen point and tracks
    // it until it closes; returns the item chosen by a click, if any (its
    // action has been performed by then). view is the view it pops up for.
    // Returns at once (null) when another menu is tracking.
    std::shared_ptr<MenuItem> popUp(platform::Point topLeftOnScreen, const std::shared_ptr<platform::View>& view = {});

    // How a menu-bar menu came to open: by a press on its title, or by the
    // pointer moving onto its title from another title's open menu, with the
    // button down (a drag) or up.
    enum class BarOpening { byPress, byDrag, byMove };
    struct BarSwitch {
        MenuBarTitle title;
        BarOpening how;
    };
    // Tracks the menu of a menu-bar title, its top left corner at a screen
    // point (below the title). Returns the title whose menu opens next when
    // the pointer went on to another title; none when the menu closed
    // otherwise (a chosen item has been performed by then), or when another
    // menu is tracking.
    std::optional<BarSwitch> trackFromMenuBar(platform::Point topLeftOnScreen, BarOpening how);
    void cancelTracking() override;
    bool isTracking() const;
    // Where the open menu is on screen; empty while it is closed.
    platform::Rect frameOnScreen() const { return frame_; }
    std::shared_ptr<platform::View> popUpView() const { return popUpView_.lock(); }
    double width() const;

    // The menu whose tracking loop runs now (main thread), if any.
    static std::shared_ptr<Menu> trackingMenu();
    // The menus on screen while a menu tracks, the root first and each open
    // submenu after its parent; empty when none tracks (main thread).
    static std::vector<std::shared_ptr<Menu>> openMenus();
    // The row the tracking loop highlights in this menu; -1 when none.
    int highlightedRow() const;
    // Gives an event to the tracking menu; false when no menu tracks.
    static bool handleTrackingEvent(const platform::Event& event);

    std::shared_ptr<Menu> sharedMenu() { return std::static_pointer_cast<Menu>(shared_from_this()); }

private:
    friend class MenuItem;
    struct Tracking;
    static Tracking* currentTracking;  // main thread only
    void adopt(const std::shared_ptr<MenuItem>& item);
    std::shared_ptr<MenuItem> track(platform::Point topLeftOnScreen, const std::shared_ptr<platform::View>& view,
                                    Tracking& tracking);
    int rowAt(platform::Point screenPoint) const;
    void openAt(platform::Point topLeftOnScreen);
    void close() { frame_ = {}; }

    std::string title_;
    std::vector<std::shared_ptr<MenuItem>> items_;
    std::weak_ptr<MenuItem> parentItem_;
    std::weak_ptr<platform::View> popUpView_;
    platform::Rect frame_;
};

}  // namespace jtk::desktop

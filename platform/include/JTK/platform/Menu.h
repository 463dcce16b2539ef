// Menus and menu items as the framework drives them: find an item by title,
// have its menu perform it, cancel tracking.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "JTK/platform/Object.h"

namespace jtk::platform {

class Menu;
class View;

// Posted on the main thread with the menu as object when a menu starts tracking.
inline constexpr const char* menuDidBeginTrackingNotification = "MenuDidBeginTrackingNotification";
// Posted when a menu has performed an item's action; user info holds the item under "MenuItem".
inline constexpr const char* menuDidSendActionNotification = "MenuDidSendActionNotification";

class MenuItem : public Object {
public:
    virtual std::string title() const = 0;
    virtual std::shared_ptr<Menu> submenu() const = 0;
    // The menu the item belongs to.
    virtual std::shared_ptr<Menu> menu() const = 0;
    virtual std::string keyEquivalent() const = 0;
    virtual uint64_t keyEquivalentModifierMask() const = 0;
    // Optional: the view a person clicks to open this item's submenu, where
    // the platform shows the item as a view of its own (a menu-bar title on
    // Qt); none where it does not (the embedded desktop's menu bar).
    virtual std::shared_ptr<View> titleView() const { return nullptr; }
};

class Menu : public Object {
public:
    virtual std::string title() const = 0;
    virtual std::vector<std::shared_ptr<MenuItem>> itemArray() const = 0;
    // Index of the item in this menu, -1 when it is not one of its items.
    virtual int indexOfItem(const std::shared_ptr<MenuItem>& item) const = 0;
    virtual void performActionForItemAtIndex(int index) = 0;
    // Ends the menu's tracking loop if it is tracking; closes the menu.
    virtual void cancelTracking() = 0;
};

}  // namespace jtk::platform

// A menu item: title, action, key equivalent with its modifier mask, enabled
// flag and state, and an optional submenu that the item owns. The menu the
// item belongs to is held weakly (the menu owns its items).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "JTK/platform/Events.h"
#include "JTK/platform/Menu.h"

namespace jtk::desktop {

class Menu;

class MenuItem : public platform::MenuItem {
public:
    using Action = std::function<void(MenuItem& item)>;
    enum State : int { mixedState = -1, offState = 0, onState = 1 };

    explicit MenuItem(std::string title = {}, Action action = {}, std::string keyEquivalent = {},
                      uint64_t keyEquivalentModifierMask = platform::eventFlags::command);
    static std::shared_ptr<MenuItem> make(std::string title, Action action = {}, std::string keyEquivalent = {},
                                          uint64_t keyEquivalentModifierMask = platform::eventFlags::command);
    // A disabled line between groups of items.
    static std::shared_ptr<MenuItem> separatorItem();

    std::string title() const override { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    std::shared_ptr<platform::Menu> submenu() const override;
    std::shared_ptr<Menu> desktopSubmenu() const { return submenu_; }
    // The item owns its submenu; a submenu hangs below one item at a time.
    void setSubmenu(std::shared_ptr<Menu> submenu);
    bool hasSubmenu() const { return submenu_ != nullptr; }
    std::shared_ptr<platform::Menu> menu() const override;
    std::shared_ptr<Menu> desktopMenu() const { return menu_.lock(); }

    std::string keyEquivalent() const override { return keyEquivalent_; }
    void setKeyEquivalent(std::string key) { keyEquivalent_ = std::move(key); }
    uint64_t keyEquivalentModifierMask() const override { return modifierMask_; }
    void setKeyEquivalentModifierMask(uint64_t mask) { modifierMask_ = mask; }
    // True when a key-down with these characters (unshifted) and flags is
    // this item's shortcut. An upper-case key equivalent implies shift.
    bool matchesKeyEquivalent(const std::string& unshiftedCharacters, uint64_t flags) const;

    const Action& action() const { return action_; }
    void setAction(Action action) { action_ = std::move(action); }
    bool isEnabled() const { return enabled_ && !separator_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    int state() const { return state_; }
    void setState(int state) { state_ = state; }
    int64_t tag() const { return tag_; }
    void setTag(int64_t tag) { tag_ = tag; }
    bool isSeparatorItem() const { return separator_; }

    std::shared_ptr<MenuItem> sharedItem() { return std::static_pointer_cast<MenuItem>(shared_from_this()); }

private:
    friend class Menu;
    std::string title_;
    Action action_;
    std::string keyEquivalent_;
    uint64_t modifierMask_;
    bool enabled_ = true;
    bool separator_ = false;
    int state_ = offState;
    int64_t tag_ = 0;
    std::shared_ptr<Menu> submenu_;
    std::weak_ptr<Menu> menu_;
};

}  // namespace jtk::desktop

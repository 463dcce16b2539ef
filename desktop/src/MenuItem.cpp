#include "JTK/desktop/MenuItem.h"

#include <cctype>

#include "JTK/desktop/Menu.h"

namespace jtk::desktop {

namespace {

constexpr uint64_t shortcutModifiers = platform::eventFlags::shift | platform::eventFlags::control |
                                       platform::eventFlags::alternate | platform::eventFlags::command;

std::string lowerAscii(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

MenuItem::MenuItem(std::string title, Action action, std::string keyEquivalent, uint64_t keyEquivalentModifierMask)
    : title_(std::move(title)),
      action_(std::move(action)),
      keyEquivalent_(std::move(keyEquivalent)),
      modifierMask_(keyEquivalentModifierMask) {}

std::shared_ptr<MenuItem> MenuItem::make(std::string title, Action action, std::string keyEquivalent,
                                         uint64_t keyEquivalentModifierMask) {
    return std::make_shared<MenuItem>(std::move(title), std::move(action), std::move(keyEquivalent),
                                      keyEquivalentModifierMask);
}

std::shared_ptr<MenuItem> MenuItem::separatorItem() {
    auto item = std::make_shared<MenuItem>();
    item->separator_ = true;
    item->modifierMask_ = 0;
    return item;
}

std::shared_ptr<platform::Menu> MenuItem::submenu() const { return submenu_; }

std::shared_ptr<platform::Menu> MenuItem::menu() const { return menu_.lock(); }

void MenuItem::setSubmenu(std::shared_ptr<Menu> submenu) {
    if (submenu == submenu_) return;
    if (submenu_) submenu_->parentItem_.reset();
    if (submenu) {
        if (auto previous = submenu->parentItem_.lock()) previous->submenu_.reset();
        submenu->parentItem_ = std::static_pointer_cast<MenuItem>(weak_from_this().lock());
    }
    submenu_ = std::move(submenu);
}

bool MenuItem::matchesKeyEquivalent(const std::string& unshiftedCharacters, uint64_t flags) const {
    if (keyEquivalent_.empty() || unshiftedCharacters.empty() || !isEnabled()) return false;
    uint64_t required = modifierMask_ & shortcutModifiers;
    if (keyEquivalent_.size() == 1 && std::isupper(static_cast<unsigned char>(keyEquivalent_[0])))
        required |= platform::eventFlags::shift;
    return (flags & shortcutModifiers) == required && lowerAscii(keyEquivalent_) == lowerAscii(unshiftedCharacters);
}

}  // namespace jtk::desktop

#include "input/JTKMenuSearch.h"

namespace jtk {

namespace {

// Menus nest a few levels; the bound only keeps a menu that holds itself
// from being walked for ever.
constexpr int deepestSubmenu = 8;

std::shared_ptr<platform::MenuItem> findInItem(const std::string& title, const std::shared_ptr<platform::MenuItem>& item,
                                               int depth) {
    if (!item) return nullptr;
    if (item->title() == title) return item;
    if (auto submenu = item->submenu(); submenu && depth < deepestSubmenu) {
        for (const auto& child : submenu->itemArray())
            if (auto hit = findInItem(title, child, depth + 1)) return hit;
    }
    return nullptr;
}

void collectTitles(const platform::Menu& menu, const std::string& path, int depth, std::vector<std::string>& titles) {
    for (const auto& item : menu.itemArray()) {
        if (!item || item->title().empty()) continue;
        std::string title = path + item->title();
        titles.push_back(title);
        if (auto submenu = item->submenu(); submenu && depth < deepestSubmenu)
            collectTitles(*submenu, title + " \u25B8 ", depth + 1, titles);
    }
}

}  // namespace

std::shared_ptr<platform::MenuItem> jtkFindMenuItem(const std::string& title, const platform::Menu& menu) {
    for (const auto& item : menu.itemArray())
        if (auto hit = findInItem(title, item, 0)) return hit;
    return nullptr;
}

std::vector<std::string> jtkMenuItemTitles(const platform::Menu& menu) {
    std::vector<std::string> titles;
    collectTitles(menu, "", 0, titles);
    return titles;
}

std::string jtkMissingMenuItemMessage(const std::string& title, const platform::Menu& menu) {
    std::string message = "JTK: no menu item \"" + title + "\" in the menu";
    if (std::string menuTitle = menu.title(); !menuTitle.empty()) message += " \"" + menuTitle + "\"";
    auto titles = jtkMenuItemTitles(menu);
    if (titles.empty()) return message + ", which has no items";
    message += "; its items: ";
    for (size_t i = 0; i < titles.size(); ++i) message += (i ? ", \"" : "\"") + titles[i] + "\"";
    return message;
}

}  // namespace jtk

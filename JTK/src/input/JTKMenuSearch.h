// Finding a menu item by title, and what a test is told when none has it.
// Main thread only (menus are UI state).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "JTK/platform/Menu.h"

namespace jtk {

// The first item with exactly that title, depth-first: each item before its
// submenu, a submenu before the next item. Null when no item has it.
std::shared_ptr<platform::MenuItem> jtkFindMenuItem(const std::string& title, const platform::Menu& menu);

// The titles of the menu's items in the same order, an item of a submenu as
// "Parent ▸ Item"; separators (no title) are left out.
std::vector<std::string> jtkMenuItemTitles(const platform::Menu& menu);

// The message of a choice that no item answers: the title asked for and the
// items there are.
std::string jtkMissingMenuItemMessage(const std::string& title, const platform::Menu& menu);

}  // namespace jtk

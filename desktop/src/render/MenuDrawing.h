// Menus on screen: an open menu's rows as it tracks, and the menu bar along
// the top of the main screen. Main thread only.
#pragma once

#include <cstdint>
#include <string>

#include "JTK/desktop/MenuBar.h"
#include "JTK/desktop/render/DrawContext.h"

namespace jtk::desktop {

class Menu;


// The open menu in its own coordinates: (0, 0) to its frame's size.
void drawMenu(DrawContext& context, const Menu& menu);
// The bar across the width: the application's name, then the titles of the
// main menu's items; the one whose menu tracks is highlighted.
void drawMenuBar(DrawContext& context, double width, const std::string& applicationName, const Menu* mainMenu);
// A key equivalent as menus show it: modifier signs, then the key in capitals.
std::string keyEquivalentText(const std::string& key, uint64_t modifierMask);

}  // namespace jtk::desktop

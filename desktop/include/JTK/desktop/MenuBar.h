// The menu bar along the top of the main screen: the application's name,
// then a title for each item of the main menu. A press on a title opens that
// item's menu below it and tracks it: moving over the rows highlights them,
// a release on a row chooses it, a press and release on the title leaves the
// menu open for a click on a row, a click outside (or on the title again)
// closes it, and moving onto another title opens that title's menu instead.
// Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/desktop/MenuItem.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Geometry.h"

namespace jtk::desktop {

class Menu;

// The height of the menu bar at the top of the main screen.
inline constexpr double menuBarHeight = 24;

struct MenuBarTitle {
    std::string title;
    // The main menu's item; none for the application's name.
    std::shared_ptr<MenuItem> item;
    // The title's highlight in the bar's own coordinates (y up from the bar's bottom).
    platform::Rect slot;
    // The part of the bar that belongs to the title, in screen coordinates:
    // the slot's width over the bar's whole height.
    platform::Rect frameOnScreen;
};

// The bar across the top of the main screen, in screen coordinates.
platform::Rect menuBarFrame();
// The application's name, then the main menu's item titles, left to right.
std::vector<MenuBarTitle> menuBarTitles(const std::string& applicationName, const Menu* mainMenu);
// The title of the application's main menu that holds the screen point and
// has a menu to open; none elsewhere.
std::optional<MenuBarTitle> menuBarTitleAt(platform::Point screenPoint);

// A left press at a screen point in the bar (neither over a status item nor
// elsewhere): opens the title's menu and tracks it until it closes. False,
// doing nothing, when the point is not in the bar.
bool pressMenuBar(platform::Point screenPoint);

}  // namespace jtk::desktop

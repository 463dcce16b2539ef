#include "JTK/desktop/MenuBar.h"

#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/render/DrawContext.h"
#include "JTK/platform/Screen.h"

namespace jtk::desktop {

namespace {

// The first title starts this far in; each title has this much room on either side.
constexpr double barStart = 14;
constexpr double barPadding = 10;

}  // namespace

platform::Rect menuBarFrame() {
    auto screens = platform::screens();
    platform::Rect screen = screens.empty() ? platform::Rect{0, 0, 1440, 900} : screens.front().frame;
    return {screen.minX(), screen.maxY() - menuBarHeight, screen.width(), menuBarHeight};
}

std::vector<MenuBarTitle> menuBarTitles(const std::string& applicationName, const Menu* mainMenu) {
    platform::Rect bar = menuBarFrame();
    std::vector<MenuBarTitle> titles;
    double x = barStart;
    auto place = [&](const std::string& title, const Font& font, std::shared_ptr<MenuItem> item) {
        double width = DrawContext::textSize(title, font).width;
        platform::Rect slot{x - barPadding / 2 - 2, 3, width + barPadding + 4, menuBarHeight - 6};
        titles.push_back({title, std::move(item), slot, {bar.minX() + slot.minX(), bar.minY(), slot.width(), bar.height()}});
        x += width + 2 * barPadding;
    };
    place(applicationName, Font::boldSystem(), nullptr);
    if (mainMenu)
        for (const auto& item : mainMenu->items()) place(item->title(), Font::system(), item);
    return titles;
}

std::optional<MenuBarTitle> menuBarTitleAt(platform::Point screenPoint) {
    auto application = Application::shared();
    auto mainMenu = std::dynamic_pointer_cast<Menu>(application->mainMenu());
    for (auto& title : menuBarTitles(application->name(), mainMenu.get())) {
        auto menu = title.item ? title.item->desktopSubmenu() : nullptr;
        if (menu && menu->numberOfItems() > 0 && platform::pointInRect(screenPoint, title.frameOnScreen)) return title;
    }
    return std::nullopt;
}

bool pressMenuBar(platform::Point screenPoint) {
    if (!platform::pointInRect(screenPoint, menuBarFrame())) return false;
    auto title = menuBarTitleAt(screenPoint);
    // One menu after the other while the pointer moves along the bar.
    auto how = Menu::BarOpening::byPress;
    while (title) {
        auto menu = title->item->desktopSubmenu();
        auto next = menu->trackFromMenuBar({title->frameOnScreen.minX(), title->frameOnScreen.minY()}, how);
        if (!next) break;
        title = next->title;
        how = next->how;
    }
    return true;
}

}  // namespace jtk::desktop

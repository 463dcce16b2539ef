#include "render/MenuDrawing.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/render/Rendering.h"
#include "JTK/platform/Events.h"
#include "render/Surface.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

constexpr double menuRadius = 6;
constexpr double titleStart = 22;

// The item titles of the menu bar start after the application's name.
constexpr double barPadding = 10;

void drawRow(DrawContext& context, const MenuItem& item, const Rect& row, bool highlighted) {
    if (item.isSeparatorItem()) {
        double y = std::round(row.midY()) + 0.5;
        context.strokeLine({row.minX() + 8, y}, {row.maxX() - 8, y}, palette::separator);
        return;
    }
    bool enabled = item.isEnabled() || item.hasSubmenu();
    if (highlighted && enabled)
        context.fillRoundedRect({row.minX() + 4, row.minY(), row.width() - 8, row.height()}, 4, palette::accent);
    Color color = !enabled ? palette::disabledText : highlighted ? palette::accentText : palette::text;
    if (item.state() != MenuItem::offState) {
        context.drawText(item.state() == MenuItem::onState ? "\u2713" : "\u2013",
                         {row.minX() + 6, row.minY(), titleStart - 6, row.height()}, {Font::system(), color});
    }
    context.drawText(item.title(), {row.minX() + titleStart, row.minY(), row.width() - titleStart - 12, row.height()},
                     {Font::system(), color});
    Rect right{row.minX() + titleStart, row.minY(), row.width() - titleStart - 12, row.height()};
    if (item.hasSubmenu()) {
        context.drawText("\u25B8", right, {Font::system(), color, TextAlignment::right});
    } else if (!item.keyEquivalent().empty()) {
        Color keyColor = highlighted && enabled ? palette::accentText : palette::secondaryText;
        context.drawText(keyEquivalentText(item.keyEquivalent(), item.keyEquivalentModifierMask()), right,
                         {Font::system(), keyColor, TextAlignment::right});
    }
}

}  // namespace

std::string keyEquivalentText(const std::string& key, uint64_t modifierMask) {
    std::string text;
    bool upper = key.size() == 1 && std::isupper(static_cast<unsigned char>(key[0]));
    if (modifierMask & platform::eventFlags::control) text += "\u2303";
    if (modifierMask & platform::eventFlags::alternate) text += "\u2325";
    if ((modifierMask & platform::eventFlags::shift) || upper) text += "\u21E7";
    if (modifierMask & platform::eventFlags::command) text += "\u2318";
    if (key == "\r")
        text += "\u21A9";
    else if (key == "\x1b")
        text += "\u238B";
    else
        for (char c : key) text += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

void drawMenu(DrawContext& context, const Menu& menu) {
    Rect frame = menu.frameOnScreen();
    Rect all{0, 0, frame.width(), frame.height()};
    if (all.isEmpty()) return;
    context.fillRoundedRect(all, menuRadius, palette::menuBackground);
    int highlighted = menu.highlightedRow();
    auto open = Menu::openMenus();
    for (int i = 0; i < menu.numberOfItems(); ++i) {
        auto item = menu.itemAtIndex(i);
        // The row whose submenu is open stays highlighted while the pointer is in the submenu.
        auto submenu = item->desktopSubmenu();
        bool opened = submenu && std::find(open.begin(), open.end(), submenu) != open.end();
        Rect row{0, all.maxY() - Menu::rowHeight * (i + 1), all.width(), Menu::rowHeight};
        drawRow(context, *item, row, i == highlighted || opened);
    }
    context.strokeRoundedRect({0.5, 0.5, all.width() - 1, all.height() - 1}, menuRadius, Color::grey(0, 0.22));
}

void drawMenuBar(DrawContext& context, double width, const std::string& applicationName, const Menu* mainMenu) {
    Rect bar{0, 0, width, menuBarHeight};
    context.fillRect(bar, palette::menuBarBackground);
    context.strokeLine({0, 0.5}, {width, 0.5}, Color::grey(0, 0.15));
    auto tracking = Menu::trackingMenu();
    // The same places that a press on the bar finds its titles at.
    for (const auto& title : menuBarTitles(applicationName, mainMenu)) {
        Font font = title.item ? Font::system() : Font::boldSystem();
        bool highlighted = tracking && title.item && title.item->desktopSubmenu() == tracking;
        if (highlighted) context.fillRoundedRect(title.slot, 4, palette::accent);
        double x = title.slot.minX() + barPadding / 2 + 2;
        context.drawText(title.title, {x, 0, title.slot.width() - barPadding - 3, menuBarHeight},
                         {font, highlighted ? palette::accentText : palette::text});
    }
}

std::optional<imaging::Image> renderMenu(const Menu& menu) {
    auto size = bitmapSize(menu.frameOnScreen().size);
    if (!size) return std::nullopt;
    imaging::Image bitmap(size->first, size->second);
    Surface surface(bitmap);
    if (!surface.isValid()) return std::nullopt;
    {
        DrawContext context(surface.cairo(), bitmap.height);
        drawMenu(context, menu);
    }
    surface.copyInto(bitmap);
    return bitmap;
}

}  // namespace jtk::desktop

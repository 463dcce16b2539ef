// The whole main screen, as the on-screen viewer shows it: the desktop
// background, the windows back to front with their shadows, the menu bar,
// the status-bar windows in it (borderless, over the bar) and open menus.
#include <algorithm>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/render/Rendering.h"
#include "JTK/platform/Screen.h"
#include "render/MenuDrawing.h"
#include "render/Surface.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

Rect mainScreenFrame() {
    auto screens = platform::screens();
    return screens.empty() ? Rect{0, 0, 1440, 900} : screens.front().frame;
}

void drawWindow(DrawContext& context, const Window& window) {
    auto frameView = window.desktopFrameView();
    if (!frameView) return;
    Rect frame = window.frame();
    context.save();
    context.translate(frame.minX(), frame.minY());
    context.dropShadow({0, 0, frame.width(), frame.height()}, 2, 8);
    drawViewTree(context, *frameView);
    context.restore();
}

// A status-bar window shows its content only: it sits in the menu bar.
void drawStatusWindow(DrawContext& context, const Window& window) {
    auto content = window.desktopContentView();
    if (!content) return;
    Rect area = window.contentRect();
    context.save();
    context.translate(area.minX(), area.minY());
    context.clipToRect({0, 0, area.width(), area.height()});
    context.translate(-content->bounds().minX(), -content->bounds().minY());
    drawViewTree(context, *content);
    context.restore();
}

}  // namespace

imaging::Image renderScreen() {
    Rect screen = mainScreenFrame();
    auto size = bitmapSize(screen.size).value_or(std::pair<uint32_t, uint32_t>{1440, 900});
    imaging::Image bitmap(size.first, size.second);
    Surface surface(bitmap);
    if (!surface.isValid()) return bitmap;
    {
        DrawContext context(surface.cairo(), bitmap.height);
        context.translate(-screen.minX(), -screen.minY());
        context.fillRoundedRectGradient(screen, 0, palette::desktopTop, palette::desktopBottom);

        auto application = Application::shared();
        auto windows = application->orderedWindows();  // front to back
        std::reverse(windows.begin(), windows.end());
        for (const auto& window : windows)
            if (window->level() < Window::statusLevel) drawWindow(context, *window);

        context.save();
        context.translate(screen.minX(), screen.maxY() - menuBarHeight);
        auto mainMenu = std::dynamic_pointer_cast<Menu>(application->mainMenu());
        drawMenuBar(context, screen.width(), application->name(), mainMenu.get());
        context.restore();
        for (const auto& window : windows)
            if (window->level() >= Window::statusLevel) drawStatusWindow(context, *window);

        for (const auto& menu : Menu::openMenus()) {
            Rect frame = menu->frameOnScreen();
            if (frame.isEmpty()) continue;
            context.save();
            context.translate(frame.minX(), frame.minY());
            context.dropShadow({0, 0, frame.width(), frame.height()}, 6, 6);
            drawMenu(context, *menu);
            context.restore();
        }
    }
    surface.copyInto(bitmap);
    return bitmap;
}

}  // namespace jtk::desktop

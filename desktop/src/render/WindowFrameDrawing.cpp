// The window frame: the background, the title bar with its title and the
// three window buttons (coloured in the key window, grey elsewhere), and a
// thin outline over the content. Windows without a title (alerts) get a plain top edge.
#include "JTK/desktop/FrameView.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/render/DrawContext.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

constexpr double buttonDiameter = 12;

void drawWindowButtons(DrawContext& context, const Rect& titleBar, bool key) {
    const Color colours[] = {Color::rgb(255, 95, 87), Color::rgb(254, 188, 46), Color::rgb(40, 200, 64)};
    for (int i = 0; i < 3; ++i) {
        Rect button{titleBar.minX() + 9 + 20.0 * i, titleBar.midY() - buttonDiameter / 2, buttonDiameter,
                    buttonDiameter};
        context.fillEllipse(button, key ? colours[i] : Color::grey(0.80));
        context.strokeEllipse({button.minX() + 0.5, button.minY() + 0.5, buttonDiameter - 1, buttonDiameter - 1},
                              Color::grey(0, 0.14));
    }
}

}  // namespace

void FrameView::draw(DrawContext& context) const {
    Rect all = bounds();
    auto window = desktopWindow();
    double titleHeight = window ? Window::titleBarHeight : 0;
    bool key = window && window->isKeyWindow();
    std::string title = window ? window->title() : std::string();

    context.fillRect(all, palette::windowBackground);
    Rect titleBar{all.minX(), all.maxY() - titleHeight, all.width(), titleHeight};
    if (titleHeight > 0 && !title.empty()) {
        context.fillRoundedRectGradient(titleBar, 0, key ? Color::grey(0.93) : Color::grey(0.96),
                                        key ? Color::grey(0.84) : Color::grey(0.92));
        context.strokeLine({titleBar.minX(), titleBar.minY() + 0.5}, {titleBar.maxX(), titleBar.minY() + 0.5},
                           Color::grey(0, key ? 0.20 : 0.12));
        drawWindowButtons(context, titleBar, key);
        context.drawText(title, {titleBar.minX() + 70, titleBar.minY(), titleBar.width() - 140, titleBar.height()},
                         {Font::system(), key ? palette::text : palette::secondaryText, TextAlignment::center});
    }
}

void FrameView::drawOverSubviews(DrawContext& context) const {
    Rect all = bounds();
    context.strokeRoundedRect({all.minX() + 0.5, all.minY() + 0.5, all.width() - 1, all.height() - 1}, 0,
                              Color::grey(0, 0.28));
}

}  // namespace jtk::desktop

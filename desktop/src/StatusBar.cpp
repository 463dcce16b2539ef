#include "JTK/desktop/StatusBar.h"

#include <cmath>

#include "JTK/desktop/render/DrawContext.h"
#include "JTK/platform/Screen.h"
#include "render/MenuDrawing.h"

namespace jtk::desktop {

namespace {

constexpr double rightMargin = 8;
constexpr double titlePadding = 10;
// A title's width without measuring the font: about 7.5 points a character,
// so that the layout needs no text engine and is the same on every machine.
constexpr double pointsPerCharacter = 7.5;

size_t characterCount(const std::string& text) {
    size_t count = 0;
    for (unsigned char c : text) count += (c & 0xC0) != 0x80;
    return count;
}

}  // namespace

void StatusBarButton::draw(DrawContext& context) const {
    platform::Rect all = bounds();
    if (isHighlighted()) context.fillRect(all, palette::accent);
    context.drawText(title(), all,
                     {Font::system(), isHighlighted() ? palette::accentText : palette::text, TextAlignment::center});
}

StatusItem::StatusItem(double length) : length_(length), button_(std::make_shared<StatusBarButton>()) {
    window_ = Window::make(platform::Rect{0, 0, 1, menuBarHeight}, "");
    window_->setLevel(Window::statusLevel);
    window_->setCanBecomeKeyWindow(false);
    window_->setContentView(button_);
}

std::string StatusItem::title() const { return button_->title(); }

void StatusItem::setTitle(const std::string& title) {
    button_->setTitle(title);
    StatusBar::system().layOut();
    window_->orderFront();  // shown again after the window list was cleared
}

double StatusItem::width() const {
    if (length_ >= 0) return length_;
    return std::ceil(2 * titlePadding + pointsPerCharacter * static_cast<double>(characterCount(title())));
}

StatusBar& StatusBar::system() {
    static StatusBar bar;
    return bar;
}

std::shared_ptr<StatusItem> StatusBar::statusItemWithLength(double length) {
    auto item = std::make_shared<StatusItem>(length);
    // The button sends the item's action; the item may be gone by then.
    item->button_->setAction([weak = std::weak_ptr<StatusItem>(item)](Button&) {
        auto self = weak.lock();
        if (auto action = self ? self->action_ : nullptr) action();
    });
    items_.push_back(item);
    layOut();
    item->window_->orderFront();
    return item;
}

void StatusBar::layOut() {
    auto screens = platform::screens();
    platform::Rect screen = screens.empty() ? platform::Rect{0, 0, 1440, 900} : screens.front().frame;
    double right = screen.maxX() - rightMargin;
    for (const auto& item : items_) {
        double width = item->width();
        right -= width;
        item->window_->setContentRect({right, screen.maxY() - menuBarHeight, width, menuBarHeight});
    }
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::shared_ptr<StatusItem> statusItemWithLength(double length) {
    return desktop::StatusBar::system().statusItemWithLength(length);
}

}  // namespace jtk::platform

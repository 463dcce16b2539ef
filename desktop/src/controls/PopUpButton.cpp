#include "JTK/desktop/controls/PopUpButton.h"

#include "JTK/desktop/Menu.h"
#include "JTK/desktop/Window.h"
#include "JTK/platform/Notifications.h"

namespace jtk::desktop {

PopUpButton::PopUpButton(const platform::Rect& frame, std::shared_ptr<platform::Menu> menu)
    : Button(frame), menu_(std::move(menu)) {
    observeMenu();
}

PopUpButton::~PopUpButton() {
    if (menuObserver_) platform::defaultNotificationCenter().removeObserver(menuObserver_);
}

void PopUpButton::setMenu(std::shared_ptr<platform::Menu> menu) {
    menu_ = std::move(menu);
    observeMenu();
}

void PopUpButton::observeMenu() {
    auto& center = platform::defaultNotificationCenter();
    if (menuObserver_) center.removeObserver(menuObserver_);
    menuObserver_ = 0;
    if (!menu_) return;
    // The menu may perform an item while it tracks or later, on behalf of the
    // program; either way the item becomes the selection. The observer must
    // not keep the button alive: the center outlives it.
    menuObserver_ = center.addObserver(
        platform::menuDidSendActionNotification, menu_, platform::DeliveryQueue::postingThread,
        [this](const platform::Notification& notification) {
            const platform::Value* item = notification.userInfo.find("MenuItem");
            auto menuItem = item ? std::dynamic_pointer_cast<platform::MenuItem>(item->object()) : nullptr;
            if (!menuItem || !menu_ || menu_->indexOfItem(menuItem) < 0) return;
            selectItemWithTitle(menuItem->title());
            performClick();
        });
}

void PopUpButton::addItemWithTitle(const std::string& title) {
    auto menu = std::dynamic_pointer_cast<Menu>(menu_);
    if (!menu) {
        if (menu_) return;  // a menu of another platform: not ours to change
        menu = Menu::make();
        setMenu(menu);
    }
    menu->addItem(MenuItem::make(title, {}, {}, 0));
    if (selectedItemTitle_.empty() && menu->numberOfItems() == 1) selectItemWithTitle(title);
}

void PopUpButton::selectItemWithTitle(std::string title) {
    selectedItemTitle_ = std::move(title);
    if (auto menu = std::dynamic_pointer_cast<Menu>(menu_))
        for (auto& item : menu->items())
            item->setState(!selectedItemTitle_.empty() && item->title() == selectedItemTitle_ ? MenuItem::onState
                                                                                             : MenuItem::offState);
}

int PopUpButton::indexOfSelectedItem() const {
    if (!menu_ || selectedItemTitle_.empty()) return -1;
    auto items = menu_->itemArray();
    for (size_t i = 0; i < items.size(); ++i)
        if (items[i] && items[i]->title() == selectedItemTitle_) return static_cast<int>(i);
    return -1;
}

void PopUpButton::mouseDown(const platform::Event&, platform::Point) {
    auto menu = std::dynamic_pointer_cast<Menu>(menu_);
    auto window = desktopWindow();
    if (!isEnabled() || !menu || !window) return;
    // Keep the button alive while its menu tracks: an action may remove it.
    auto protector = sharedView();
    auto onScreen = window->convertRectToScreen(convertRectToWindow(bounds()));
    menu->popUp({onScreen.minX(), onScreen.minY()}, protector);
}

}  // namespace jtk::desktop
